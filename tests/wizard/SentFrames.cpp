#include "SentFrames.h"

#include <array>
#include <string_view>

namespace velmorindal {
namespace {

constexpr std::size_t typeAt = 2;
constexpr std::size_t lengthAt = 3;
constexpr std::size_t payloadAt = 4;

/// Version by the search, version, status, protocol, output path, durations, thresholds, keys.
constexpr std::string_view connectingSequence = "vvsxpdhk";
/// Protocol, output path, durations, relays, thresholds, keys, the order to store.
constexpr std::string_view writingSequence = "xpdyhkw";
constexpr std::array<std::uint8_t, writingSequence.size()> writingLengths{1, 1, 11, 12, 8, 8, 0};
constexpr char outputPath = 'p';
constexpr char lastHum = 'l';
constexpr char autoTune = 't';
constexpr std::uint8_t reportingChannel = 2;

}  // namespace

std::optional<std::string> SentFrames::add(const ByteBuffer& frame, bool writeFailed) {
    const auto type = static_cast<char>(frame.at(typeAt));
    if (frame[0] != 'c' || frame[1] != 'b') {
        return "a frame that is no command";
    }
    if (type == lastHum || type == autoTune) {
        if (writing_ > 0 && !writeFailed) {
            return "a measurement within a write";
        }
        return addPolling(type, frame);
    }
    if (reporting_ && !failuresExpected_) {
        return "another exchange before the reports were ended";
    }
    if (frame[lengthAt] == 0 && type != writingSequence.back()) {
        return addConnectingQuery(type);
    }
    return addWriting(type, frame);
}

std::optional<std::string> SentFrames::leftOpen() const {
    if (writing_ > 0) {
        return "within a write";
    }
    return reporting_ ? std::optional<std::string>{"while the device reports"} : std::nullopt;
}

std::optional<std::string> SentFrames::addConnectingQuery(char type) {
    // A Bluetooth keyboard has no output path to ask for.
    if (connecting_ < connectingSequence.size() && connectingSequence[connecting_] == outputPath &&
        type != outputPath) {
        ++connecting_;
    }
    if (connecting_ >= connectingSequence.size() || connectingSequence[connecting_] != type) {
        return std::string{"a query out of order: "} + type;
    }
    ++connecting_;
    return std::nullopt;
}

std::optional<std::string> SentFrames::addWriting(char type, const ByteBuffer& frame) {
    if (writing_ == 1 && skipsOutputPath_) {
        ++writing_;
    }
    if (writingSequence.at(writing_) != type || writingLengths.at(writing_) != frame[lengthAt]) {
        return std::string{"a command out of order: "} + type;
    }
    if (writing_ == 0) {
        skipsOutputPath_ = frame.at(payloadAt) == 1;
    }
    writing_ = (writing_ + 1) % writingSequence.size();
    return std::nullopt;
}

std::optional<std::string> SentFrames::addPolling(char type, const ByteBuffer& frame) {
    if (type == lastHum) {
        return reporting_ && !failuresExpected_ ? std::optional<std::string>{"two measurements at once"}
                                                : std::nullopt;
    }
    if (frame[lengthAt] != 1) {
        return "an order to report without its channel";
    }
    const bool starts = frame.at(payloadAt) == reportingChannel;
    if (starts == reporting_ && !failuresExpected_) {
        return "reports ordered or ended twice";
    }
    reporting_ = starts;
    return std::nullopt;
}

}  // namespace velmorindal
