#include "VCReset.h"

#include "PayloadWriter.h"

namespace velmorindal {

ByteBuffer VCReset::serialize() const {
    return PayloadWriter{}.commandFrame(messageType);
}

}  // namespace velmorindal
