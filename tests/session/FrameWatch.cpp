#include "session/FrameWatch.h"

#include <mutex>
#include <utility>

namespace velmorindal {
namespace {

std::mutex watchMutex;
std::function<void(std::size_t)> hook;
std::vector<ByteBuffer> written;

}  // namespace

FrameWatch::FrameWatch(std::function<void(std::size_t)> beforeFrame) {
    const std::lock_guard lock{watchMutex};
    hook = std::move(beforeFrame);
    written.clear();
}

FrameWatch::~FrameWatch() {
    const std::lock_guard lock{watchMutex};
    hook = nullptr;
}

std::vector<ByteBuffer> FrameWatch::frames() const {
    const std::lock_guard lock{watchMutex};
    return written;
}

void FrameWatch::noteWrite(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 4 || bytes[0] != 'c' || bytes[1] != 'b') {
        return;
    }
    std::function<void(std::size_t)> beforeFrame;
    std::size_t number = 0;
    {
        const std::lock_guard lock{watchMutex};
        if (!hook) {
            return;
        }
        written.emplace_back(bytes.begin(), bytes.end());
        beforeFrame = hook;
        number = written.size();
    }
    beforeFrame(number);
}

}  // namespace velmorindal
