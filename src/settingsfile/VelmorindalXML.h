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

/// The delegate of an XML parser: collects the settings of a file while it is parsed.
///
/// Lives for one parse. A field stays empty while its attribute is missing or names nothing that exists.
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
    /// Takes the settings from a VibrationSwitch element and ignores every other; a later element overwrites
    /// what an earlier one set. `name` is the name as written, prefix included. Prints the element found and
    /// each attribute that is no setting.
    void parser(std::string_view name, std::span<const XMLAttribute> attributes);

    /// Whether every setting is there, whatever the mode needs; otherwise the first that is missing is put
    /// into `_lastError` and printed.
    bool valid();
};

}  // namespace velmorindal
