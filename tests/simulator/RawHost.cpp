#include "RawHost.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>
#include <thread>

namespace velmorindal {

using Clock = std::chrono::steady_clock;

RawHost::RawHost(const std::filesystem::path& port)
    : port_{::open(port.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC)} {
    if (port_.get() < 0) {
        throw std::system_error{errno, std::generic_category(), "cannot open " + port.string()};
    }
}

void RawHost::write(std::span<const std::uint8_t> bytes) const {
    while (!bytes.empty()) {
        const ssize_t written = ::write(port_.get(), bytes.data(), bytes.size());
        if (written < 0) {
            throw std::system_error{errno, std::generic_category(), "cannot write to the port"};
        }
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
}

ByteBuffer RawHost::read(std::size_t length) const {
    const Clock::time_point deadline = Clock::now() + patience;
    ByteBuffer bytes;
    while (bytes.size() < length) {
        const ByteBuffer more = readSome(length - bytes.size(), deadline);
        if (more.empty()) {
            break;
        }
        bytes.insert(bytes.end(), more.begin(), more.end());
    }
    return bytes;
}

bool RawHost::sawTheEnd() const {
    const Clock::time_point deadline = Clock::now() + patience;
    while (!readSome(4096, deadline).empty()) {
    }
    return Clock::now() < deadline;
}

unsigned long RawHost::linkCount() const {
    struct stat status {};
    ::fstat(port_.get(), &status);
    return status.st_nlink;
}

bool RawHost::sawTheNodeVanish() const {
    const Clock::time_point deadline = Clock::now() + patience;
    while (linkCount() != 0 && Clock::now() < deadline) {
        std::this_thread::yield();
    }
    return linkCount() == 0;
}

ByteBuffer RawHost::readSome(std::size_t length, Clock::time_point deadline) const {
    const auto left = std::chrono::ceil<std::chrono::milliseconds>(deadline - Clock::now());
    pollfd entry{.fd = port_.get(), .events = POLLIN, .revents = 0};
    if (left.count() <= 0 || ::poll(&entry, 1, static_cast<int>(left.count())) <= 0) {
        return {};
    }
    ByteBuffer bytes(length);
    const ssize_t count = ::read(port_.get(), bytes.data(), bytes.size());
    bytes.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    return bytes;
}

ByteBuffer operator+(ByteBuffer first, const ByteBuffer& second) {
    first.insert(first.end(), second.begin(), second.end());
    return first;
}

}  // namespace velmorindal
