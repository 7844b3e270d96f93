#include "protocol/VCWriteSettings.h"

#include "protocol/PayloadWriter.h"

namespace velmorindal {

ByteBuffer VCWriteSettings::serialize() const {
    return PayloadWriter{}.commandFrame(messageType);
}

}  // namespace velmorindal
