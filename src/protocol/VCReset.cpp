#include "protocol/VCReset.h"

#include "protocol/PayloadWriter.h"

namespace velmorindal {

ByteBuffer VCReset::serialize() const {
    return PayloadWriter{}.commandFrame(messageType);
}

}  // namespace velmorindal
