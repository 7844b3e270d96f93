#include "LineAttributes.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>

#include "FatalError.h"

namespace velmorindal {
namespace {

/// In the order of BaudRate's cases.
constexpr std::array<speed_t, 19> speeds{B0,     B50,    B75,    B110,    B134,   B150,  B200,
                                         B300,   B600,   B1200,  B1800,   B2400,  B4800, B9600,
                                         B19200, B38400, B57600, B115200, B230400};

/// In the order of DataBitsSize's cases.
constexpr std::array<tcflag_t, 4> characterSizes{CS5, CS6, CS7, CS8};

/// In the order of ParityType's cases.
constexpr std::array<tcflag_t, 3> parities{0, PARENB, PARENB | PARODD};

template <typename Table, typename Case>
typename Table::value_type entryFor(const Table& table, Case position) {
    return table.at(static_cast<std::size_t>(position));
}

void setBits(tcflag_t& flags, tcflag_t bits, bool on) {
    flags = on ? flags | bits : flags & ~bits;
}

cc_t controlCharacter(const char* name, int value) {
    if (value < 0 || value > 255) {
        fatalError(std::string{"The serial setting "} + name + " must lie in 0..255 and is " +
                   std::to_string(value));
    }
    return static_cast<cc_t>(value);
}

}  // namespace

termios lineAttributes(termios current, const SerialSettings& settings) {
    termios attributes = current;
    cfsetispeed(&attributes, entryFor(speeds, settings.receiveRate));
    cfsetospeed(&attributes, entryFor(speeds, settings.transmitRate));

    // Parity is only added on purpose: what an earlier user of the line has set stays set.
    attributes.c_cflag |= entryFor(parities, settings.parityType);
    setBits(attributes.c_cflag, CSTOPB, settings.sendTwoStopBits);
    setBits(attributes.c_cflag, CSIZE, false);
    setBits(attributes.c_cflag, entryFor(characterSizes, settings.dataBitsSize), true);
    // Both directions: clear-to-send for output, request-to-send for input.
    setBits(attributes.c_cflag, CRTSCTS, settings.useHardwareFlowControl);
    setBits(attributes.c_cflag, CREAD | CLOCAL, true);

    setBits(attributes.c_iflag, INLCR | IGNCR | ICRNL, false);
    setBits(attributes.c_iflag, IXON | IXOFF | IXANY, settings.useSoftwareFlowControl);
    setBits(attributes.c_lflag, ICANON | ECHO | ECHOE | ISIG, false);
    setBits(attributes.c_oflag, OPOST, settings.processOutput);

    const cc_t minimum = controlCharacter("minimumBytesToRead", settings.minimumBytesToRead);
    const cc_t tenthsOfASecond = controlCharacter("timeout", settings.timeout);
    std::ranges::fill(attributes.c_cc, cc_t{0});
    attributes.c_cc[VMIN] = minimum;
    attributes.c_cc[VTIME] = tenthsOfASecond;
    return attributes;
}

bool sameAttributes(const termios& one, const termios& other) {
    return one.c_iflag == other.c_iflag && one.c_oflag == other.c_oflag && one.c_cflag == other.c_cflag &&
           one.c_lflag == other.c_lflag && std::ranges::equal(one.c_cc, other.c_cc) &&
           cfgetispeed(&one) == cfgetispeed(&other) && cfgetospeed(&one) == cfgetospeed(&other);
}

}  // namespace velmorindal
