#include "Print.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cmath>
#include <utility>

#include "Hexadecimal.h"

namespace velmorindal {
namespace {

/// Within these bounds a number is written out in full, beyond them with an exponent.
constexpr double smallestPlain = 1e-4;
constexpr double largestPlain = 1e16;

template <typename Floating>
std::string shortestText(Floating value) {
    const double magnitude = std::fabs(static_cast<double>(value));
    const bool plain = magnitude == 0.0 || (magnitude >= smallestPlain && magnitude < largestPlain);
    std::array<char, 64> buffer{};
    const auto written = std::to_chars(buffer.data(), buffer.data() + buffer.size(), value,
                                       plain ? std::chars_format::fixed : std::chars_format::scientific);
    std::string text{buffer.data(), written.ptr};
    if (plain && text.find('.') == std::string::npos) {
        text += ".0";
    }
    return text;
}

std::string inQuotes(std::string_view text) {
    std::string result = "\"";
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        if (character == '"' || character == '\\') {
            result += '\\';
            result += character;
        } else if (byte < 0x20 || byte == 0x7F) {
            result += "\\x" + hexadecimal(byte);
        } else {
            result += character;
        }
    }
    return result + '"';
}

/// Whether PIPE_BUF bytes can be written without blocking. Of each stream, waits only for the first line that
/// is not read, so that a stopped reader costs the program one second in all and not one for each line.
bool takesMore(int descriptor) {
    constexpr int patienceMilliseconds = 1000;
    static std::array<std::atomic<int>, 2> patienceOfStreams{patienceMilliseconds, patienceMilliseconds};
    std::atomic<int>& patience = patienceOfStreams[descriptor == STDERR_FILENO ? 1 : 0];
    pollfd output{.fd = descriptor, .events = POLLOUT, .revents = 0};
    const bool room = ::poll(&output, 1, patience) != 0;
    patience = room ? patienceMilliseconds : 0;
    return room;
}

using Sink = std::function<void(std::string_view)>;

struct Output {
    /// Recursive: a sink may print.
    RecursiveMutex turn;
    /// Where the lines of each stream go instead, if set.
    std::array<Sink, 2> sinks GUARDED_BY(turn);

    Sink& sinkOf(PrintStream stream) REQUIRES(turn) { return sinks[static_cast<std::size_t>(stream)]; }
};

Output& output() {
    static Output shared;
    return shared;
}

/// @returns the earlier one.
Sink replaceSink(PrintStream stream, Sink next) {
    Output& shared = output();
    const RecursiveLock lock{shared.turn};
    return std::exchange(shared.sinkOf(stream), std::move(next));
}

}  // namespace

PrintItem::PrintItem(float value) : text_{shortestText(value)} {}

PrintItem::PrintItem(double value) : text_{shortestText(value)} {}

PrintItem::PrintItem(const std::vector<std::string>& list) : text_{"["} {
    for (const std::string& entry : list) {
        if (text_.size() > 1) {
            text_ += ", ";
        }
        text_ += inQuotes(entry);
    }
    text_ += "]";
}

void writeLine(int descriptor, std::string_view text) {
    std::string line{text};
    line += '\n';
    std::string_view rest = line;
    while (!rest.empty() && takesMore(descriptor)) {
        const ssize_t written =
            ::write(descriptor, rest.data(), std::min(rest.size(), std::size_t{PIPE_BUF}));
        if (written > 0) {
            rest.remove_prefix(static_cast<std::size_t>(written));
        } else if (written == 0 || errno != EINTR) {
            return;
        }
    }
}

void printItems(PrintStream stream, std::span<const PrintItem> items) {
    std::string line;
    for (const PrintItem& item : items) {
        if (&item != items.data()) {
            line += ' ';
        }
        line += item.text();
    }
    Output& shared = output();
    const RecursiveLock lock{shared.turn};
    if (const Sink& sink = shared.sinkOf(stream)) {
        sink(line + '\n');
    } else {
        writeLine(stream == PrintStream::standardOutput ? STDOUT_FILENO : STDERR_FILENO, line);
    }
}

PrintDiversion::PrintDiversion(std::function<void(std::string_view)> sink, PrintStream stream)
    : stream_{stream}, earlier_{replaceSink(stream, std::move(sink))} {}

PrintDiversion::~PrintDiversion() {
    replaceSink(stream_, std::move(earlier_));
}

PrintLock::PrintLock() : lock_{output().turn} {}

}  // namespace velmorindal
