#include "ScriptedDongle.h"

#include <charconv>
#include <fstream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <utility>

#include "Hexadecimal.h"
#include "Print.h"

namespace velmorindal {
namespace {

using Type = VelmorindalMessageType;

constexpr unsigned allTypes = 256;

Type typeNamed(const std::string& name) {
    for (unsigned code = 0; code < allTypes; ++code) {
        const auto type = messageTypeFromCode(static_cast<std::uint8_t>(code));
        if (type && caseName(*type) == name) {
            return *type;
        }
    }
    throw std::invalid_argument{"no message type: " + name};
}

template <typename Number>
Number number(const std::string& text) {
    Number value{};
    const char* const end = text.data() + text.size();
    if (std::from_chars(text.data(), end, value).ptr != end) {
        throw std::invalid_argument{"no number: " + text};
    }
    return value;
}

}  // namespace

ScriptedDongle::ScriptedDongle(const std::filesystem::path& directory, const std::string& name,
                               std::filesystem::path silences)
    : silences_{std::move(silences)}, dongle_{directory, {.name = name, .keepsReceivedFrames = false}} {
    dongle_.whenReceived(
        [](std::span<const std::uint8_t> frame) { print("received", hexadecimal(frame, " ")); });
}

void ScriptedDongle::perform(const std::string& line) {
    std::istringstream words{line};
    std::string order;
    std::string first;
    std::string second;
    words >> order >> first >> second;
    if (order == "next") {
        dongle_.onNext(typeNamed(first), faultNamed(second));
    } else if (order == "hold") {
        hold(typeNamed(first));
    } else if (order == "release") {
        release();
    } else if (order == "forget") {
        forget();
    } else if (order == "link") {
        dongle_.prepare([&](DeviceState& device) { device.linkState = number<std::uint8_t>(first); });
    } else if (order == "detect-mode") {
        dongle_.prepare([&](DeviceState& device) {
            device.settings.humDuration.detectMode = number<std::uint8_t>(first);
        });
    } else if (order == "hum") {
        dongle_.humOnce(number<std::uint16_t>(first));
    } else if (order == "clarity") {
        dongle_.reportClarity(number<float>(first));
    } else if (order == "pull-out") {
        dongle_.unplug();
    } else if (order == "stored") {
        for (const std::string& stored : storedSettingsInWords(dongle_.state())) {
            print(stored);
        }
    } else {
        throw std::invalid_argument{"no order: " + line};
    }
}

Fault ScriptedDongle::faultNamed(const std::string& name) const {
    const std::map<std::string, Fault> faults{
        {"silent", Fault{"silent",
                         [this](AnswerPlan& plan) {
                             plan.delivery = AnswerPlan::Delivery::never;
                             plan.applies = false;
                             noteSilence();
                         }}},
        {"refused", Fault::wrongMarker()},
        {"invalid", Fault::payloadOneByteLonger()},
        {"pulled-out", Fault::unplugBeforeAnswer()},
    };
    const auto found = faults.find(name);
    if (found == faults.end()) {
        throw std::invalid_argument{"no fault: " + name};
    }
    return found->second;
}

void ScriptedDongle::noteSilence() const {
    std::ofstream{silences_, std::ios::app}.put('.');
}

void ScriptedDongle::hold(Type type) {
    {
        const Lock lock{mutex_};
        holds_ = true;
    }
    dongle_.onNext(type, Fault{"held", [this](AnswerPlan& plan) {
                                   const Lock lock{mutex_};
                                   if (!holds_) {
                                       return;
                                   }
                                   held_ = plan.answer;
                                   print("held");
                                   plan.delivery = AnswerPlan::Delivery::never;
                               }});
}

std::optional<ByteBuffer> ScriptedDongle::takeHeld() {
    const Lock lock{mutex_};
    holds_ = false;
    return std::exchange(held_, std::nullopt);
}

void ScriptedDongle::release() {
    if (const std::optional<ByteBuffer> held = takeHeld()) {
        dongle_.send(*held);
    }
}

void ScriptedDongle::forget() {
    if (takeHeld()) {
        noteSilence();
    }
}

}  // namespace velmorindal
