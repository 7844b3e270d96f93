#include "VCWriteSettings.h"

#include "PayloadWriter.h"

namespace velmorindal {

ByteBuffer VCWriteSettings::serialize() const {
    return PayloadWriter{}.commandFrame(messageType);
}

}  // namespace velmorindal
