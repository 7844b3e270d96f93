#include "FrameSplitter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

namespace velmorindal {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Side = FrameSplitter::Side;

const ByteBuffer statusAnswer{0x72, 0x62, 0x73, 0x01, 0x01};
const ByteBuffer statusQuery{0x63, 0x62, 0x73, 0x00};

ByteBuffer joined(const std::vector<ByteBuffer>& pieces) {
    ByteBuffer all;
    for (const ByteBuffer& piece : pieces) {
        all.insert(all.end(), piece.begin(), piece.end());
    }
    return all;
}

TEST(FrameSplitter, AFrameComesOutWithItsLastByte) {
    FrameSplitter splitter{Side::device};
    for (std::size_t index = 0; index + 1 < statusAnswer.size(); ++index) {
        EXPECT_THAT(splitter.add({&statusAnswer[index], 1}), IsEmpty());
    }
    EXPECT_THAT(splitter.add({&statusAnswer.back(), 1}), ElementsAre(statusAnswer));
    EXPECT_THAT(splitter.flush(), IsEmpty());
}

TEST(FrameSplitter, SeveralFramesAtOnceComeOutOneByOne) {
    FrameSplitter splitter{Side::host};
    EXPECT_THAT(splitter.add(joined({statusQuery, statusQuery, {0x63}})),
                ElementsAre(statusQuery, statusQuery));
    EXPECT_THAT(splitter.flush(), ElementsAre(0x63));
}

TEST(FrameSplitter, OfADeviceResponsesErrorsAndEchoedCommandsAreFrames) {
    FrameSplitter splitter{Side::device};
    const ByteBuffer error{0x65, 0x62, 0x76, 0x00};
    EXPECT_THAT(splitter.add(joined({statusAnswer, statusQuery, error})),
                ElementsAre(statusAnswer, statusQuery, error));
}

TEST(FrameSplitter, OfAHostCommandsAloneAreFrames) {
    FrameSplitter splitter{Side::host};
    EXPECT_THAT(splitter.add(joined({statusAnswer, statusQuery})), ElementsAre(statusAnswer, statusQuery))
        << "a piece between frames, and a frame";
    EXPECT_THAT(splitter.add(statusAnswer), IsEmpty());
    EXPECT_EQ(splitter.flush(), statusAnswer);
}

TEST(FrameSplitter, WhatLiesBetweenFramesIsAPieceAsSoonAsAFrameStarts) {
    FrameSplitter splitter{Side::device};
    EXPECT_THAT(splitter.add(ByteBuffer{0x00, 0xFF, 0x72}), IsEmpty());
    EXPECT_THAT(splitter.add(ByteBuffer{0x72}), IsEmpty());
    EXPECT_THAT(splitter.add(ByteBuffer{0x62}), ElementsAre(ByteBuffer{0x00, 0xFF, 0x72}));
    EXPECT_THAT(splitter.add(ByteBuffer{0x73, 0x01, 0x01}), ElementsAre(statusAnswer));
}

TEST(FrameSplitter, EndlessBytesBetweenFramesComeOutInPieces) {
    FrameSplitter splitter{Side::device};
    const ByteBuffer zeros(FrameSplitter::longestPieceBetweenFrames * 2 + 1);
    const ByteBuffer piece(FrameSplitter::longestPieceBetweenFrames);
    EXPECT_THAT(splitter.add(zeros), ElementsAre(piece, piece));
    EXPECT_EQ(splitter.flush().size(), 1U);
}

TEST(FrameSplitter, AByteThatMightStartAFrameMakesNoPieceLonger) {
    FrameSplitter splitter{Side::device};
    ByteBuffer strange(FrameSplitter::longestPieceBetweenFrames * 2);
    strange[FrameSplitter::longestPieceBetweenFrames - 1] = 0x72;
    const std::vector<ByteBuffer> pieces = splitter.add(strange);
    ASSERT_EQ(pieces.size(), 2U);
    EXPECT_EQ(pieces[0].size(), FrameSplitter::longestPieceBetweenFrames);
    EXPECT_EQ(pieces[1].size(), FrameSplitter::longestPieceBetweenFrames);
    EXPECT_EQ(splitter.flush(), ByteBuffer{});
}

TEST(FrameSplitter, TheLongestFrameIsOnePiece) {
    FrameSplitter splitter{Side::device};
    ByteBuffer frame(4 + 255, 0x72);
    frame[1] = 0x62;
    frame[3] = 255;
    EXPECT_THAT(splitter.add(frame), ElementsAre(frame));
}

TEST(FrameSplitter, NoByteIsLostWhateverComesInWhateverPortions) {
    std::uint32_t random = 1;
    const auto next = [&random](std::uint32_t below) {
        random = random * 1664525U + 1013904223U;
        return (random >> 16U) % below;
    };
    constexpr std::array<std::uint8_t, 8> bytes{0x72, 0x62, 0x63, 0x65, 0x00, 0x01, 0x05, 0xFF};
    ByteBuffer all(20'000);
    for (std::uint8_t& byte : all) {
        byte = bytes[next(bytes.size())];
    }
    FrameSplitter splitter{Side::device};
    std::vector<ByteBuffer> pieces;
    for (std::size_t start = 0; start < all.size();) {
        const std::size_t count = std::min<std::size_t>(next(40), all.size() - start);
        for (const ByteBuffer& piece : splitter.add(std::span{all}.subspan(start, count))) {
            ASSERT_FALSE(piece.empty());
            pieces.push_back(piece);
        }
        if (next(50) == 0) {
            pieces.push_back(splitter.flush());
        }
        start += count;
    }
    pieces.push_back(splitter.flush());
    EXPECT_EQ(joined(pieces), all);
}

}  // namespace
}  // namespace velmorindal
