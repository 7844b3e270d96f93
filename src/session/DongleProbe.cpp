#include "DongleProbe.h"

#include <utf8.h>

#include <cerrno>
#include <chrono>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "DongleTrouble.h"
#include "Print.h"
#include "RawValue.h"
#include "SerialPort.h"
#include "VelmorindalCommand.h"
#include "VelmorindalMessageType.h"

namespace velmorindal {
namespace {

/// Reads `remaining` bytes of text, fewer when the port's deadline passes.
///
/// @returns nothing when a piece is not UTF-8. @throws PortException when the port is gone.
std::optional<std::string> readVersionText(SerialPort& port, std::size_t remaining, System& system,
                                           const DongleTrouble& trouble) {
    std::string text;
    const auto start = system.now();
    const std::chrono::seconds limit{port.timeout()};
    while (remaining > 0) {
        const ByteBuffer piece = port.readData(remaining);
        if (!utf8::is_valid(piece.begin(), piece.end())) {
            text.append(piece.begin(), piece.end());
            trouble.otherDevice(text);
            return std::nullopt;
        }
        text.append(piece.begin(), piece.end());
        remaining -= piece.size();
        if (limit.count() > 0 && system.now() - start > limit) {
            break;
        }
    }
    return text;
}

/// Only a character device can be a dongle. Nothing else with a matching name is opened: a pipe would pass
/// the query on to another program, a file would be overwritten, and each would cost a wait of two seconds.
bool canBeADongle(const std::string& path) {
    std::error_code unreadable;
    return std::filesystem::is_character_file(path, unreadable);
}

}  // namespace

std::optional<std::string> versionTextOf(const std::string& path, System& system) {
    const DongleTrouble trouble{path, system};
    SerialPort port{path, system};
    if (!canBeADongle(path)) {
        print("Open Result: ", -1);
        trouble.notASerialPort();
        return std::nullopt;
    }
    try {
        port.openPort(true, true, [&trouble] { trouble.stillBeingClosed(); });
    } catch (const PortException& exception) {
        print("Open Result: ", port.fileDescriptor().value_or(-1));
        trouble.notOpened(exception.systemError);
        return std::nullopt;
    }
    print("Open Result: ", port.fileDescriptor().value_or(-1));
    port.setSettings(dongleLine);
    const ByteBuffer query =
        VelmorindalCommand::addHeader({}, rawValue(VelmorindalMessageType::version), true);
    try {
        errno = 0;
        const std::ptrdiff_t taken = port.writeData(query);
        const int reason = errno;
        if (taken != std::ssize(query)) {
            print("Could not write my whole sequence.");
            trouble.queryNotWritten(taken, query.size(), reason);
            return std::nullopt;
        }
    } catch (const PortException& exception) {
        print("Caught an error on write", exception.error);
        return std::nullopt;
    }
    std::optional<std::string> text;
    try {
        const ByteBuffer header = port.readData(VelmorindalCommand::HeaderSize);
        if (header.size() < VelmorindalCommand::HeaderSize) {
            trouble.noAnswer(header);
            return std::nullopt;
        }
        text = readVersionText(port, header[VelmorindalCommand::LengthOffset], system, trouble);
    } catch (const PortException&) {
        trouble.unplugged();
        return std::nullopt;
    }
    port.closePort();
    return text;
}

}  // namespace velmorindal
