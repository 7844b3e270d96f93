#pragma once

#include <string_view>

namespace velmorindal {

/// One entry of a radio group or of a pop-up list: its text, and the value that choosing it sets.
template <typename Value>
struct Choice {
    std::string_view label;
    Value value;
};

}  // namespace velmorindal
