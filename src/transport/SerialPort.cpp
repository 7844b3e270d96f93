#include "SerialPort.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "LineAttributes.h"

namespace velmorindal {
namespace {

using namespace std::chrono_literals;

/// A file at its end, and a line in the moment between being hung up and losing its node, answer every read
/// at once with nothing.
constexpr auto restAfterNothing = 5ms;
/// How often the line is tried without its having said that it is ready. Another program may have set how
/// many bytes make it ready to read; and a driver may call a line ready to write long after it has room
/// again.
constexpr auto longestWait = 100ms;
/// The unit of VTIME.
constexpr auto tenthOfASecond = 100ms;

int accessMode(bool toReceive, bool andTransmit) {
    if (toReceive && andTransmit) {
        return O_RDWR;
    }
    return toReceive ? O_RDONLY : O_WRONLY;
}

}  // namespace

/// A descriptor that several threads may be using. Told to close, it closes once the last of them has let go
/// of it, so that its number cannot be given to another file while a read with that number is under way.
/// Never told, it stays open.
class SerialPort::Descriptor {
  public:
    Descriptor(int descriptorNumber, System& system) : number{descriptorNumber}, system_{system} {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    ~Descriptor() {
        if (closeAfterLastUse_ && number != -1) {
            system_.close(number);
        }
    }

    void closeAfterLastUse() {
        // At once, and not with the close: the process may end before its last reader returns, and from here
        // on somebody else may take the terminal, whose exclusive use is no longer ours to end.
        if (number != -1) {
            system_.endExclusiveUse(number);
        }
        closeAfterLastUse_ = true;
    }

    const int number;

  private:
    System& system_;
    bool closeAfterLastUse_ = false;
};

SerialPort::SerialPort(std::string devicePath, System& system)
    : path{std::move(devicePath)}, system_{system} {}

SerialPort::~SerialPort() = default;

std::optional<int> SerialPort::fileDescriptor() const {
    const Lock lock{mutex_};
    return descriptor_ ? std::optional{descriptor_->number} : std::nullopt;
}

int SerialPort::timeout() const {
    return timeout_;
}

void SerialPort::openPort() {
    openPort(true, true);
}

void SerialPort::openPort(bool toReceive, bool andTransmit, const std::function<void()>& whenSlow) {
    if (path.empty()) {
        throw PortException{PortError::invalidPath};
    }
    if (!toReceive && !andTransmit) {
        throw PortException{PortError::mustReceiveOrTransmit, path};
    }
    const int opened = system_.openExclusively(path, accessMode(toReceive, andTransmit), whenSlow);
    const int reason = errno;
    exchangeDescriptor(std::make_shared<Descriptor>(opened, system_));
    attributes_.reset();
    moreMayBeThere_ = false;
    if (opened == -1) {
        throw PortException{PortError::failedToOpen, path, reason};
    }
}

void SerialPort::setSettings(const SerialSettings& settings) {
    const std::shared_ptr<Descriptor> descriptor = currentDescriptor();
    if (!descriptor) {
        return;
    }
    termios attributes{};
    system_.lineAttributes(descriptor->number, attributes);
    attributes = lineAttributes(attributes, settings);
    system_.setLineAttributes(descriptor->number, attributes);
    timeout_ = settings.timeout;
    minimumBytesToRead_ = settings.minimumBytesToRead;
    // As the system has them: a driver need not take all that it is told.
    const bool known = system_.lineAttributes(descriptor->number, attributes);
    attributes_ = known ? std::optional{attributes} : std::nullopt;
}

void SerialPort::renewSettings() {
    const std::shared_ptr<Descriptor> descriptor = currentDescriptor();
    termios now{};
    if (descriptor && attributes_ && system_.lineAttributes(descriptor->number, now) &&
        !sameAttributes(now, *attributes_)) {
        system_.setLineAttributes(descriptor->number, *attributes_);
    }
}

void SerialPort::closePort() {
    if (const std::shared_ptr<Descriptor> closing = exchangeDescriptor(nullptr)) {
        closing->closeAfterLastUse();
    }
}

std::ptrdiff_t SerialPort::readBytes(std::span<std::uint8_t> buffer) {
    // Before any wait: the system refuses a read from a port that is open for writing alone.
    moreMayBeThere_ = true;
    std::optional<TimePoint> end;
    if (minimumBytesToRead_ == 0) {
        end = system_.now() + timeout_.load() * tenthOfASecond;
    }
    while (true) {
        if (const auto count = readOnce(buffer, end)) {
            return *count;
        }
        if (end && system_.now() >= *end) {
            return 0;
        }
    }
}

std::optional<std::ptrdiff_t> SerialPort::readOnce(std::span<std::uint8_t> buffer,
                                                   std::optional<TimePoint> end) {
    const std::shared_ptr<Descriptor> descriptor = openDescriptor();
    // The node of a device that was pulled out loses its name, and with it its one link. A descriptor that
    // cannot be asked, -1 above all, counts as vanished: reading on would never end without a deadline.
    if (system_.linkCount(descriptor->number) != 1U) {
        throw PortException{PortError::deviceNotConnected, path};
    }
    std::ptrdiff_t count = -1;
    errno = EAGAIN;
    if (std::exchange(moreMayBeThere_, false)) {
        count = system_.read(descriptor->number, buffer);
    }
    if (count == -1 && errno == EAGAIN) {
        waitAWhile(descriptor->number, System::Readiness::toRead, end);
        count = system_.read(descriptor->number, buffer);
    }
    if (count == -1 && errno == EAGAIN) {
        return std::nullopt;
    }
    moreMayBeThere_ = count > 0 && static_cast<std::size_t>(count) == buffer.size();
    return count;
}

ByteBuffer SerialPort::readData(std::size_t length) {
    const std::optional<TimePoint> deadline = deadlineFromNow();

    ByteBuffer bytes(length);
    std::size_t received = 0;
    TimePoint turn = system_.now();
    while (received < length && (!deadline || turn < *deadline)) {
        // Nothing there yet and an interrupted read are the same here: another turn, and with it another look
        // at whether the port is still open and the device still there.
        const std::ptrdiff_t count = readOnce(std::span{bytes}.subspan(received), deadline).value_or(0);
        if (count > 0) {
            received += static_cast<std::size_t>(count);
        } else if (const TimePoint now = system_.now(); now - turn < restAfterNothing) {
            system_.sleepFor(deadline ? std::min<System::Clock::duration>(restAfterNothing, *deadline - now)
                                      : restAfterNothing);
        }
        if (received < length) {
            turn = system_.now();
        }
    }
    bytes.resize(received);
    return bytes;
}

std::ptrdiff_t SerialPort::writeBytes(std::span<const std::uint8_t> bytes) {
    const std::shared_ptr<Descriptor> descriptor = openDescriptor();
    moreMayBeThere_ = false;
    const std::optional<TimePoint> deadline = deadlineFromNow();
    std::size_t taken = 0;
    while (true) {
        const std::ptrdiff_t count = system_.write(descriptor->number, bytes.subspan(taken));
        taken += count > 0 ? static_cast<std::size_t>(count) : 0;
        if (taken == bytes.size()) {
            return bytes.empty() ? count : std::ssize(bytes);
        }
        const bool mayGoOn = count != -1 || errno == EAGAIN || errno == EINTR;
        if (!mayGoOn || !waitAWhile(descriptor->number, System::Readiness::toWrite, deadline)) {
            return taken > 0 ? static_cast<std::ptrdiff_t>(taken) : -1;
        }
    }
}

std::ptrdiff_t SerialPort::writeData(std::span<const std::uint8_t> bytes) {
    return writeBytes(bytes);
}

bool SerialPort::waitAWhile(int descriptor, System::Readiness readiness, std::optional<TimePoint> until) {
    const TimePoint soon = system_.now() + longestWait;
    system_.wait(descriptor, readiness, until ? std::min(*until, soon) : soon);
    return !until || system_.now() < *until;
}

std::optional<SerialPort::TimePoint> SerialPort::deadlineFromNow() const {
    const int seconds = timeout_;
    return seconds == 0 ? std::nullopt : std::optional{system_.now() + std::chrono::seconds{seconds}};
}

std::shared_ptr<SerialPort::Descriptor> SerialPort::currentDescriptor() const {
    const Lock lock{mutex_};
    return descriptor_;
}

std::shared_ptr<SerialPort::Descriptor> SerialPort::openDescriptor() const {
    std::shared_ptr<Descriptor> descriptor = currentDescriptor();
    if (!descriptor) {
        throw PortException{PortError::mustBeOpen, path};
    }
    return descriptor;
}

std::shared_ptr<SerialPort::Descriptor> SerialPort::exchangeDescriptor(std::shared_ptr<Descriptor> next) {
    const Lock lock{mutex_};
    return std::exchange(descriptor_, std::move(next));
}

}  // namespace velmorindal
