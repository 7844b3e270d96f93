#include "transport/SerialPort.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <utility>

#include "transport/ExclusiveOpen.h"
#include "transport/LineAttributes.h"

namespace velmorindal {
namespace {

int accessMode(bool toReceive, bool andTransmit) {
    if (toReceive && andTransmit) {
        return O_RDWR;
    }
    return toReceive ? O_RDONLY : O_WRONLY;
}

/// The node of a device that was pulled out loses its name, and with it its one link. A descriptor that
/// cannot be asked, -1 above all, counts as vanished: reading on would never end without a deadline.
bool nodeIsPresent(int descriptor) {
    struct stat status {};
    return ::fstat(descriptor, &status) == 0 && status.st_nlink == 1;
}

/// While one exists, reads and writes of a descriptor take what there is and return; afterwards they wait
/// again, whatever another thread did with the descriptor meanwhile. openExclusively leaves none of the flags
/// that can be set, so that they need not be read first.
class WithoutWaiting {
  public:
    explicit WithoutWaiting(int descriptor) : descriptor_{descriptor} {
        ::fcntl(descriptor_, F_SETFL, O_NONBLOCK);
    }
    WithoutWaiting(const WithoutWaiting&) = delete;
    WithoutWaiting& operator=(const WithoutWaiting&) = delete;
    ~WithoutWaiting() { ::fcntl(descriptor_, F_SETFL, 0); }

  private:
    const int descriptor_;
};

/// @returns false when no byte can be written within `seconds`; 0 is without end.
bool waitForRoom(int descriptor, int seconds) {
    pollfd line{.fd = descriptor, .events = POLLOUT, .revents = 0};
    return ::poll(&line, 1, seconds == 0 ? -1 : seconds * 1000) > 0;
}

}  // namespace

/// A descriptor that several threads may be using. Told to close, it closes once the last of them has let go
/// of it, so that its number cannot be given to another file while a read with that number is under way.
/// Never told, it stays open.
class SerialPort::Descriptor {
  public:
    explicit Descriptor(int descriptorNumber) : number{descriptorNumber} {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    ~Descriptor() {
        if (closeAfterLastUse_) {
            ::close(number);
        }
    }

    void closeAfterLastUse() {
        // At once, and not with the close: the process may end before its last reader returns, and from here
        // on somebody else may take the terminal, whose exclusive use is no longer ours to end.
        endExclusiveUse(number);
        closeAfterLastUse_ = true;
    }

    const int number;

  private:
    bool closeAfterLastUse_ = false;
};

SerialPort::SerialPort(std::string devicePath) : path{std::move(devicePath)} {}

SerialPort::~SerialPort() = default;

std::optional<int> SerialPort::fileDescriptor() const {
    const std::scoped_lock lock{mutex_};
    return descriptor_ ? std::optional{descriptor_->number} : std::nullopt;
}

int SerialPort::timeout() const {
    return timeout_;
}

void SerialPort::openPort() {
    openPort(true, true);
}

void SerialPort::openPort(bool toReceive, bool andTransmit) {
    if (path.empty()) {
        throw PortException{PortError::invalidPath};
    }
    if (!toReceive && !andTransmit) {
        throw PortException{PortError::mustReceiveOrTransmit};
    }
    const int opened = openExclusively(path, accessMode(toReceive, andTransmit));
    exchangeDescriptor(std::make_shared<Descriptor>(opened));
    if (opened == -1) {
        throw PortException{PortError::failedToOpen};
    }
}

void SerialPort::setSettings(const SerialSettings& settings) {
    const std::shared_ptr<Descriptor> descriptor = currentDescriptor();
    if (!descriptor) {
        return;
    }
    termios attributes{};
    ::tcgetattr(descriptor->number, &attributes);
    attributes = lineAttributes(attributes, settings);
    ::tcsetattr(descriptor->number, TCSANOW, &attributes);
    timeout_ = settings.timeout;
}

void SerialPort::closePort() {
    if (const std::shared_ptr<Descriptor> closing = exchangeDescriptor(nullptr)) {
        closing->closeAfterLastUse();
    }
}

std::ptrdiff_t SerialPort::readBytes(std::span<std::uint8_t> buffer) {
    const std::shared_ptr<Descriptor> descriptor = openDescriptor();
    if (!nodeIsPresent(descriptor->number)) {
        throw PortException{PortError::deviceNotConnected};
    }
    return ::read(descriptor->number, buffer.data(), buffer.size());
}

ByteBuffer SerialPort::readData(std::size_t length) {
    using std::chrono::steady_clock;
    const auto start = steady_clock::now();
    const auto deadlineHasPassed = [this, start] {
        const auto elapsed = std::chrono::duration_cast<std::chrono::seconds>(steady_clock::now() - start);
        return timeout_ != 0 && elapsed.count() >= timeout_;
    };

    ByteBuffer bytes(length);
    std::size_t received = 0;
    while (received < length && !deadlineHasPassed()) {
        // Nothing there yet and an interrupted read are the same here: another turn, and with it another look
        // at whether the port is still open and the device still there.
        const std::ptrdiff_t count = readBytes(std::span{bytes}.subspan(received));
        if (count > 0) {
            received += static_cast<std::size_t>(count);
        }
    }
    bytes.resize(received);
    return bytes;
}

std::ptrdiff_t SerialPort::writeBytes(std::span<const std::uint8_t> bytes) {
    const std::shared_ptr<Descriptor> descriptor = openDescriptor();
    // A device that takes nothing more would hold a waiting write, and with it the program, until it is
    // pulled out.
    const WithoutWaiting withoutWaiting{descriptor->number};
    const std::ptrdiff_t written = ::write(descriptor->number, bytes.data(), bytes.size());
    if (written == -1 && errno == EAGAIN && waitForRoom(descriptor->number, timeout_)) {
        return ::write(descriptor->number, bytes.data(), bytes.size());
    }
    return written;
}

std::ptrdiff_t SerialPort::writeData(std::span<const std::uint8_t> bytes) {
    return writeBytes(bytes);
}

std::shared_ptr<SerialPort::Descriptor> SerialPort::currentDescriptor() const {
    const std::scoped_lock lock{mutex_};
    return descriptor_;
}

std::shared_ptr<SerialPort::Descriptor> SerialPort::openDescriptor() const {
    std::shared_ptr<Descriptor> descriptor = currentDescriptor();
    if (!descriptor) {
        throw PortException{PortError::mustBeOpen};
    }
    return descriptor;
}

std::shared_ptr<SerialPort::Descriptor> SerialPort::exchangeDescriptor(std::shared_ptr<Descriptor> next) {
    const std::scoped_lock lock{mutex_};
    return std::exchange(descriptor_, std::move(next));
}

}  // namespace velmorindal
