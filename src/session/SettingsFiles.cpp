#include <optional>
#include <string>

#include "VelmorindalSwitch.h"
#include "VelmorindalXML.h"
#include "XMLFileParser.h"
#include "XMLFileWriter.h"

namespace velmorindal {

namespace {

/// Each setting is a change of its own. `xml` must be valid.
void copySettings(const VelmorindalXML& xml, VelmorindalSwitch& model) {
    model.outputPath = xml.outputPath.value();
    model.outputMode = xml.outputMode.value();
    model.longEnabled = xml.longEnabled.value();
    model.shortEnabled = xml.shortEnabled.value();
    keyList keys = model.outputKeys.get();
    keys.longKey = xml.longOutputKey.value();
    model.outputKeys = keys;
    keys.shortKey = xml.shortOutputKey.value();
    model.outputKeys = keys;
    keys.directKey = xml.directOutputKey.value();
    model.outputKeys = keys;
    model.clarity = xml.sensitivity.value();
    model.cutoff = xml.cutoff.value();
}

}  // namespace

bool VelmorindalSwitch::writeXML(const std::string& filename) const {
    writeXMLFile(filename, chosenSettings());
    return true;
}

bool VelmorindalSwitch::loadXML(const std::string& filename) {
    const auto tell = [this](std::optional<std::string> text) {
        loadError = text;
        lastError = std::move(text);
    };
    tell(std::nullopt);
    VelmorindalXML xml;
    switch (parseXMLFile(filename, xml)) {
        case ParseOutcome::unreadable:
            tell("Could not load contents of XML file");
            return false;
        case ParseOutcome::malformed:
            tell("Could not parse XML file. Possibly invalid syntax.");
            return false;
        case ParseOutcome::parsed:
            break;
    }
    if (!xml.valid()) {
        tell(xml._lastError);
        return false;
    }
    copySettings(xml, *this);
    return true;
}

}  // namespace velmorindal
