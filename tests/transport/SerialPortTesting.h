#pragma once

#include <fcntl.h>

#include <chrono>
#include <cstdint>
#include <optional>
#include <thread>
#include <vector>

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

/// Looks again and again until `condition` holds, for a generous while.
///
/// @returns false when it never did.
template <typename Condition>
bool eventually(Condition condition) {
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::minutes{2};
    while (!condition()) {
        if (std::chrono::steady_clock::now() > deadline) {
            return false;
        }
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    return true;
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
