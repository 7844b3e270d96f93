#pragma once

#include <string_view>

/// The names in a settings file: one empty element with nine attributes, which are written in this order and
/// read in any order.
namespace velmorindal::settingsfile {

inline constexpr std::string_view elementName = "VibrationSwitch";

inline constexpr std::string_view outputPath = "OutputPath";
inline constexpr std::string_view outputMode = "OutputMode";
inline constexpr std::string_view longEnabled = "LongOutputEnabled";
inline constexpr std::string_view shortEnabled = "ShortOutputEnabled";
inline constexpr std::string_view longKey = "LongOutputKey";
inline constexpr std::string_view shortKey = "ShortOutputKey";
inline constexpr std::string_view directKey = "DirectOutputKey";
/// The clarity threshold: the file has its own word for it.
inline constexpr std::string_view clarity = "Sensitivity";
inline constexpr std::string_view cutoff = "Cutoff";

}  // namespace velmorindal::settingsfile
