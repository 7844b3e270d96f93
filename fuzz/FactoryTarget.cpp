// Any bytes as a received frame: checks the message that the factory makes of it, what it prints, and the
// bytes of the message when it is sent again.

#include <array>
#include <memory>
#include <string>

#include "FatalStop.h"
#include "FrameOracle.h"
#include "MessageClass.h"
#include "PrintedLines.h"
#include "Requirement.h"
#include "VelmorindalMessageFactory.h"

namespace velmorindal {
namespace {

void checkFactory(const ByteBuffer& frame, PrintedLines& output) {
    const oracle::Decoding expected = oracle::decoded(frame);
    std::unique_ptr<VelmorindalCommand> message;
    bool stopped = false;
    try {
        message = VelmorindalMessageFactory::createFromWire(frame);
    } catch (const FatalStop&) {
        stopped = true;
    }
    require(stopped == expected.stops,
            "the program stops for a version text that is not UTF-8, and never else");
    if (stopped) {
        return;
    }
    requireEqual(described(message.get()), expected.message, "a frame is decoded as the oracle decodes it");
    requireEqual(output.take(), expected.line, "a refused frame prints its one line");
    if (message) {
        requireEqual(sent(*message), expected.sentAgain, "a decoded message is sent as the oracle says");
    }
}

void checkHeader(const ByteBuffer& frame, PrintedLines& output) {
    for (const std::uint8_t type : std::array<std::uint8_t, 5>{0x00, 'd', 's', 'w', 'z'}) {
        const std::string line = oracle::lineOfCheck(frame, type);
        require(VelmorindalCommand::verifyHeader(frame, type) == line.empty(),
                "a header passes its check where the oracle lets it pass");
        requireEqual(output.take(), line, "the check of a header prints its one line");
    }
}

}  // namespace
}  // namespace velmorindal

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const velmorindal::ByteBuffer frame(data, data + size);
    velmorindal::PrintedLines output;
    velmorindal::checkFactory(frame, output);
    output.take();
    velmorindal::checkHeader(frame, output);
    return 0;
}
