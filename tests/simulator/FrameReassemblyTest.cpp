#include <gtest/gtest.h>

#include "RawHost.h"
#include "WireFrame.h"

namespace velmorindal {
namespace {

TEST(FrameReassembly, AFrameThatArrivesByteByByteIsWholeOnlyAtItsEnd) {
    const ByteBuffer sent = frame('c', 'p', {1});
    WireFrameReader reader;
    for (std::size_t index = 0; index + 1 < sent.size(); ++index) {
        reader.add({&sent[index], 1});
        EXPECT_FALSE(reader.next()) << index;
    }
    reader.add({&sent.back(), 1});
    EXPECT_EQ(reader.next(), sent);
}

TEST(FrameReassembly, FramesThatArriveTogetherAreTakenApart) {
    WireFrameReader reader;
    reader.add(query('v') + frame('c', 'x', {1}) + query('s'));
    EXPECT_EQ(reader.next(), query('v'));
    EXPECT_EQ(reader.next(), frame('c', 'x', {1}));
    EXPECT_EQ(reader.next(), query('s'));
    EXPECT_FALSE(reader.next());
    EXPECT_EQ(reader.skippedBytes(), 0U);
}

TEST(FrameReassembly, WhatCannotStartACommandIsSkippedByteByByte) {
    WireFrameReader reader;
    reader.add(ByteBuffer{0x00, 'r', 'b', 'c', 'c', 'x', 0xFF} + query('v'));
    EXPECT_EQ(reader.next(), query('v'));
    EXPECT_EQ(reader.skippedBytes(), 7U);
}

TEST(FrameReassembly, AKindByteAtTheEndWaitsForItsMarker) {
    WireFrameReader reader;
    reader.add(ByteBuffer{0x00, 'c'});
    EXPECT_FALSE(reader.next());
    EXPECT_EQ(reader.skippedBytes(), 1U);
    reader.add(ByteBuffer{'b', 'v', 0});
    EXPECT_EQ(reader.next(), query('v'));
}

TEST(FrameReassembly, TheLongestPayloadIsWhole) {
    const ByteBuffer sent = frame('c', 'A', ByteBuffer(255, 'c'));
    WireFrameReader reader;
    reader.add(sent + query('v'));
    EXPECT_EQ(reader.next(), sent);
    EXPECT_EQ(reader.next(), query('v'));
}

}  // namespace
}  // namespace velmorindal
