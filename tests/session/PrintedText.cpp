#include "PrintedText.h"

#include <iterator>
#include <regex>

namespace velmorindal {

std::string withoutDescriptors(const std::string& lines) {
    return std::regex_replace(lines, std::regex{"Open Result:  \\d+"}, "Open Result:  N");
}

std::ptrdiff_t timesFound(const std::string& text, const std::string& pattern) {
    const std::regex wanted{pattern};
    return std::distance(std::sregex_iterator{text.begin(), text.end(), wanted}, std::sregex_iterator{});
}

}  // namespace velmorindal
