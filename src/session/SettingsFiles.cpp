#include <optional>
#include <string>

#include "VelmorindalSwitch.h"
#include "VelmorindalXML.h"
#include "XMLFileParser.h"
#include "XMLFileWriter.h"

namespace velmorindal {

namespace {

/// Publishes each setting as a separate change. `xml` must be valid.
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

OperationResult VelmorindalSwitch::loadXML(const std::string& filename) {
    lastError = std::nullopt;
    VelmorindalXML xml;
    switch (parseXMLFile(filename, xml)) {
        case ParseOutcome::unreadable:
            return failure("Could not load contents of XML file");
        case ParseOutcome::malformed:
            return failure("Could not parse XML file. Possibly invalid syntax.");
        case ParseOutcome::parsed:
            break;
    }
    if (!xml.valid()) {
        return failure(xml._lastError);
    }
    copySettings(xml, *this);
    return {};
}

}  // namespace velmorindal
