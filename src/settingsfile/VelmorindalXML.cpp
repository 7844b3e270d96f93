#include "VelmorindalXML.h"

#include <algorithm>
#include <array>

#include "KeyTables.h"
#include "Print.h"
#include "SettingsFileFormat.h"
#include "TextConversions.h"

namespace velmorindal {

namespace {

template <typename Cases>
std::optional<typename Cases::value_type> caseNamed(std::string_view text, const Cases& cases) {
    const auto found =
        std::ranges::find_if(cases, [text](const auto& candidate) { return caseName(candidate) == text; });
    return found == cases.end() ? std::nullopt : std::optional{*found};
}

std::optional<OutputKey> keyShownAs(std::string_view text) {
    const auto& shown = keyDisplayStrings();
    const auto found = std::ranges::find_if(shown, [text](const auto& key) { return key.second == text; });
    return found == shown.end() ? std::nullopt : std::optional{found->first};
}

struct Setting {
    std::string_view name;
    void (*store)(VelmorindalXML& xml, std::string_view text);
};

using XML = VelmorindalXML;
using Text = std::string_view;

constexpr std::array settings{
    Setting{settingsfile::outputPath,
            [](XML& xml, Text t) { xml.outputPath = caseNamed(t, allOutputPaths); }},
    Setting{settingsfile::outputMode,
            [](XML& xml, Text t) { xml.outputMode = caseNamed(t, allOutputModes); }},
    Setting{settingsfile::longEnabled, [](XML& xml, Text t) { xml.longEnabled = booleanValue(t); }},
    Setting{settingsfile::shortEnabled, [](XML& xml, Text t) { xml.shortEnabled = booleanValue(t); }},
    Setting{settingsfile::longKey, [](XML& xml, Text t) { xml.longOutputKey = keyShownAs(t); }},
    Setting{settingsfile::shortKey, [](XML& xml, Text t) { xml.shortOutputKey = keyShownAs(t); }},
    Setting{settingsfile::directKey, [](XML& xml, Text t) { xml.directOutputKey = keyShownAs(t); }},
    Setting{settingsfile::clarity, [](XML& xml, Text t) { xml.sensitivity = floatValue(t); }},
    Setting{settingsfile::cutoff, [](XML& xml, Text t) { xml.cutoff = floatValue(t); }},
};

struct Requirement {
    bool met;
    std::string_view text;
    std::string_view printed = text;
};

}  // namespace

void VelmorindalXML::parser(std::string_view name, std::span<const XMLAttribute> attributes) {
    if (name != settingsfile::elementName) {
        return;
    }
    print("Found element: ", name);
    for (const XMLAttribute& attribute : attributes) {
        const auto* const setting = std::ranges::find(settings, attribute.name, &Setting::name);
        if (setting == settings.end()) {
            print("Urecognized key: ", attribute.name);
        } else {
            setting->store(*this, attribute.text);
        }
    }
}

bool VelmorindalXML::valid() {
    const std::array requirements{
        Requirement{outputPath.has_value(), "Missing output path"},
        Requirement{outputMode.has_value(), "Missing output mode"},
        Requirement{longEnabled.has_value(), "Missing long enabled"},
        Requirement{shortEnabled.has_value(), "Missing short enabled"},
        // The printed line is misspelled, the text for the dialog is not; both on purpose.
        Requirement{longOutputKey.has_value(), "Missing long output key", "Misisng long output key"},
        Requirement{shortOutputKey.has_value(), "Missing short output key"},
        Requirement{directOutputKey.has_value(), "Missing direct output key"},
        Requirement{sensitivity.has_value(), "Missing sensitivity"},
        Requirement{cutoff.has_value(), "Missing cutoff"},
    };
    const auto* const missing = std::ranges::find(requirements, false, &Requirement::met);
    if (missing == requirements.end()) {
        return true;
    }
    _lastError = std::string{missing->text};
    print(missing->printed);
    return false;
}

}  // namespace velmorindal
