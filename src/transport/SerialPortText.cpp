// The text and single-unit reads and writes of SerialPort, all in terms of readBytes, readData and writeData.

#include <utf8.h>

#include <iterator>

#include "SerialPort.h"

namespace velmorindal {
namespace {

std::span<const std::uint8_t> bytesOf(std::string_view text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

void requireUTF8(std::string_view text) {
    if (!utf8::is_valid(text.begin(), text.end())) {
        throw PortException{PortError::stringsMustBeUTF8};
    }
}

}  // namespace

std::string SerialPort::readString(std::size_t length) {
    const ByteBuffer bytes = readData(length);
    std::string text{bytes.begin(), bytes.end()};
    requireUTF8(text);
    return text;
}

std::string SerialPort::readUntilChar(char terminator) {
    std::string text;
    while (true) {
        const std::uint8_t byte = readByte();
        // Bytes below 0x80 are UTF-8 in any order.
        if (byte >= 0x80) {
            throw PortException{PortError::unableToConvertByteToCharacter};
        }
        const char character = static_cast<char>(byte);
        if (character == terminator) {
            return text;
        }
        text += character;
    }
}

std::string SerialPort::readLine() {
    return readUntilChar('\n');
}

std::uint8_t SerialPort::readByte() {
    std::uint8_t byte = 0;
    while (readBytes({&byte, 1}) <= 0) {
    }
    return byte;
}

char32_t SerialPort::readChar() {
    return readByte();
}

std::ptrdiff_t SerialPort::writeString(std::string_view text) {
    requireUTF8(text);
    return writeData(bytesOf(text));
}

std::ptrdiff_t SerialPort::writeChar(char32_t scalar) {
    ByteBuffer bytes;
    try {
        utf8::append(scalar, std::back_inserter(bytes));
    } catch (const utf8::invalid_code_point&) {
        throw PortException{PortError::stringsMustBeUTF8};
    }
    return writeData(bytes);
}

}  // namespace velmorindal
