#include "XMLFileParser.h"

#include <fcntl.h>
#include <unistd.h>

#include <QFile>
#include <QXmlStreamReader>
#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

namespace velmorindal {

namespace {

constexpr qint64 tokenLimit = 64LL * 1024;
constexpr int depthLimit = 256;
/// A reference has at least three bytes, so a token expands to at most 64 Ki / 3 * 128 characters.
constexpr int entityLimit = 128;

/// The file as the XML reader gets it. The reader keeps a whole token (a text, a comment, a tag) in memory,
/// so it gets no more than `tokenLimit` bytes for each.
class TokenBoundedFile final : public QFile {
  public:
    void tokenEnded() { tokenLength_ = 0; }
    bool limitReached() const { return tokenLength_ >= tokenLimit; }

  protected:
    /// Of a run of blank blocks only the first is handed over: the length of white space does not matter in a
    /// settings file.
    qint64 readData(char* data, qint64 capacity) override {
        if (limitReached()) {
            return -1;
        }
        qint64 length = 0;
        do {
            length = QFile::readData(data, capacity);
            if (length <= 0) {
                return length;
            }
        } while (repeatsBlank({data, static_cast<std::size_t>(length)}));
        tokenLength_ += length;
        return length;
    }

  private:
    bool repeatsBlank(std::string_view block) {
        if (!isWide_) {
            isWide_ = isInWideEncoding(block);
        }
        const bool blank = !*isWide_ && std::ranges::all_of(block, isWhiteSpace);
        return std::exchange(lastWasBlank_, blank) && blank;
    }

    /// Whether a byte that looks like a space may be part of a letter. The byte-order mark or the markup at
    /// the start of such a file has bytes that UTF-8 does not have.
    static bool isInWideEncoding(std::string_view start) {
        using namespace std::string_view_literals;
        return start.find_first_of("\0\xFE\xFF"sv) != std::string_view::npos;
    }

    static bool isWhiteSpace(char byte) {
        return byte == ' ' || byte == '\t' || byte == '\r' || byte == '\n';
    }

    qint64 tokenLength_ = 0;
    bool lastWasBlank_ = false;
    /// Set by the first block.
    std::optional<bool> isWide_;
};

/// Opens only a regular file. Nothing else is opened: a pipe would wait for its writer, a serial device would
/// raise its control lines.
bool openRegularFile(TokenBoundedFile& file, const std::string& filename) {
    std::error_code ignored;
    if (!std::filesystem::is_regular_file(filename, ignored)) {
        return false;
    }
    // Non-blocking, in case the file has become a pipe since then.
    const int descriptor = ::open(filename.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    return descriptor >= 0 &&
           file.open(descriptor, QIODevice::ReadOnly | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
}

std::string utf8(QStringView text) {
    return text.toUtf8().toStdString();
}

void reportElement(const QXmlStreamReader& reader, VelmorindalXML& delegate) {
    std::vector<XMLAttribute> attributes;
    for (const QXmlStreamAttribute& attribute : reader.attributes()) {
        attributes.push_back({utf8(attribute.qualifiedName()), utf8(attribute.value())});
    }
    delegate.parser(utf8(reader.qualifiedName()), attributes);
}

bool isWellFormed(TokenBoundedFile& file, VelmorindalXML& delegate) {
    QXmlStreamReader reader{&file};
    // Names stay as written: a prefix is part of the name, and a namespace declaration is an attribute.
    reader.setNamespaceProcessing(false);
    reader.setEntityExpansionLimit(entityLimit);
    int depth = 0;
    while (true) {
        switch (reader.readNext()) {
            case QXmlStreamReader::StartElement:
                if (++depth > depthLimit) {
                    return false;
                }
                reportElement(reader, delegate);
                break;
            case QXmlStreamReader::EndElement:
                --depth;
                break;
            case QXmlStreamReader::EndDocument:
                // The limit ends the file early, which may look like a complete document.
                return !file.limitReached();
            case QXmlStreamReader::Invalid:
                return false;
            default:
                break;
        }
        file.tokenEnded();
    }
}

}  // namespace

ParseOutcome parseXMLFile(const std::string& filename, VelmorindalXML& delegate) {
    TokenBoundedFile file;
    if (!openRegularFile(file, filename)) {
        return ParseOutcome::unreadable;
    }
    const bool wellFormed = isWellFormed(file, delegate);
    if (file.error() == QFileDevice::ReadError) {
        return ParseOutcome::unreadable;
    }
    return wellFormed ? ParseOutcome::parsed : ParseOutcome::malformed;
}

}  // namespace velmorindal
