#include <unistd.h>

#include <QByteArray>
#include <QSaveFile>
#include <QString>
#include <QXmlStreamWriter>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "diagnostics/Print.h"
#include "session/VelmorindalSwitch.h"
#include "settingsfile/SettingsFileFormat.h"
#include "settingsfile/TwoDecimals.h"

namespace velmorindal {

namespace {

std::string_view trueOrFalse(bool value) {
    return value ? "true" : "false";
}

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string documentText(const VelmorindalSwitch& model) {
    QByteArray document;
    QXmlStreamWriter writer{&document};
    writer.setAutoFormatting(true);
    const auto write = [&writer](std::string_view name, std::string_view text) {
        writer.writeAttribute(toQString(name), toQString(text));
    };
    const keyList keys = model.outputKeys.get();
    const auto& shown = VelmorindalSwitch::keyDisplayStrings();

    writer.writeStartDocument();
    writer.writeStartElement(toQString(settingsfile::elementName));
    write(settingsfile::outputPath, caseName(model.outputPath.get()));
    write(settingsfile::outputMode, caseName(model.outputMode.get()));
    write(settingsfile::longEnabled, trueOrFalse(model.longEnabled.get()));
    write(settingsfile::shortEnabled, trueOrFalse(model.shortEnabled.get()));
    write(settingsfile::longKey, shown.at(keys.longKey));
    write(settingsfile::shortKey, shown.at(keys.shortKey));
    write(settingsfile::directKey, shown.at(keys.directKey));
    write(settingsfile::clarity, twoDecimals(model.clarity.get()));
    write(settingsfile::cutoff, twoDecimals(model.cutoff.get()));
    writer.writeEndElement();
    return document.toStdString();
}

/// Writes a file beside the old one and puts it in the old one's place in one step. A link stays a link, the
/// permissions of an earlier file stay. Anything but a file (a pipe, a device) is left alone.
bool replaceFile(const std::string& filename, const std::string& contents) {
    std::error_code ignored;
    if (std::filesystem::exists(filename, ignored) && !std::filesystem::is_regular_file(filename, ignored)) {
        return false;
    }
    QSaveFile file{QString::fromStdString(filename)};
    file.setDirectWriteFallback(false);
    // Unbuffered, because a buffer that a full disk takes only in part is not reported by the commit; and
    // synced here, because the commit ignores what that says.
    const auto length = static_cast<qint64>(contents.size());
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           file.write(contents.data(), length) == length && ::fsync(file.handle()) == 0 && file.commit();
}

}  // namespace

bool VelmorindalSwitch::writeXML(const std::string& filename) const {
    const std::string document = documentText(*this);
    print("XML Document:");
    print(document);
    if (!replaceFile(filename, document)) {
        print("Write failed. Boo.");
    }
    return true;
}

}  // namespace velmorindal
