#include <exception>
#include <string_view>
#include <utility>

#include "DongleProbe.h"
#include "DongleTrouble.h"
#include "MessageCast.h"
#include "Print.h"
#include "RawValue.h"
#include "VCStatus.h"
#include "VCVersion.h"
#include "VelmorindalSwitch.h"

namespace velmorindal {
namespace {

constexpr auto versionCode = rawValue(VelmorindalMessageType::version);
constexpr auto statusCode = rawValue(VelmorindalMessageType::status);
constexpr std::string_view versionTextStart = "Velmorindal";
constexpr std::size_t flushedAtMost = 1000;

std::string unrecognizedResponse(std::string_view code) {
    return "The device sent an unrecognized response.\n\n(Error code: " + std::string{code} + ")";
}

}  // namespace

std::vector<std::string> VelmorindalSwitch::listDevices() {
    std::vector<std::string> dongles;
    for (const std::string& path : search_.candidates()) {
        const auto text = versionTextOf(path, system_);
        if (!text) {
            continue;
        }
        print("Got version string: ", *text);
        if (text->starts_with(versionTextStart)) {
            dongles.push_back(path);
            print("Definitely this one ", path);
        } else {
            DongleTrouble{path, system_}.otherDevice(*text);
        }
    }
    return dongles;
}

OperationResult VelmorindalSwitch::connect() {
    lastError = std::nullopt;
    const std::vector<std::string> dongles = listDevices();
    dispatch_.postToMain([this] { readWriteProgress = 0.0; });
    if (serialPort.get()) {
        print("Attempting re-connection");
        return failure("Already connected to the Velmorindal Device.");
    }
    if (dongles.empty()) {
        print("No dongles found. Quitting.");
        return connectionFailure(
            {"Could not detect Velmorindal Dongle.\nPlease ensure that it is plugged into a USB port."});
    }
    std::optional<std::string> warning;
    if (dongles.size() > 1) {
        print("This program has detected " + std::to_string(dongles.size()) +
              " dongles.\n\nOne will be chosen arbitrarily.");
        warning =
            "Multiple dongles found. To ensure that you program the correct device, please remove any extra "
            "USB dongles.";
        lastError = warning;
    }
    print("Have device(s) : ", dongles);
    dispatch_.runOnMainAndWait([this] { connectionState = ConnectionStatus::connecting; });
    auto reason = openDongle(dongles.front());
    if (!reason) {
        reason = checkVersion();
    }
    if (!reason) {
        reason = checkLink();
    }
    if (reason) {
        return connectionFailure(*reason);
    }
    OperationResult result = readSettingsAndFinish();
    if (result && warning) {
        // Reading the settings has cleared it, and the wizard shows the warning after a success.
        lastError = warning;
        result.text = std::move(warning);
    }
    return result;
}

OperationResult VelmorindalSwitch::connectionFailure(const ConnectionFailure& reason) {
    if (reason.state == ConnectionStatus::error) {
        OperationResult result = failure(reason.text);
        dispatch_.postToMain([this] { connectionState = ConnectionStatus::error; });
        return result;
    }
    dispatch_.runOnMainAndWait([this, state = reason.state] { connectionState = state; });
    return failure(reason.text);
}

std::optional<VelmorindalSwitch::ConnectionFailure> VelmorindalSwitch::openDongle(const std::string& path) {
    const auto port = std::make_shared<SerialPort>(path, system_);
    serialPort = port;
    const DongleTrouble trouble{path, system_};
    try {
        port->openPort(true, true, [&trouble] { trouble.stillBeingClosed(); });
    } catch (const PortException& exception) {
        trouble.notOpened(exception.systemError);
        return ConnectionFailure{"Error connecting to the serial port. It might already be in use."};
    }
    port->setSettings(dongleLine);
    dispatch_.postToMain([this] { readWriteProgress = 1.0; });
    return std::nullopt;
}

std::optional<VelmorindalSwitch::ConnectionFailure> VelmorindalSwitch::checkVersion() {
    std::unique_ptr<VelmorindalCommand> answer;
    try {
        answer = queryDevice(versionCode);
    } catch (const std::exception&) {
        print("Error; could not make any sense of the device");
        return ConnectionFailure{unrecognizedResponse("CC/NR")};
    }
    if (!answer) {
        print("Invalid response.");
        return ConnectionFailure{unrecognizedResponse("CC/IC")};
    }
    print("We made it this far... version code is ", messageAs<VCVersion>(*answer)._versionString);
    return std::nullopt;
}

std::optional<VelmorindalSwitch::ConnectionFailure> VelmorindalSwitch::checkLink() {
    std::unique_ptr<VelmorindalCommand> answer;
    try {
        answer = queryDevice(statusCode);
    } catch (const std::exception&) {
        print("Error; could not get a status from the device");
        return ConnectionFailure{unrecognizedResponse("VS/CC")};
    }
    if (!answer) {
        print("Invalid status.");
        return ConnectionFailure{unrecognizedResponse("VS/IC")};
    }
    // An answer that failed its checks is not refused as invalid: it has the default link state of 0, which
    // ends the attempt here.
    const std::uint8_t linkState = messageAs<VCStatus>(*answer)._linkState;
    print("Have a status: ", linkState);
    if (linkState == 0) {
        return ConnectionFailure{
            .text = "Please ensure that your Velmorindal is turned on and in configuration mode.",
            .state = ConnectionStatus::disconnected};
    }
    return std::nullopt;
}

OperationResult VelmorindalSwitch::readSettingsAndFinish() {
    dispatch_.postToMain([this] { readWriteProgress = 2.0; });
    print("Connected. Going to read settings");
    OperationResult result = readSettingsFromDevice();
    if (!result) {
        print("Failed to read settings.");
        dispatch_.runOnMainAndWait([this] { connectionState = ConnectionStatus::error; });
        return result;
    }
    print("Settings read successfully.");
    dispatch_.runOnMainAndWait([this] {
        print("Successful connection!");
        connectionState = ConnectionStatus::connected;
    });
    print("Status updated now: ", connectionState.get());
    return result;
}

void VelmorindalSwitch::disconnect(bool flush) {
    const auto port = serialPort.get();
    if (flush) {
        flushPort(port.get());
    }
    if (port) {
        port->closePort();
    }
    connectionState = ConnectionStatus::disconnected;
}

void VelmorindalSwitch::flushPort(SerialPort* port) {
    try {
        if (port != nullptr) {
            ByteBuffer drained(flushedAtMost);
            port->readBytes(drained);
        }
        print("flush attempted.");
    } catch (const PortException& exception) {
        print("Buffer flushed.", exception.error);
    }
}

}  // namespace velmorindal
