#include <gtest/gtest.h>

#include <cerrno>

#include "VirtualPortTest.h"

namespace velmorindal {
namespace {

using namespace std::chrono_literals;

using SerialPortText = OpenVirtualPortTest;

TEST_F(SerialPortText, ReadsALengthOfBytesAsUTF8) {
    send({'V', 0xC3, 0xA9, 0xF0, 0x9F, 0x8E, 0xA4, '!'});

    EXPECT_EQ(port.readString(7), "V\u00E9\U0001F3A4");
    EXPECT_EQ(port.readString(1), "!");
}

TEST_F(SerialPortText, ReadsNoTextFromBytesThatAreNotUTF8) {
    const ByteBuffer cutShort{0xC3};
    const ByteBuffer overlong{0xC0, 0xAF};
    const ByteBuffer surrogate{0xED, 0xA0, 0x80};

    for (const ByteBuffer& bytes : {cutShort, overlong, surrogate}) {
        send(bytes);
        EXPECT_EQ(errorOf([&] { port.readString(bytes.size()); }), PortError::stringsMustBeUTF8);
    }
}

TEST_F(SerialPortText, ReadsALineWithoutItsLineFeed) {
    send({'o', 'n', 'e', '\r', '\n', '\n', 't', 'w', 'o', '\n'});

    EXPECT_EQ(port.readLine(), "one\r");
    EXPECT_EQ(port.readLine(), "");
    EXPECT_EQ(port.readLine(), "two");
}

TEST_F(SerialPortText, RefusesALineWithAByteAbove0x7F) {
    send({'a', 0xC3, 0xA9, '\n'});

    EXPECT_EQ(errorOf([&] { port.readLine(); }), PortError::unableToConvertByteToCharacter);
    EXPECT_EQ(port.readByte(), 0xA9) << "the byte that was refused is consumed, what follows is not";
}

TEST_F(SerialPortText, RefusesAByteAbove0x7FEvenWhenItIsTheTerminator) {
    send({0x80});

    EXPECT_EQ(errorOf([&] { port.readUntilChar('\x80'); }), PortError::unableToConvertByteToCharacter);
}

TEST_F(SerialPortText, ReadsUpToATerminatorOfAnyKind) {
    send({'a', '\n', 0x7F, ';', 'b', 0x00, 'c'});

    EXPECT_EQ(port.readUntilChar(';'), "a\n\x7F");
    EXPECT_EQ(port.readUntilChar('\0'), "b");
    EXPECT_EQ(port.readByte(), 'c');
}

TEST_F(SerialPortText, WaitsForATerminatorPastEmptyReadsAndTheTimeout) {
    line.sendAt(500ms, {'l', 'a', 't'});
    line.sendAt(10s, {'e', '\n'});

    EXPECT_EQ(secondsTakenBy([&] { EXPECT_EQ(port.readLine(), "late"); }), 10.0);
}

TEST_F(SerialPortText, ReadsOnAfterAReadThatFails) {
    for (const int reason : {EINTR, EIO}) {
        send({'a', '\n', 'b'});
        line.failRead(reason);
        EXPECT_EQ(port.readLine(), "a");
        line.failRead(reason);
        EXPECT_EQ(port.readByte(), 'b');
    }
}

TEST_F(SerialPortText, ReadsSingleBytesAndCharactersOfEveryValue) {
    send({0x00, 0x7F, 0x80, 0xFF});
    EXPECT_EQ(port.readByte(), 0x00);
    EXPECT_EQ(port.readByte(), 0x7F);
    EXPECT_EQ(port.readByte(), 0x80);
    EXPECT_EQ(port.readByte(), 0xFF);

    send({'A', 0xC3});
    EXPECT_EQ(port.readChar(), U'A');
    EXPECT_EQ(port.readChar(), U'\u00C3');
}

TEST_F(SerialPortText, WritesTextAsItsUTF8Bytes) {
    EXPECT_EQ(port.writeString("V\u00E9\n"), 4);

    EXPECT_EQ(line.written(), (ByteBuffer{'V', 0xC3, 0xA9, '\n'}));
}

TEST_F(SerialPortText, WritesNothingOfATextThatIsNotUTF8) {
    EXPECT_EQ(errorOf([&] { port.writeString("good\xC3"); }), PortError::stringsMustBeUTF8);
    port.writeString("!");

    EXPECT_EQ(line.written(), (ByteBuffer{'!'}));
}

TEST_F(SerialPortText, WritesAScalarAsOneToFourBytes) {
    EXPECT_EQ(port.writeChar(U'\u007F'), 1);
    EXPECT_EQ(port.writeChar(U'\u0080'), 2);
    EXPECT_EQ(port.writeChar(U'\u07FF'), 2);
    EXPECT_EQ(port.writeChar(U'\u0800'), 3);
    EXPECT_EQ(port.writeChar(U'\uFFFD'), 3);
    EXPECT_EQ(port.writeChar(U'\U00010000'), 4);
    EXPECT_EQ(port.writeChar(U'\U0010FFFF'), 4);

    EXPECT_EQ(line.written(), (ByteBuffer{0x7F, 0xC2, 0x80, 0xDF, 0xBF, 0xE0, 0xA0, 0x80, 0xEF, 0xBF, 0xBD,
                                          0xF0, 0x90, 0x80, 0x80, 0xF4, 0x8F, 0xBF, 0xBF}));
}

TEST_F(SerialPortText, WritesNoScalarThatUnicodeDoesNotHave) {
    EXPECT_EQ(errorOf([&] { port.writeChar(char32_t{0xD800}); }), PortError::stringsMustBeUTF8);
    EXPECT_EQ(errorOf([&] { port.writeChar(char32_t{0xDFFF}); }), PortError::stringsMustBeUTF8);
    EXPECT_EQ(errorOf([&] { port.writeChar(char32_t{0x110000}); }), PortError::stringsMustBeUTF8);
}

}  // namespace
}  // namespace velmorindal
