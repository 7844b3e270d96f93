#include "Record.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace velmorindal {
namespace {

using Kind = RecordedEvent::Kind;

constexpr std::string_view heading = "Velmorindal record 1\n";

/// Removes the first word from `text`. @returns it.
std::string_view takeWord(std::string_view& text) {
    const std::size_t length = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, length);
    text.remove_prefix(std::min(length + 1, text.size()));
    return word;
}

template <typename Integer>
std::optional<Integer> numberIn(std::string_view digits, int base = 10) {
    Integer value = 0;
    const char* const end = digits.data() + digits.size();
    const auto [rest, error] = std::from_chars(digits.data(), end, value, base);
    return error == std::errc{} && rest == end ? std::optional{value} : std::nullopt;
}

/// Seconds with three decimals.
std::optional<std::chrono::milliseconds> timeIn(std::string_view word) {
    const std::size_t point = word.find('.');
    if (point == std::string_view::npos || word.size() != point + 4) {
        return std::nullopt;
    }
    const auto seconds = numberIn<std::uint32_t>(word.substr(0, point));
    const auto rest = numberIn<std::uint32_t>(word.substr(point + 1));
    if (!seconds || !rest) {
        return std::nullopt;
    }
    return std::chrono::seconds{*seconds} + std::chrono::milliseconds{*rest};
}

std::optional<Kind> kindIn(std::string_view word) {
    using Name = std::pair<std::string_view, Kind>;
    constexpr std::array names{Name{"open", Kind::opened},  Name{"refused", Kind::refused},
                               Name{">", Kind::fromHost},   Name{"<", Kind::fromDevice},
                               Name{"close", Kind::closed}, Name{"lost", Kind::lost}};
    for (const auto& [name, kind] : names) {
        if (name == word) {
            return kind;
        }
    }
    return std::nullopt;
}

/// Pairs of hexadecimal digits with a space between them.
std::optional<ByteBuffer> bytesIn(std::string_view text) {
    ByteBuffer bytes;
    while (!text.empty()) {
        const std::string_view word = takeWord(text);
        const auto byte = numberIn<std::uint8_t>(word, 16);
        if (!byte || word.size() != 2) {
            return std::nullopt;
        }
        bytes.push_back(*byte);
    }
    return bytes;
}

std::optional<RecordedEvent> eventIn(std::string_view text, std::size_t line) {
    const auto time = timeIn(takeWord(text));
    const auto port = numberIn<unsigned>(takeWord(text));
    const auto kind = kindIn(takeWord(text));
    auto bytes = bytesIn(text);
    if (!time || !port || !kind || !bytes) {
        return std::nullopt;
    }
    const bool sends = *kind == Kind::fromHost || *kind == Kind::fromDevice;
    if (sends == bytes->empty()) {
        return std::nullopt;
    }
    return RecordedEvent{
        .kind = *kind, .time = *time, .port = *port, .bytes = *std::move(bytes), .line = line};
}

[[noreturn]] void refuse(const std::filesystem::path& file, std::size_t line, const std::string& complaint) {
    throw RecordError{file.string() + ":" + std::to_string(line) + ": " + complaint};
}

/// Reads only the heading at first: the file may be anything.
void requireHeading(std::istream& stream, const std::filesystem::path& file) {
    std::array<char, heading.size()> start{};
    stream.read(start.data(), start.size());
    const auto count = static_cast<std::size_t>(stream.gcount());
    if (stream.bad() || (count == 0 && !std::filesystem::is_regular_file(file))) {
        throw RecordError{file.string() + ": cannot be read"};
    }
    if (count == 0) {
        refuse(file, 1, "the file is empty");
    }
    if (std::string_view{start.data(), count} != heading) {
        refuse(file, 1, "this is no record: its first line is not 'Velmorindal record 1'");
    }
}

}  // namespace

std::vector<RecordedEvent> readRecord(const std::filesystem::path& file) {
    std::ifstream stream{file, std::ios::binary};
    if (!stream) {
        throw RecordError{file.string() + ": " + std::generic_category().message(errno)};
    }
    requireHeading(stream, file);
    std::vector<RecordedEvent> events;
    std::size_t line = 1;
    for (std::string text; std::getline(stream, text);) {
        ++line;
        if (stream.eof()) {
            refuse(file, line, "the file ends within this line");
        }
        if (text.empty() || text.starts_with('#')) {
            continue;
        }
        auto event = eventIn(text, line);
        if (!event) {
            refuse(file, line, "this is no line of a record");
        }
        if (!events.empty() && event->time < events.back().time) {
            refuse(file, line, "the time goes back");
        }
        events.push_back(*std::move(event));
    }
    return events;
}

std::map<unsigned, std::vector<RecordedEvent>> eventsByPort(const std::vector<RecordedEvent>& events) {
    std::map<unsigned, std::vector<RecordedEvent>> ports;
    for (const RecordedEvent& event : events) {
        ports[event.port].push_back(event);
    }
    std::erase_if(ports, [](const auto& port) {
        return std::ranges::all_of(port.second,
                                   [](const auto& event) { return event.kind == Kind::refused; });
    });
    return ports;
}

}  // namespace velmorindal
