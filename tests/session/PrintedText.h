#pragma once

#include <cstddef>
#include <string>

namespace velmorindal {

/// The text with every descriptor of an opened port replaced by N: they differ from run to run.
std::string withoutDescriptors(const std::string& lines);

/// How often the pattern, a regular expression, is found in the text.
std::ptrdiff_t timesFound(const std::string& text, const std::string& pattern);

}  // namespace velmorindal
