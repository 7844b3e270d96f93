#include "VCVersion.h"

#include <utf8.h>

#include "FatalError.h"
#include "PayloadReader.h"

namespace velmorindal {

ByteBuffer VCVersion::serialize() const {
    requireValid();
    return VelmorindalCommand::serialize();
}

bool VCVersion::deserialize(std::span<const std::uint8_t> buffer) {
    const auto payload = PayloadReader::ofFrame(buffer, messageType);
    _valid = payload.has_value();
    if (payload) {
        const auto text = payload->bytes();
        if (!utf8::is_valid(text.begin(), text.end())) {
            fatalError("The version text of the device is not UTF-8.");
        }
        _versionString.assign(text.begin(), text.end());
    }
    return _valid;
}

}  // namespace velmorindal
