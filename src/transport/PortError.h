#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace velmorindal {

/// Why an operation of a SerialPort did not happen.
enum class PortError : std::int32_t {
    failedToOpen = -1,                   ///< the system refused to open the node, or another process holds it
    invalidPath = 0,                     ///< the path is empty
    mustReceiveOrTransmit = 1,           ///< neither direction was asked for
    mustBeOpen = 2,                      ///< the port is closed
    stringsMustBeUTF8 = 3,               ///< bytes or text that are not UTF-8
    unableToConvertByteToCharacter = 4,  ///< a byte of 0x80 or above where single characters are read
    deviceNotConnected = 5,              ///< the device node has vanished
};

std::string_view caseName(PortError error);

class PortException : public std::exception {
  public:
    explicit PortException(PortError portError, std::string devicePath = {}, int systemReason = 0)
        : error{portError}, path{std::move(devicePath)}, systemError{systemReason} {}

    /// The case's name.
    const char* what() const noexcept override;

    PortError error;
    /// The port's; empty where the error is not about one.
    std::string path;
    /// The system's own number for it (`errno`), 0 where the system had no part in it.
    int systemError;
};

}  // namespace velmorindal
