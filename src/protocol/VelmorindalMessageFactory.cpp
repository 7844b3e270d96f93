#include "VelmorindalMessageFactory.h"

#include <algorithm>
#include <array>

#include "RawValue.h"
#include "VCAutoTune.h"
#include "VCHumDuration.h"
#include "VCHumThresholds.h"
#include "VCKeyboardConfig.h"
#include "VCLastHumDuration.h"
#include "VCOutputPath.h"
#include "VCProtocolSelect.h"
#include "VCRelayConfig.h"
#include "VCReset.h"
#include "VCStatus.h"
#include "VCVersion.h"
#include "VCWriteSettings.h"

namespace velmorindal {
namespace {

struct Entry {
    std::uint8_t code;
    std::unique_ptr<VelmorindalCommand> (*make)();
};

template <typename Message>
constexpr Entry entryFor() {
    return {rawValue(Message::messageType),
            []() -> std::unique_ptr<VelmorindalCommand> { return std::make_unique<Message>(); }};
}

constexpr std::array entries{
    entryFor<VCHumDuration>(),     entryFor<VCHumThresholds>(), entryFor<VCKeyboardConfig>(),
    entryFor<VCLastHumDuration>(), entryFor<VCOutputPath>(),    entryFor<VCStatus>(),
    entryFor<VCAutoTune>(),        entryFor<VCVersion>(),       entryFor<VCWriteSettings>(),
    entryFor<VCProtocolSelect>(),  entryFor<VCRelayConfig>(),   entryFor<VCReset>(),
};

}  // namespace

std::unique_ptr<VelmorindalCommand> VelmorindalMessageFactory::createFromWire(
    std::span<const std::uint8_t> buffer) {
    if (buffer.size() < VelmorindalCommandProtocol::HeaderSize) {
        return nullptr;
    }
    const auto* const entry =
        std::ranges::find(entries, buffer[VelmorindalCommandProtocol::TypeOffset], &Entry::code);
    if (entry == entries.end()) {
        return nullptr;
    }
    auto message = entry->make();
    try {
        message->deserialize(buffer);
    } catch (const VelmorindalException&) {
        return nullptr;  // a message that is never received
    }
    return message;
}

}  // namespace velmorindal
