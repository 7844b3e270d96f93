#include "WakeUp.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <system_error>

namespace velmorindal {

WakeUp::WakeUp() {
    std::array<int, 2> ends{};
    if (::pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        throw std::system_error{errno, std::generic_category(), "cannot make a pipe"};
    }
    reader_ = OwnedDescriptor{ends[0]};
    writer_ = OwnedDescriptor{ends[1]};
}

void WakeUp::raise() const {
    const char byte = 0;
    // A full pipe refuses the byte, but is readable already.
    [[maybe_unused]] const ssize_t written = ::write(writer_.get(), &byte, 1);
}

void WakeUp::clear() const {
    std::array<char, 64> bytes{};
    while (::read(reader_.get(), bytes.data(), bytes.size()) > 0) {
    }
}

}  // namespace velmorindal
