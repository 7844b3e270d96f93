#include "OneProcessor.h"

namespace velmorindal {

OneProcessor::OneProcessor() {
    const int here = ::sched_getcpu();
    if (here < 0 || here >= CPU_SETSIZE || ::sched_getaffinity(0, sizeof before_, &before_) != 0) {
        return;
    }
    cpu_set_t only;
    CPU_ZERO(&only);
    CPU_SET(static_cast<unsigned>(here), &only);
    stays_ = ::sched_setaffinity(0, sizeof only, &only) == 0;
}

OneProcessor::~OneProcessor() {
    if (stays_) {
        ::sched_setaffinity(0, sizeof before_, &before_);
    }
}

}  // namespace velmorindal
