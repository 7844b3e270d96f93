#include "FreshTerminal.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdlib>
#include <system_error>

namespace velmorindal {
namespace {

void require(bool succeeded, const char* what) {
    if (!succeeded) {
        throw std::system_error{errno, std::generic_category(), what};
    }
}

}  // namespace

FreshTerminal::FreshTerminal() : master_{::posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)} {
    require(master_ != -1, "posix_openpt");
    require(::grantpt(master_) == 0, "grantpt");
    require(::unlockpt(master_) == 0, "unlockpt");
    std::array<char, 128> name{};
    require(::ptsname_r(master_, name.data(), name.size()) == 0, "ptsname_r");
    path_ = name.data();
}

FreshTerminal::~FreshTerminal() {
    unplug();
}

void FreshTerminal::send(std::span<const std::uint8_t> bytes) const {
    require(::write(master_, bytes.data(), bytes.size()) == static_cast<ssize_t>(bytes.size()), "write");
}

std::vector<std::uint8_t> FreshTerminal::receive(std::size_t count, std::chrono::milliseconds bound) const {
    using std::chrono::steady_clock;
    const auto deadline = steady_clock::now() + bound;
    std::vector<std::uint8_t> bytes(count);
    std::size_t received = 0;
    while (received < count) {
        const auto left =
            std::chrono::duration_cast<std::chrono::milliseconds>(deadline - steady_clock::now()).count();
        pollfd ready{master_, POLLIN, 0};
        if (left <= 0 || ::poll(&ready, 1, static_cast<int>(left)) <= 0) {
            break;
        }
        const ssize_t taken = ::read(master_, &bytes[received], count - received);
        require(taken > 0, "read");
        received += static_cast<std::size_t>(taken);
    }
    bytes.resize(received);
    return bytes;
}

void FreshTerminal::unplug() {
    if (master_ != -1) {
        ::close(master_);
        master_ = -1;
    }
}

}  // namespace velmorindal
