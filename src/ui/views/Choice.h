#pragma once

#include <string_view>

namespace velmorindal {

/// One entry of a radio group or of a pop-up list: what it says and what choosing it sets.
template <typename Value>
struct Choice {
    std::string_view label;
    Value value;
};

}  // namespace velmorindal
