#include "ProtocolDocument.h"

#include <array>
#include <bit>
#include <charconv>
#include <cstdint>
#include <fstream>
#include <sstream>
#include <stdexcept>

#include "HexText.h"

namespace velmorindal {
namespace {

constexpr std::string_view headingStart = "### ";
constexpr std::string_view fence = "```";

/// The heading without the marks around a name.
std::string headingOf(const std::string& line) {
    std::string heading = line.substr(headingStart.size());
    std::erase(heading, '`');
    return heading;
}

/// The bytes of the rest of a line: pairs of digits, blanks between them.
ByteBuffer readFrame(std::istream& line) {
    std::string digits;
    for (std::string pair; line >> pair;) {
        digits += pair;
    }
    return bytesFrom(digits.empty() ? "-" : digits);
}

std::string bitsOfFloat(const std::string& text) {
    float value = 0.0F;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec != std::errc{} || result.ptr != text.data() + text.size()) {
        throw std::runtime_error{"not a number: " + text};
    }
    const auto bits = std::bit_cast<std::uint32_t>(value);
    const std::array bytes{static_cast<std::uint8_t>(bits >> 24U), static_cast<std::uint8_t>(bits >> 16U),
                           static_cast<std::uint8_t>(bits >> 8U), static_cast<std::uint8_t>(bits)};
    return hexText(bytes);
}

/// A field's value in the notation of MessageClass: the page writes floats with a point and texts in quotes.
std::string valueFrom(const std::string& text) {
    if (text.starts_with('"')) {
        return hexText(ByteBuffer{text.begin() + 1, text.end() - 1});
    }
    return text.find('.') == std::string::npos ? text : bitsOfFloat(text);
}

void readFields(const std::string& line, std::map<std::string, std::string>& fields) {
    std::size_t start = line.find_first_not_of(' ');
    while (start != std::string::npos) {
        const std::size_t equals = line.find('=', start);
        if (equals == std::string::npos) {
            throw std::runtime_error{"not a field: " + line};
        }
        const bool quoted = equals + 1 < line.size() && line[equals + 1] == '"';
        const std::size_t end =
            quoted ? line.find('"', equals + 2) + 1 : std::min(line.find(' ', equals), line.size());
        fields[line.substr(start, equals - start)] = valueFrom(line.substr(equals + 1, end - equals - 1));
        start = line.find_first_not_of(' ', end);
    }
}

}  // namespace

ProtocolDocument::ProtocolDocument(const std::filesystem::path& page) {
    std::ifstream lines{page};
    if (!lines) {
        throw std::runtime_error{"cannot read " + page.string()};
    }
    std::string heading;
    std::string block;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with(headingStart)) {
            heading = headingOf(line);
        } else if (line.starts_with(fence)) {
            block = line.substr(fence.size());
        } else if (block == "frames") {
            readExample(line, heading);
        } else if (block == "record") {
            record_ += line + '\n';
        } else if (block == "conversation") {
            std::istringstream words{line};
            const bool fromHost = words.get() == '>';
            conversations_[heading].push_back({.fromHost = fromHost, .frame = readFrame(words)});
        }
    }
}

void ProtocolDocument::readExample(const std::string& line, const std::string& heading) {
    if (line.starts_with(' ')) {
        readFields(line, examples_.back().fields);
        return;
    }
    std::istringstream words{line};
    Example example;
    example.messageClass = heading;
    words >> example.kind;
    example.frame = readFrame(words);
    examples_.push_back(example);
}

std::vector<ProtocolDocument::Utterance> ProtocolDocument::conversation(const std::string& heading) const {
    const auto found = conversations_.find(heading);
    return found == conversations_.end() ? std::vector<Utterance>{} : found->second;
}

}  // namespace velmorindal
