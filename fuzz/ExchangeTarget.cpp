// Any bytes as what the dongle sends. The first four bytes of the input are the operation ('q'uery, 's'end,
// 'c'onnect, 'l'ist, 'r'ead the settings, 'w'rite them), the message type of a query or command, the size of
// the pieces that arrive, and the write that goes wrong (low four bits; 0 for none) with the number of bytes
// that it takes (high four bits; 15 for a failure). The rest is what the dongle sends.

#include <optional>
#include <string_view>

#include "DongleProbe.h"
#include "FatalStop.h"
#include "FrameOracle.h"
#include "FuzzedLine.h"
#include "ImmediateDispatch.h"
#include "MessageClass.h"
#include "PrintedLines.h"
#include "RawValue.h"
#include "Requirement.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {
namespace {

constexpr std::size_t scriptStart = 4;

/// The stream as the oracle reads it: frame by frame, from the front.
class Stream {
  public:
    explicit Stream(std::span<const std::uint8_t> bytes) : rest_{bytes} {}

    std::optional<ByteBuffer> nextFrame() {
        if (rest_.size() < 4 || rest_.size() - 4 < rest_[3]) {
            rest_ = {};
            return std::nullopt;
        }
        const std::size_t length = 4U + rest_[3];
        ByteBuffer frame(rest_.begin(), rest_.begin() + static_cast<std::ptrdiff_t>(length));
        rest_ = rest_.subspan(length);
        return frame;
    }

    std::optional<ByteBuffer> nextFrameOfType(std::uint8_t type) {
        auto frame = nextFrame();
        while (frame && (*frame)[2] != type) {
            frame = nextFrame();
        }
        return frame;
    }

  private:
    std::span<const std::uint8_t> rest_;
};

class Exchange {
  public:
    Exchange(std::span<const std::uint8_t> input, PrintedLines& output)
        : code_{input[1]},
          line_{{.bytes = input.subspan(scriptStart),
                 .pieceSize = input[2],
                 .faultyWrite = input[3] & 0x0FU,
                 .faultyResult = (input[3] >> 4U) == 0x0F ? -1 : input[3] >> 4U}},
          expected_{input.subspan(scriptStart)},
          output_{output} {}

    void run(char operation) {
        switch (operation) {
            case 'q':
                openPort();
                query();
                break;
            case 's':
                openPort();
                send();
                break;
            case 'l':
                list();
                break;
            case 'c':
                connect();
                break;
            case 'r':
                openPort();
                readSettings();
                break;
            case 'w':
                openPort();
                writeSettings();
                break;
            default:
                break;
        }
        for (const ByteBuffer& written : line_.writes()) {
            require(oracle::lineOfCheck(written, written.size() < 4 ? 0 : written[2]).empty() &&
                        written[0] == 'c',
                    "only whole commands are written");
        }
    }

  private:
    void openPort() {
        auto port = std::make_shared<SerialPort>(FuzzedLine::path(), line_);
        port->openPort();
        port->setSettings(dongleLine);
        model_.serialPort = port;
    }

    /// Repeats the query until the dongle is gone, so that every frame of the stream is used.
    void query() {
        for (std::size_t asked = 1;; ++asked) {
            const bool partial = writeGoesWrong(asked, 4);
            const auto frame = partial ? std::nullopt : expected_.nextFrameOfType(code_);
            const auto decoding = oracle::decoded(frame.value_or(ByteBuffer{}));
            output_.take();
            try {
                const auto answer = model_.queryDevice(code_);
                require(partial || frame, "an answer needs a frame");
                require((answer == nullptr) == (partial || decoding.message == "none"),
                        "an answer is there when the oracle decodes one");
                requireEqual(output_.take(), partial ? "Could not write my whole sequence.\n" : decoding.line,
                             "a query prints what the check of its answer prints");
            } catch (const VelmorindalException& exception) {
                require(!partial && !frame && exception.error == VelmorindalError::NoConnectionError,
                        "a query throws for want of a frame only");
                return;
            } catch (const FatalStop&) {
                require(decoding.stops, "the program stops for a version text that is not UTF-8 only");
                return;
            }
        }
    }

    void send() {
        for (const MessageClass& messageClass : allMessageClasses()) {
            const auto message = messageClass.make();
            ByteBuffer frame;
            try {
                frame = message->serialize();
            } catch (const VelmorindalException&) {
                continue;
            }
            if (frame[2] == code_) {
                sendUntilGone(*message, frame);
            }
        }
    }

    void sendUntilGone(const VelmorindalCommand& message, const ByteBuffer& sent) {
        for (std::size_t count = 1;; ++count) {
            const bool partial = writeGoesWrong(count, sent.size());
            const auto frame = partial ? std::nullopt : expected_.nextFrameOfType(code_);
            const std::string line = frame ? oracle::lineOfCheck(*frame, code_) : "";
            output_.take();
            try {
                require(model_.sendCommand(message) == (!partial && line.empty()),
                        "a command is acknowledged by a whole frame of its type");
                requireEqual(output_.take(), partial ? "Could not write my whole sequence.\n" : line,
                             "sending prints what the check of the acknowledgement prints");
            } catch (const VelmorindalException&) {
                require(!partial && !frame, "sending throws for want of a frame only");
                return;
            }
        }
    }

    void list() {
        const auto frame = expected_.nextFrame();
        const ByteBuffer text = frame ? ByteBuffer(frame->begin() + 4, frame->end()) : ByteBuffer{};
        const bool dongle = frame && !writeGoesWrong(1, 4) && oracle::isUTF8(text) &&
                            std::string{text.begin(), text.end()}.starts_with("Velmorindal");
        require(
            model_.listDevices() == (dongle ? std::vector{FuzzedLine::path()} : std::vector<std::string>{}),
            "a dongle is listed for its version text");
    }

    void connect() {
        try {
            const bool connected = model_.connect();
            const ConnectionStatus state = model_.connectionState.get();
            require(connected == (state == ConnectionStatus::connected), "the result agrees with the state");
            require(connected == model_.isValid, "connected means that all settings were read");
            require(connected != model_.lastError.get().has_value(),
                    "a failure has its text, a success none");
        } catch (const FatalStop&) {
            // The second version text was not UTF-8, after a valid first one.
        }
    }

    void readSettings() {
        model_.connectionState = ConnectionStatus::connecting;
        const bool complete = model_.readSettingsFromDevice();
        require(complete == model_.isValid, "the settings are valid when all of them were read");
        require(complete != model_.lastError.get().has_value(), "a failure has its text, a success none");
    }

    void writeSettings() {
        model_.isValid = true;
        model_.connectionState = ConnectionStatus::connected;
        bool acknowledged = true;
        for (const char type : std::string_view{"xpdyhkw"}) {
            const auto code = static_cast<std::uint8_t>(type);
            const auto frame = expected_.nextFrameOfType(code);
            acknowledged = acknowledged && frame && oracle::lineOfCheck(*frame, code).empty();
        }
        const bool written = model_.commitSettingsToDevice();
        require(line_.script().faultyWrite != 0 || written == acknowledged,
                "a write succeeds when all of it is acknowledged");
        require(written == (model_.connectionState.get() == ConnectionStatus::connected),
                "the result agrees with the state");
        require(written != model_.lastError.get().has_value(), "a failure has its text, a success none");
    }

    bool writeGoesWrong(std::size_t number, std::size_t length) const {
        const auto& script = line_.script();
        return number == script.faultyWrite && script.faultyResult < static_cast<std::ptrdiff_t>(length);
    }

    const std::uint8_t code_;
    FuzzedLine line_;
    Stream expected_;
    PrintedLines& output_;
    ImmediateDispatch dispatch_;
    VelmorindalSwitch model_{dispatch_, line_, {.directory = FuzzedLine::directory()}};
};

}  // namespace
}  // namespace velmorindal

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size >= velmorindal::scriptStart) {
        velmorindal::PrintedLines output;
        velmorindal::Exchange{{data, size}, output}.run(static_cast<char>(data[0]));
    }
    return 0;
}
