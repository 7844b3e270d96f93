#include "XMLFileWriter.h"

#include <unistd.h>

#include <QByteArray>
#include <QSaveFile>
#include <QString>
#include <QXmlStreamWriter>
#include <filesystem>
#include <string>
#include <string_view>
#include <system_error>

#include "KeyTables.h"
#include "Print.h"
#include "SettingsFileFormat.h"
#include "TwoDecimals.h"

namespace velmorindal {

namespace {

std::string_view trueOrFalse(bool value) {
    return value ? "true" : "false";
}

QString toQString(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

std::string documentText(const ChosenSettings& chosen) {
    QByteArray document;
    QXmlStreamWriter writer{&document};
    writer.setAutoFormatting(true);
    const auto write = [&writer](std::string_view name, std::string_view text) {
        writer.writeAttribute(toQString(name), toQString(text));
    };
    const keyList& keys = chosen.outputKeys;
    const auto& shown = keyDisplayStrings();

    writer.writeStartDocument();
    writer.writeStartElement(toQString(settingsfile::elementName));
    write(settingsfile::outputPath, caseName(chosen.outputPath));
    write(settingsfile::outputMode, caseName(chosen.outputMode));
    write(settingsfile::longEnabled, trueOrFalse(chosen.longEnabled));
    write(settingsfile::shortEnabled, trueOrFalse(chosen.shortEnabled));
    write(settingsfile::longKey, shown.at(keys.longKey));
    write(settingsfile::shortKey, shown.at(keys.shortKey));
    write(settingsfile::directKey, shown.at(keys.directKey));
    write(settingsfile::clarity, twoDecimals(chosen.clarity));
    write(settingsfile::cutoff, twoDecimals(chosen.cutoff));
    writer.writeEndElement();
    return document.toStdString();
}

/// Writes a file beside the old one and replaces the old one in one step. A link stays a link, and a file
/// keeps its permissions. Anything that is not a regular file (a pipe, a device) is left alone.
bool replaceFile(const std::string& filename, const std::string& contents) {
    std::error_code ignored;
    if (std::filesystem::exists(filename, ignored) && !std::filesystem::is_regular_file(filename, ignored)) {
        return false;
    }
    QSaveFile file{QString::fromStdString(filename)};
    file.setDirectWriteFallback(false);
    // Unbuffered, because the commit does not report a buffer that a full disk takes only in part; and synced
    // here, because the commit ignores an error of its sync.
    const auto length = static_cast<qint64>(contents.size());
    return file.open(QIODevice::WriteOnly | QIODevice::Unbuffered) &&
           file.write(contents.data(), length) == length && ::fsync(file.handle()) == 0 && file.commit();
}

}  // namespace

void writeXMLFile(const std::string& filename, const ChosenSettings& chosen) {
    const std::string document = documentText(chosen);
    print("XML Document:");
    print(document);
    if (!replaceFile(filename, document)) {
        print("Write failed. Boo.");
    }
}

}  // namespace velmorindal
