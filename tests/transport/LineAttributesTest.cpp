#include "LineAttributes.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace velmorindal {
namespace {

constexpr SerialSettings plainSettings{
    .receiveRate = BaudRate::baud9600, .transmitRate = BaudRate::baud9600, .minimumBytesToRead = 0};

/// A line on which every flag is set, so that what is cleared shows.
termios everythingSet() {
    termios attributes{};
    // The C library keeps a mark of its own in the top bit.
    attributes.c_iflag = ~tcflag_t{0} >> 1U;
    attributes.c_oflag = ~tcflag_t{0};
    attributes.c_cflag = ~tcflag_t{0};
    attributes.c_lflag = ~tcflag_t{0};
    std::ranges::fill(attributes.c_cc, cc_t{0xFF});
    return attributes;
}

TEST(LineAttributes, HaveTheSizeOfCharacterThatWasAskedFor) {
    const auto sizeFor = [](termios current, DataBitsSize size) {
        SerialSettings settings = plainSettings;
        settings.dataBitsSize = size;
        return lineAttributes(current, settings).c_cflag & CSIZE;
    };

    for (const termios& current : {termios{}, everythingSet()}) {
        EXPECT_EQ(sizeFor(current, DataBitsSize::bits5), CS5);
        EXPECT_EQ(sizeFor(current, DataBitsSize::bits6), CS6);
        EXPECT_EQ(sizeFor(current, DataBitsSize::bits7), CS7);
        EXPECT_EQ(sizeFor(current, DataBitsSize::bits8), CS8);
    }
}

TEST(LineAttributes, GainTheParityThatWasAskedForAndKeepParityBitsThatWereAlreadySet) {
    constexpr tcflag_t odd = PARENB | PARODD;
    const auto parityFor = [](tcflag_t before, ParityType parity) {
        termios current{};
        current.c_cflag = before;
        SerialSettings settings = plainSettings;
        settings.parityType = parity;
        return lineAttributes(current, settings).c_cflag & odd;
    };

    EXPECT_EQ(parityFor(0, ParityType::none), 0U);
    EXPECT_EQ(parityFor(0, ParityType::even), static_cast<tcflag_t>(PARENB));
    EXPECT_EQ(parityFor(0, ParityType::odd), odd);
    for (const ParityType parity : {ParityType::none, ParityType::even, ParityType::odd}) {
        EXPECT_EQ(parityFor(odd, parity), odd);
    }
}

TEST(LineAttributes, SetAndClearWhatASettingSwitchesAndNothingElse) {
    struct Switched {
        bool SerialSettings::*setting;
        tcflag_t termios::*flags;
        tcflag_t bits;
    };
    for (const auto& [setting, flags, bits] :
         {Switched{&SerialSettings::sendTwoStopBits, &termios::c_cflag, CSTOPB},
          Switched{&SerialSettings::useHardwareFlowControl, &termios::c_cflag, CRTSCTS},
          Switched{&SerialSettings::useSoftwareFlowControl, &termios::c_iflag, IXON | IXOFF | IXANY},
          Switched{&SerialSettings::processOutput, &termios::c_oflag, OPOST}}) {
        SerialSettings on = plainSettings;
        on.*setting = true;
        for (const termios& current : {termios{}, everythingSet()}) {
            const termios without = lineAttributes(current, plainSettings);
            EXPECT_EQ(without.*flags & bits, 0U);
            EXPECT_EQ(lineAttributes(current, on).*flags, without.*flags | bits);
        }
    }
}

TEST(LineAttributes, AlwaysReceiveAndIgnoreTheModemControlLines) {
    EXPECT_EQ(lineAttributes(termios{}, plainSettings).c_cflag & (CREAD | CLOCAL),
              static_cast<tcflag_t>(CREAD | CLOCAL));
}

TEST(LineAttributes, ClearLineEndConversionAndSoftwareFlowControlAndNoOtherInputFlag) {
    const tcflag_t cleared = INLCR | IGNCR | ICRNL | IXON | IXOFF | IXANY;

    EXPECT_EQ(lineAttributes(everythingSet(), plainSettings).c_iflag & ~cleared,
              everythingSet().c_iflag & ~cleared);
    EXPECT_EQ(lineAttributes(everythingSet(), plainSettings).c_iflag & cleared, 0U);
}

TEST(LineAttributes, ClearLineEditingEchoSignalsAndOutputProcessingAndNoOtherLocalOrOutputFlag) {
    EXPECT_EQ(lineAttributes(everythingSet(), plainSettings).c_oflag,
              everythingSet().c_oflag & ~static_cast<tcflag_t>(OPOST));
    EXPECT_EQ(lineAttributes(everythingSet(), plainSettings).c_lflag,
              everythingSet().c_lflag & ~static_cast<tcflag_t>(ICANON | ECHO | ECHOE | ISIG));
}

TEST(LineAttributes, LeaveNoControlCharacterButTheMinimumAndTheTimeout) {
    SerialSettings settings = plainSettings;
    settings.minimumBytesToRead = 255;
    settings.timeout = 7;

    const termios attributes = lineAttributes(everythingSet(), settings);

    for (int index = 0; index < NCCS; ++index) {
        const int expected = index == VMIN ? 255 : index == VTIME ? 7 : 0;
        EXPECT_EQ(attributes.c_cc[index], expected) << index;
    }
}

TEST(LineAttributesDeathTest, StopTheProcessRatherThanTruncateASetting) {
    const auto attributesFor = [](int minimumBytesToRead, int timeout) {
        SerialSettings settings = plainSettings;
        settings.minimumBytesToRead = minimumBytesToRead;
        settings.timeout = timeout;
        return lineAttributes(termios{}, settings);
    };

    EXPECT_EXIT(attributesFor(0, 256), testing::KilledBySignal(SIGABRT),
                "^The serial setting timeout must lie in 0..255 and is 256\n$");
    EXPECT_EXIT(attributesFor(0, -1), testing::KilledBySignal(SIGABRT), "timeout .* is -1\n$");
    EXPECT_EXIT(attributesFor(256, 0), testing::KilledBySignal(SIGABRT), "minimumBytesToRead .* is 256\n$");
    EXPECT_EXIT(attributesFor(-1, 0), testing::KilledBySignal(SIGABRT), "minimumBytesToRead .* is -1\n$");
    EXPECT_EQ(attributesFor(255, 255).c_cc[VTIME], 255);
}

TEST(LineAttributes, EachDirectionHasItsSpeed) {
    SerialSettings settings = plainSettings;
    settings.transmitRate = BaudRate::baud38400;

    // Systems with one speed for both at least keep the input's zero, which asks for the output's.
    settings.receiveRate = BaudRate::baud0;
    termios attributes = lineAttributes(termios{}, settings);
    EXPECT_EQ(cfgetispeed(&attributes), static_cast<speed_t>(B0));
    EXPECT_EQ(cfgetospeed(&attributes), static_cast<speed_t>(B38400));

    settings.receiveRate = BaudRate::baud1200;
    attributes = lineAttributes(termios{}, settings);
    EXPECT_EQ(cfgetospeed(&attributes), static_cast<speed_t>(B38400));
}

TEST(LineAttributes, AreTheSameOnlyWhereEveryOneIs) {
    const termios plain = lineAttributes(termios{}, plainSettings);
    EXPECT_TRUE(sameAttributes(plain, plain));

    std::array<termios, 6> others;
    others.fill(plain);
    others[0].c_iflag ^= IXON;
    others[1].c_oflag ^= OPOST;
    others[2].c_cflag ^= CSTOPB;
    others[3].c_lflag ^= ECHO;
    others[4].c_cc[VTIME] ^= 1;
    cfsetospeed(&others[5], B115200);
    for (const termios& other : others) {
        EXPECT_FALSE(sameAttributes(plain, other));
    }
}

}  // namespace
}  // namespace velmorindal
