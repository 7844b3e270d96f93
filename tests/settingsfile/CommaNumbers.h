#pragma once

#include <locale>
#include <string>

namespace velmorindal {

/// A decimal comma and a dot between thousands, as half of Europe writes numbers.
class CommaNumbers : public std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

}  // namespace velmorindal
