#pragma once

#include <fcntl.h>

#include <cstdint>
#include <optional>
#include <vector>

#include "Eventually.h"
#include "PosixSystem.h"
#include "SerialPort.h"

namespace velmorindal {

inline PosixSystem posix;

/// The line as the dongle wants it; reads wait `timeout` tenths of a second each and `timeout` seconds in
/// all.
inline SerialSettings dongleSettings(int timeout) {
    return {.receiveRate = BaudRate::baud115200,
            .transmitRate = BaudRate::baud115200,
            .minimumBytesToRead = 0,
            .timeout = timeout};
}

inline bool isOpen(int descriptor) {
    return ::fcntl(descriptor, F_GETFD) != -1;
}

/// The case that `operation` throws, or nothing.
template <typename Operation>
std::optional<PortError> errorOf(Operation operation) {
    try {
        operation();
    } catch (const PortException& exception) {
        return exception.error;
    }
    return std::nullopt;
}

/// Every value that a byte can have, in order.
inline ByteBuffer everyByte() {
    ByteBuffer bytes;
    for (int value = 0; value <= 0xFF; ++value) {
        bytes.push_back(static_cast<std::uint8_t>(value));
    }
    return bytes;
}

}  // namespace velmorindal
