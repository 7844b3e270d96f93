#pragma once

#include <cstdint>
#include <exception>
#include <string>
#include <string_view>
#include <utility>

namespace velmorindal {

/// Why an operation of a SerialPort failed.
enum class PortError : std::int32_t {
    failedToOpen = -1,                   ///< the system refused to open the node, or another process holds it
    invalidPath = 0,                     ///< the path is empty
    mustReceiveOrTransmit = 1,           ///< neither direction was asked for
    mustBeOpen = 2,                      ///< the port is closed
    stringsMustBeUTF8 = 3,               ///< bytes or text that are not UTF-8
    unableToConvertByteToCharacter = 4,  ///< a byte of 0x80 or above where single characters are read
    deviceNotConnected = 5,              ///< the device node has vanished
};

/// The case's name as it is spelled here; "unnamed" for a value outside the cases.
std::string_view caseName(PortError error);

/// Thrown by the operations of a SerialPort.
class PortException : public std::exception {
  public:
    explicit PortException(PortError portError, std::string devicePath = {}, int systemReason = 0)
        : error{portError}, path{std::move(devicePath)}, systemError{systemReason} {}

    /// The case's name.
    const char* what() const noexcept override;

    PortError error;
    /// The path of the port; empty for an error that has none.
    std::string path;
    /// The system's error number (`errno`); 0 if the error is not from the system.
    int systemError;
};

}  // namespace velmorindal
