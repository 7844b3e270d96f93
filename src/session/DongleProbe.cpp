#include "session/DongleProbe.h"

#include <utf8.h>

#include <chrono>
#include <cstddef>
#include <filesystem>
#include <system_error>

#include "diagnostics/Print.h"
#include "protocol/RawValue.h"
#include "protocol/VelmorindalCommand.h"
#include "protocol/VelmorindalMessageType.h"
#include "transport/SerialPort.h"

namespace velmorindal {
namespace {

/// Reads `remaining` bytes of text, fewer when the port's deadline passes.
///
/// @returns nothing when a piece is not UTF-8. @throws PortException when the port is gone.
std::optional<std::string> readVersionText(SerialPort& port, std::size_t remaining, System& system) {
    std::string text;
    const auto start = system.now();
    const std::chrono::seconds limit{port.timeout()};
    while (remaining > 0) {
        const ByteBuffer piece = port.readData(remaining);
        if (!utf8::is_valid(piece.begin(), piece.end())) {
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

/// Only a character device can be a dongle. Whatever else has the name of one is not so much as opened: a
/// pipe would pass the query on to a stranger, a file would be written over, and each would cost two seconds
/// of silence.
bool canBeADongle(const std::string& path) {
    std::error_code unreadable;
    return std::filesystem::is_character_file(path, unreadable);
}

}  // namespace

std::optional<std::string> versionTextOf(const std::string& path, System& system) {
    SerialPort port{path, system};
    try {
        if (!canBeADongle(path)) {
            throw PortException{PortError::failedToOpen};
        }
        port.openPort(true, true);
    } catch (const PortException&) {
        print("Open Result: ", port.fileDescriptor().value_or(-1));
        return std::nullopt;
    }
    print("Open Result: ", port.fileDescriptor().value_or(-1));
    port.setSettings(dongleLine);
    const ByteBuffer query =
        VelmorindalCommand::addHeader({}, rawValue(VelmorindalMessageType::version), true);
    try {
        if (port.writeData(query) != std::ssize(query)) {
            print("Could not write my whole sequence.");
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
            return std::nullopt;
        }
        text = readVersionText(port, header[VelmorindalCommand::LengthOffset], system);
    } catch (const PortException&) {
        return std::nullopt;
    }
    port.closePort();
    return text;
}

}  // namespace velmorindal
