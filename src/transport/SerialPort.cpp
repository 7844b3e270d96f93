#include "SerialPort.h"

#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <utility>

#include "LineAttributes.h"

namespace velmorindal {
namespace {

using namespace std::chrono_literals;

/// A file at its end, and a line between its hang-up and the removal of its node, return nothing from every
/// read at once.
constexpr auto restAfterNothing = 5ms;
/// The longest wait before a line is tried although it has not become ready. Another program may have changed
/// how many bytes make it ready to read, and a driver may report room long after there is some.
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

/// A descriptor that several threads may use. After closeAfterLastUse() it is closed when the last of them
/// releases it, so that another file cannot get its number while a read is running. Without that call it
/// stays open.
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
        // Now, and not with the close: the process may end before its last reader returns, and later another
        // program may have taken the terminal.
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
    // As the system reports them: a driver need not accept all settings.
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
    // Reads before the first wait, so that a port open only for writing fails at once.
    moreMayBeThere_ = true;
    TimePoint now = system_.now();
    std::optional<TimePoint> end;
    if (minimumBytesToRead_ == 0) {
        end = now + timeout_.load() * tenthOfASecond;
    }
    while (true) {
        if (const auto count = readOnce(buffer, now, end)) {
            return *count;
        }
        now = system_.now();
        if (end && now >= *end) {
            return 0;
        }
    }
}

std::optional<std::ptrdiff_t> SerialPort::readOnce(std::span<std::uint8_t> buffer, TimePoint now,
                                                   std::optional<TimePoint> end) {
    const std::shared_ptr<Descriptor> descriptor = openDescriptor();
    // The node of a device that was unplugged loses its one link. A descriptor without a link count, such as
    // -1, counts as vanished: without a deadline, reading on would never end.
    if (system_.linkCount(descriptor->number) != 1U) {
        throw PortException{PortError::deviceNotConnected, path};
    }
    std::ptrdiff_t count = -1;
    errno = EAGAIN;
    if (std::exchange(moreMayBeThere_, false)) {
        count = system_.read(descriptor->number, buffer);
    }
    if (count == -1 && errno == EAGAIN) {
        waitAWhile(descriptor->number, System::Readiness::toRead, now, end);
        count = system_.read(descriptor->number, buffer);
    }
    if (count == -1 && errno == EAGAIN) {
        return std::nullopt;
    }
    moreMayBeThere_ = count > 0 && static_cast<std::size_t>(count) == buffer.size();
    return count;
}

ByteBuffer SerialPort::readData(std::size_t length) {
    TimePoint now = system_.now();
    const std::optional<TimePoint> deadline = deadlineFrom(now);

    ByteBuffer bytes(length);
    std::size_t received = 0;
    while (received < length && (!deadline || now < *deadline)) {
        const TimePoint turn = now;
        // After an interrupted read, or one without data, another turn checks again whether the port is open
        // and the device is there.
        const std::ptrdiff_t count = readOnce(std::span{bytes}.subspan(received), turn, deadline).value_or(0);
        received += count > 0 ? static_cast<std::size_t>(count) : 0;
        if (received == length) {
            break;
        }
        now = system_.now();
        if (count <= 0 && now - turn < restAfterNothing) {
            system_.sleepFor(deadline ? std::min<System::Clock::duration>(restAfterNothing, *deadline - now)
                                      : restAfterNothing);
            now = system_.now();
        }
    }
    bytes.resize(received);
    return bytes;
}

std::ptrdiff_t SerialPort::writeBytes(std::span<const std::uint8_t> bytes) {
    const std::shared_ptr<Descriptor> descriptor = openDescriptor();
    moreMayBeThere_ = false;
    const std::optional<TimePoint> deadline = deadlineFrom(system_.now());
    std::size_t taken = 0;
    while (true) {
        const std::ptrdiff_t count = system_.write(descriptor->number, bytes.subspan(taken));
        taken += count > 0 ? static_cast<std::size_t>(count) : 0;
        if (taken == bytes.size()) {
            return bytes.empty() ? count : std::ssize(bytes);
        }
        if (count == -1 && errno != EAGAIN && errno != EINTR) {
            break;
        }
        waitAWhile(descriptor->number, System::Readiness::toWrite, system_.now(), deadline);
        if (deadline && system_.now() >= *deadline) {
            break;
        }
    }
    return taken > 0 ? static_cast<std::ptrdiff_t>(taken) : -1;
}

std::ptrdiff_t SerialPort::writeData(std::span<const std::uint8_t> bytes) {
    return writeBytes(bytes);
}

void SerialPort::waitAWhile(int descriptor, System::Readiness readiness, TimePoint now,
                            std::optional<TimePoint> until) {
    const TimePoint soon = now + longestWait;
    system_.wait(descriptor, readiness, until ? std::min(*until, soon) : soon);
}

std::optional<SerialPort::TimePoint> SerialPort::deadlineFrom(TimePoint now) const {
    const int seconds = timeout_;
    return seconds == 0 ? std::nullopt : std::optional{now + std::chrono::seconds{seconds}};
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
