#include <exception>
#include <typeinfo>

#include "Print.h"
#include "VelmorindalMessageFactory.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {
namespace {

/// Exactly `length` bytes, or nothing when the port's deadline passed first or the port is gone.
std::optional<ByteBuffer> readExactly(SerialPort& port, std::size_t length) {
    try {
        ByteBuffer bytes = port.readData(length);
        if (bytes.size() == length) {
            return bytes;
        }
    } catch (const PortException&) {
        return std::nullopt;
    }
    return std::nullopt;
}

}  // namespace

std::optional<ByteBuffer> VelmorindalSwitch::readMessage() const {
    const auto port = serialPort.get();
    if (!port) {
        return std::nullopt;
    }
    auto frame = readExactly(*port, VelmorindalCommand::HeaderSize);
    if (!frame) {
        return std::nullopt;
    }
    // The port may have been removed meanwhile.
    if (!serialPort.get()) {
        return std::nullopt;
    }
    const auto payload = readExactly(*port, (*frame)[VelmorindalCommand::LengthOffset]);
    if (!payload) {
        return std::nullopt;
    }
    frame->insert(frame->end(), payload->begin(), payload->end());
    return frame;
}

ByteBuffer VelmorindalSwitch::readAnswer(std::uint8_t messageType) const {
    while (true) {
        auto frame = readMessage();
        if (!frame) {
            throw VelmorindalException{VelmorindalError::NoConnectionError};
        }
        if ((*frame)[VelmorindalCommand::TypeOffset] == messageType) {
            return *std::move(frame);
        }
    }
}

std::unique_ptr<VelmorindalCommand> VelmorindalSwitch::queryDevice(std::uint8_t code) {
    const auto port = serialPort.get();
    if (!port) {
        throw VelmorindalException{VelmorindalError::NoConnectionError};
    }
    const ByteBuffer query = VelmorindalCommand::addHeader({}, code, true);
    port->renewSettings();
    std::ptrdiff_t written = 0;
    try {
        written = port->writeData(query);
    } catch (const PortException&) {
        print("Caught an error on write");
        throw VelmorindalException{VelmorindalError::NoConnectionError};
    }
    if (written != std::ssize(query)) {
        print("Could not write my whole sequence.");
        return nullptr;
    }
    return VelmorindalMessageFactory::createFromWire(readAnswer(code));
}

bool VelmorindalSwitch::sendCommand(const VelmorindalCommand& command) {
    const auto port = serialPort.get();
    if (!port) {
        throw VelmorindalException{VelmorindalError::NoConnectionError};
    }
    if (typeid(command) == typeid(VelmorindalCommand)) {
        throw VelmorindalException{VelmorindalError::NotImplementedError};
    }
    const ByteBuffer frame = command.serialize();
    port->renewSettings();
    if (port->writeData(frame) != std::ssize(frame)) {
        print("Could not write my whole sequence.");
        return false;
    }
    const std::uint8_t messageType = frame[VelmorindalCommand::TypeOffset];
    return VelmorindalCommand::verifyHeader(readAnswer(messageType), messageType);
}

}  // namespace velmorindal
