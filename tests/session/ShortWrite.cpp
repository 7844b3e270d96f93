#include "session/ShortWrite.h"

#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <mutex>
#include <optional>
#include <span>

#include "session/FrameWatch.h"

namespace velmorindal {
namespace {

struct Plan {
    std::uint8_t type;
    std::size_t untilThen;
    std::ptrdiff_t taken;
};

std::mutex planMutex;
std::optional<Plan> plan;

/// What the write of these bytes is to return, or nothing when it is to go its way.
std::optional<std::ptrdiff_t> plannedResult(const std::uint8_t* bytes, std::size_t size) {
    const std::lock_guard lock{planMutex};
    if (!plan || size < 4 || bytes[0] != 'c' || bytes[1] != 'b' || bytes[2] != plan->type ||
        --plan->untilThen > 0) {
        return std::nullopt;
    }
    const std::ptrdiff_t taken = plan->taken;
    plan.reset();
    return taken;
}

}  // namespace

ShortWrite::ShortWrite(VelmorindalMessageType type, std::size_t occurrence, std::ptrdiff_t taken) {
    const std::lock_guard lock{planMutex};
    plan = Plan{static_cast<std::uint8_t>(type), occurrence, taken};
}

ShortWrite::~ShortWrite() {
    const std::lock_guard lock{planMutex};
    plan.reset();
}

bool ShortWrite::hasHappened() const {
    const std::lock_guard lock{planMutex};
    return !plan;
}

}  // namespace velmorindal

// Stands before the system's own for the whole test program.
extern "C" ssize_t write(int descriptor, const void* bytes, std::size_t size) {
    auto wanted = static_cast<std::ptrdiff_t>(size);
    velmorindal::FrameWatch::noteWrite(std::span{static_cast<const std::uint8_t*>(bytes), size});
    if (const auto planned = velmorindal::plannedResult(static_cast<const std::uint8_t*>(bytes), size)) {
        if (*planned < 0) {
            errno = EIO;
            return -1;
        }
        wanted = *planned;
    }
    return syscall(SYS_write, descriptor, bytes, static_cast<std::size_t>(wanted));
}
