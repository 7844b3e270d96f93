// The codec beside the oracle, on frames and objects that are good, mangled, or nothing at all.

#include "FrameOracle.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <map>
#include <random>
#include <utility>

#include "HexText.h"
#include "MessageClass.h"
#include "Print.h"
#include "VelmorindalMessageFactory.h"

namespace velmorindal {
namespace {

using oracle::Message;
using oracle::Object;

/// How often each outcome has come, by the name of the class.
using Outcomes = std::map<std::pair<std::string_view, std::string>, int>;

constexpr std::size_t headerLength = 4;

/// The same frames and objects in every run.
class FrameOracleTest : public testing::Test {
  protected:
    std::size_t below(std::size_t end) { return random_() % end; }

    template <typename Item>
    Item oneOf(std::initializer_list<Item> items) {
        return items.begin()[below(items.size())];
    }

    std::uint8_t anyByte() { return static_cast<std::uint8_t>(below(256)); }

    ByteBuffer bytes(std::size_t length) {
        ByteBuffer all(length);
        std::ranges::generate(all, [this] {
            return oneOf<std::uint8_t>({0x00, 0x01, 0x03, 0x7F, 0x80, 0xFF, anyByte()});
        });
        return all;
    }

    ByteBuffer versionText() {
        // The first and the last characters of one to four bytes, and those beside the surrogates.
        std::string text;
        for (std::size_t length = below(64); length > 0; --length) {
            text +=
                oneOf<const char*>({"A", "\x7F", "\xC2\x80", "\xDF\xBF", "\xE0\xA0\x80", "\xED\x9F\xBF",
                                    "\xEE\x80\x80", "\xEF\xBF\xBF", "\xF0\x90\x80\x80", "\xF4\x8F\xBF\xBF"});
            text += text.size() % 9 == 0 ? std::string(1, '\0') : "";
        }
        text = oneOf<std::string>({"", "Velmorindal 1.2", std::string(255, 'v'), text});
        return {text.begin(), text.end()};
    }

    const Message& anyMessage() { return oracle::messages()[below(oracle::messages().size())]; }

    ByteBuffer goodFrame(const Message& message) {
        const ByteBuffer payload = message.answerLength == oracle::anyLength ? versionText()
                                   : message.answerLength == oracle::notReceived
                                       ? bytes(below(2))
                                       : bytes(message.answerLength);
        return oracle::frame(oneOf({'c', 'r'}), message.type, payload);
    }

    /// A frame meant for `message`; one of four is good.
    ByteBuffer frameFor(const Message& message) {
        ByteBuffer frame = goodFrame(message);
        const auto append = [&frame](const ByteBuffer& more) {
            frame.insert(frame.end(), more.begin(), more.end());
        };
        const std::size_t mangling = below(12);
        if (mangling < headerLength) {
            constexpr std::string_view types = "dhklpstvwxyz";
            frame[mangling] = oneOf<std::uint8_t>(
                {'e', 0x00, 'A', static_cast<std::uint8_t>(types[below(types.size())]), anyByte()});
        } else if (mangling == 4) {
            frame.resize(below(frame.size()));
        } else if (mangling == 5) {
            append(bytes(oneOf({1 + below(19), std::size_t{256}})));  // 256 wraps the length byte
        } else if (mangling == 6) {  // whole, but with a payload of another length
            const std::size_t length = below(below(10) == 0 ? 256 : 18);
            frame.resize(headerLength - 1);
            frame.push_back(static_cast<std::uint8_t>(length));
            append(bytes(length));
        } else if (mangling == 7 && message.sending != oracle::Sending::never) {
            frame = bytesFrom(oracle::sent(object(message, true)));
        } else if (mangling == 8) {
            frame = bytes(below(20));
        }
        return frame;
    }

    Object object(const Message& message, bool valid) {
        Object made{message};
        made.valid = valid;
        for (std::size_t index = 0; index < made.values.size(); ++index) {
            const oracle::Kind kind = message.fields[index].kind;
            made.values[index] = kind == oracle::Kind::text   ? versionText()
                                 : kind == oracle::Kind::word ? bytes(2)
                                                              : oracle::valueFrom(kind, bytes(4), 0);
        }
        return made;
    }

    static std::unique_ptr<VelmorindalCommand> ours(const Object& object) {
        const MessageClass& messageClass = messageClassNamed(object.message->name);
        auto message = messageClass.make();
        const auto texts = object.texts();
        const auto fields = messageClass.fields(*message);
        EXPECT_EQ(fields.size(), texts.size());
        for (std::size_t index = 0; index < fields.size(); ++index) {
            EXPECT_EQ(fields[index].name, texts[index].first);
            fields[index].set(texts[index].second);
        }
        return message;
    }

    std::string takePrinted() { return std::exchange(printed_, {}); }

    /// A run that misses an outcome proves too little.
    static void expectOutcome(const Outcomes& outcomes, const Message& message, const std::string& outcome) {
        EXPECT_GT(outcomes.count({message.name, outcome}), 0U) << message.name << " " << outcome;
    }

  private:
    std::mt19937 random_{20240229};  // NOLINT(*-msc51-cpp): the same numbers in every run
    std::string printed_;
    const PrintDiversion diversion_{[this](std::string_view line) { printed_ += line; }};
};

TEST_F(FrameOracleTest, AgreesWithTheFactoryOnEveryFrame) {
    Outcomes outcomes;
    for (int round = 0; round < 24'000; ++round) {
        const Message& meant = anyMessage();
        const ByteBuffer frame = frameFor(meant);
        const oracle::Decoding expected = oracle::decoded(frame);
        if (expected.stops) {
            continue;
        }
        const auto made = VelmorindalMessageFactory::createFromWire(frame);
        ASSERT_EQ(described(made.get()), expected.message) << hexText(frame);
        ASSERT_EQ(takePrinted(), expected.line) << hexText(frame);
        if (made) {
            ASSERT_EQ(sent(*made), expected.sentAgain) << hexText(frame);
        }
        ++outcomes[{meant.name, !made ? "none" : made->_valid ? "valid" : "invalid"}];
    }
    for (const Message& each : oracle::messages()) {
        expectOutcome(outcomes, each, "none");
        if (each.answerLength != oracle::notReceived) {
            expectOutcome(outcomes, each, "valid");
            expectOutcome(outcomes, each, "invalid");
        }
    }
}

TEST_F(FrameOracleTest, AgreesOnWhatAFrameMakesOfAnObject) {
    Outcomes outcomes;
    for (int round = 0; round < 12'000; ++round) {
        const Message& each = anyMessage();
        Object expected = object(each, below(2) == 0);
        const auto made = ours(expected);
        const ByteBuffer frame = frameFor(below(5) == 0 ? anyMessage() : each);
        const std::string question = hexText(frame) + " into " + expected.description();
        const oracle::Reception reception = oracle::receive(expected, frame);
        if (reception.stops) {
            continue;
        }
        std::string error;
        try {
            ASSERT_EQ(made->deserialize(frame), expected.valid) << question;
        } catch (const VelmorindalException& exception) {
            error = exception.what();
        }
        ASSERT_EQ(error, reception.error) << question;
        ASSERT_EQ(takePrinted(), reception.line) << question;
        ASSERT_EQ(described(made.get()), expected.description()) << question;
        ++outcomes[{each.name, !error.empty() ? "thrown" : expected.valid ? "decoded" : "refused"}];
    }
    for (const Message& each : oracle::messages()) {
        if (each.answerLength == oracle::notReceived) {
            expectOutcome(outcomes, each, "thrown");
        } else {
            expectOutcome(outcomes, each, "decoded");
            expectOutcome(outcomes, each, "refused");
        }
    }
}

TEST_F(FrameOracleTest, AgreesOnWhatAnObjectIsSentAs) {
    Outcomes outcomes;
    for (int round = 0; round < 12'000; ++round) {
        const Object each = object(anyMessage(), below(2) == 0);
        const std::string expected = oracle::sent(each);
        ASSERT_EQ(sent(*ours(each)), expected) << each.description();
        ++outcomes[{each.message->name, expected.ends_with("Error") ? expected : "sent"}];
    }
    for (const Message& each : oracle::messages()) {
        expectOutcome(outcomes, each,
                      each.sending == oracle::Sending::never ? "NotImplementedError" : "sent");
        if (each.sending != oracle::Sending::always) {
            expectOutcome(outcomes, each, "InvalidMessageError");
        }
    }
}

TEST_F(FrameOracleTest, AgreesOnTheHeaderOfEveryFrame) {
    std::array<int, 2> passed{};
    for (int round = 0; round < 4'000; ++round) {
        const ByteBuffer frame = frameFor(anyMessage());
        const std::uint8_t type = frame.size() > 2 && below(10) < 7 ? frame[2] : anyByte();
        const std::string expected = oracle::lineOfCheck(frame, type);
        ASSERT_EQ(VelmorindalCommand::verifyHeader(frame, type), expected.empty()) << hexText(frame);
        ASSERT_EQ(takePrinted(), expected) << hexText(frame);
        ++passed[expected.empty() ? 1 : 0];
    }
    EXPECT_GT(passed[0], 0);
    EXPECT_GT(passed[1], 0);
}

class NoVersionTextDeathTest : public testing::TestWithParam<ByteBuffer> {};

TEST_P(NoVersionTextDeathTest, StopsTheProcessAsTheOracleForesees) {
    const ByteBuffer frame = oracle::frame('r', 'v', GetParam());
    EXPECT_TRUE(oracle::decoded(frame).stops);
    EXPECT_EXIT(VelmorindalMessageFactory::createFromWire(frame), testing::KilledBySignal(SIGABRT),
                "^The version text of the device is not UTF-8\\.\n$");
}

INSTANTIATE_TEST_SUITE_P(NoUTF8, NoVersionTextDeathTest,
                         testing::Values(ByteBuffer{0xFF},                    // no such byte
                                         ByteBuffer{0x80},                    // a continuation of nothing
                                         ByteBuffer{'V', 0xC3},               // cut off within two bytes
                                         ByteBuffer{0xE2, 0x82, ' '},         // cut off within three
                                         ByteBuffer{0xC0, 0x80},              // NUL in two bytes
                                         ByteBuffer{0xE0, 0x9F, 0xBF},        // U+07FF in three
                                         ByteBuffer{0xF0, 0x8F, 0xBF, 0xBF},  // U+FFFF in four
                                         ByteBuffer{0xED, 0xA0, 0x80},        // a surrogate
                                         ByteBuffer{0xF4, 0x90, 0x80, 0x80}   // beyond U+10FFFF
                                         ),
                         [](const auto& text) { return "Bytes" + hexText(text.param); });

}  // namespace
}  // namespace velmorindal
