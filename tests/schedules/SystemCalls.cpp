// Stand before the system's own for the whole test program, and go their way for every thread that is no part
// of a schedule. What a schedule prints is dropped: there are thousands of them.

#include <sys/syscall.h>
#include <unistd.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <ctime>
#include <span>

#include "schedules/Scheduler.h"
#include "schedules/ScriptedPort.h"

using velmorindal::Scheduler;
using velmorindal::ScriptedPort;

namespace {

ScriptedPort* scriptedPort(int descriptor) {
    return Scheduler::current() != nullptr ? ScriptedPort::of(descriptor) : nullptr;
}

constexpr std::chrono::nanoseconds inOneSecond{std::chrono::seconds{1}};

}  // namespace

extern "C" ssize_t read(int descriptor, void* buffer, std::size_t size) {
    if (ScriptedPort* const port = scriptedPort(descriptor)) {
        return port->read(std::span{static_cast<std::uint8_t*>(buffer), size});
    }
    return syscall(SYS_read, descriptor, buffer, size);
}

extern "C" ssize_t write(int descriptor, const void* bytes, std::size_t size) {
    if (ScriptedPort* const port = scriptedPort(descriptor)) {
        return port->write(std::span{static_cast<const std::uint8_t*>(bytes), size});
    }
    if (descriptor == STDOUT_FILENO && Scheduler::current() != nullptr) {
        return static_cast<ssize_t>(size);
    }
    return syscall(SYS_write, descriptor, bytes, size);
}

extern "C" int nanosleep(const timespec* duration, timespec* remaining) {
    if (Scheduler* const scheduler = Scheduler::current()) {
        scheduler->letTimePass(std::chrono::seconds{duration->tv_sec} +
                               std::chrono::nanoseconds{duration->tv_nsec});
        scheduler->rest("sleep");
        return 0;
    }
    return static_cast<int>(syscall(SYS_nanosleep, duration, remaining));
}

extern "C" int clock_gettime(clockid_t clock, timespec* time) noexcept {
    const Scheduler* const scheduler = Scheduler::current();
    if (scheduler != nullptr && clock == CLOCK_MONOTONIC) {
        time->tv_sec = scheduler->now() / inOneSecond;
        time->tv_nsec = (scheduler->now() % inOneSecond).count();
        return 0;
    }
    return static_cast<int>(syscall(SYS_clock_gettime, clock, time));
}
