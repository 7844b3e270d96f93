#include "ExchangePeer.h"

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <stdexcept>

namespace velmorindal {

ExchangePeer::ExchangePeer() : master_{::posix_openpt(O_RDWR | O_NOCTTY)} {
    if (master_ == -1 || ::grantpt(master_) != 0 || ::unlockpt(master_) != 0) {
        throw std::runtime_error("No pseudo-terminal could be made.");
    }
    path_ = ::ptsname(master_);
    slave_ = ::open(path_.c_str(), O_RDWR | O_NOCTTY);
    termios attributes{};
    ::tcgetattr(slave_, &attributes);
    ::cfmakeraw(&attributes);
    ::tcsetattr(slave_, TCSANOW, &attributes);
    server_ = std::thread{[this] { serve(); }};
}

ExchangePeer::~ExchangePeer() {
    // Four bytes that are not a command end the server.
    const std::array<std::uint8_t, queryLength> farewell{};
    if (::write(slave_, farewell.data(), farewell.size()) == std::ssize(farewell)) {
        server_.join();
    } else {
        server_.detach();
    }
    ::close(slave_);
    ::close(master_);
}

void ExchangePeer::serve() const {
    constexpr std::array<std::uint8_t, answerLength> answer{'r', 'b', 'v', 16,  'V', 'e', 'l', 'm', 'o', 'r',
                                                            'i', 'n', 'd', 'a', 'l', ' ', '1', '.', '1', 'M'};
    std::array<std::uint8_t, queryLength> query{};
    while (::read(master_, query.data(), query.size()) == std::ssize(query) && query[0] == 'c') {
        if (::write(master_, answer.data(), answer.size()) != std::ssize(answer)) {
            return;
        }
    }
}

}  // namespace velmorindal
