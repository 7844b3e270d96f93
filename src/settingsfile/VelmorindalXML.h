#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "ModelTypes.h"

namespace velmorindal {

/// Name and text of one attribute, UTF-8, references already replaced.
struct XMLAttribute {
    std::string name;
    std::string text;
};

/// The delegate of an XML parser: collects the settings of a file while it is parsed. Not safe from
/// several threads.
///
/// Use it for one file. A field is empty while its attribute is missing, or has a text that names no case.
class VelmorindalXML {
  public:
    std::optional<OutputPath> outputPath;
    std::optional<OutputMode> outputMode;
    std::optional<bool> longEnabled;
    std::optional<bool> shortEnabled;
    std::optional<OutputKey> longOutputKey;
    std::optional<OutputKey> shortOutputKey;
    std::optional<OutputKey> directOutputKey;
    std::optional<float> sensitivity;
    /// Seconds.
    std::optional<float> cutoff;
    /// Which setting valid() found missing.
    std::optional<std::string> _lastError;

    /// A parser reports the start of an element here.
    ///
    /// Takes the settings from a VibrationSwitch element and ignores all other elements; a later element
    /// overwrites the attributes of an earlier one. `name` is the name as written, with its prefix. Prints
    /// the name of the element found and each attribute that is not a setting.
    void parser(std::string_view name, std::span<const XMLAttribute> attributes);

    /// Whether every setting is there, also those that the mode does not use. Otherwise puts the first that
    /// is missing into `_lastError` and prints it.
    bool valid();
};

}  // namespace velmorindal
