// The messages that hold one choice between two cases.

#include "ProtocolTest.h"
#include "VCOutputPath.h"
#include "VCProtocolSelect.h"

namespace velmorindal {
namespace {

struct OutputPathChoice {
    static constexpr const char* name = "VCOutputPath";
    using Message = VCOutputPath;
    static constexpr auto field = &VCOutputPath::path;
    static constexpr std::uint8_t code = 'p';
    static constexpr auto even = VCOutputPath::OutputPath::USB;
    static constexpr auto odd = VCOutputPath::OutputPath::Relay;
    static constexpr auto fromRawValue = VCOutputPath::outputPathFromRawValue;
};

struct CommProtocolChoice {
    static constexpr const char* name = "VCProtocolSelect";
    using Message = VCProtocolSelect;
    static constexpr auto field = &VCProtocolSelect::proto;
    static constexpr std::uint8_t code = 'x';
    static constexpr auto even = VCProtocolSelect::CommProtocol::Gazell;
    static constexpr auto odd = VCProtocolSelect::CommProtocol::Bluetooth;
    static constexpr auto fromRawValue = VCProtocolSelect::commProtocolFromRawValue;
};

struct ChoiceNames {
    template <typename Choice>
    static std::string GetName(int /*index*/) {
        return Choice::name;
    }
};

template <typename Choice>
class ChoiceOfTwoTest : public testing::Test {
  protected:
    bool decode(std::initializer_list<std::uint8_t> payload) {
        ByteBuffer frame{'r', 'b', Choice::code, static_cast<std::uint8_t>(payload.size())};
        frame.insert(frame.end(), payload);
        return message.deserialize(frame);
    }

    typename Choice::Message message;
    std::remove_const_t<decltype(Choice::even)>& value = message.*Choice::field;
};

using Choices = testing::Types<OutputPathChoice, CommProtocolChoice>;
TYPED_TEST_SUITE(ChoiceOfTwoTest, Choices, ChoiceNames);

TYPED_TEST(ChoiceOfTwoTest, StartsValidWithTheCaseOfZero) {
    EXPECT_TRUE(this->message._valid);
    EXPECT_EQ(this->value, TypeParam::even);
}

TYPED_TEST(ChoiceOfTwoTest, EncodesTheCaseAsOneByte) {
    EXPECT_EQ(this->message.serialize(), (ByteBuffer{'c', 'b', TypeParam::code, 0x01, 0x00}));
    this->value = TypeParam::odd;
    EXPECT_EQ(this->message.serialize(), (ByteBuffer{'c', 'b', TypeParam::code, 0x01, 0x01}));
}

TYPED_TEST(ChoiceOfTwoTest, IsNotSentWhileInvalid) {
    this->message._valid = false;
    EXPECT_EQ(errorOf([&] { this->message.serialize(); }), VelmorindalError::InvalidMessageError);
}

TYPED_TEST(ChoiceOfTwoTest, DecodesTheLowestBitAlone) {
    this->value = TypeParam::odd;
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        EXPECT_TRUE(this->decode({static_cast<std::uint8_t>(byte)}));
        EXPECT_EQ(this->value, byte % 2 == 0 ? TypeParam::even : TypeParam::odd) << byte;
    }
}

TYPED_TEST(ChoiceOfTwoTest, AReplyOfWrongLengthIsNotValidKeepsTheCaseAndPrintsNothing) {
    this->value = TypeParam::odd;
    EXPECT_EQ(printedBy([&] {
                  EXPECT_FALSE(this->decode({}));
                  EXPECT_FALSE(this->decode({0x00, 0x00}));
              }),
              "");
    EXPECT_FALSE(this->message._valid);
    EXPECT_EQ(this->value, TypeParam::odd);
}

TYPED_TEST(ChoiceOfTwoTest, ReadsBackWhatItWrote) {
    for (const auto written : {TypeParam::even, TypeParam::odd}) {
        this->value = written;
        EXPECT_EQ(throughTheWire(this->message).*TypeParam::field, written);
    }
}

TYPED_TEST(ChoiceOfTwoTest, HasTwoRawValuesAndNoOther) {
    EXPECT_EQ(TypeParam::fromRawValue(0), TypeParam::even);
    EXPECT_EQ(TypeParam::fromRawValue(1), TypeParam::odd);
    EXPECT_EQ(TypeParam::fromRawValue(2), std::nullopt);
    EXPECT_EQ(TypeParam::fromRawValue(0xFF), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
