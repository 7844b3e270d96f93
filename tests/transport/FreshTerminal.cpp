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

std::vector<std::uint8_t> FreshTerminal::receive(std::size_t count) const {
    constexpr int twoMinutes = 120'000;
    std::vector<std::uint8_t> bytes(count);
    std::size_t received = 0;
    pollfd ready{master_, POLLIN, 0};
    while (received<count&& ::poll(&ready, 1, twoMinutes)> 0) {
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
