// Each class of message as a table: fields in the notation of MessageClass, and their frames.

#include <algorithm>
#include <optional>
#include <sstream>

#include "MessageClass.h"
#include "ProtocolTest.h"
#include "VCHumDuration.h"
#include "VCOutputPath.h"
#include "VCProtocolSelect.h"
#include "VCRelayConfig.h"

namespace velmorindal {
namespace {

/// A message as `text` says, the class first. A field that is not named has its first value.
std::unique_ptr<VelmorindalCommand> made(const std::string& text) {
    std::istringstream words{text};
    std::string word;
    words >> word;
    const MessageClass& messageClass = messageClassNamed(word);
    auto message = messageClass.make();
    auto fields = messageClass.fields(*message);
    while (words >> word) {
        const auto equals = word.find('=');
        const auto field = std::ranges::find(fields, word.substr(0, equals), &Field::name);
        EXPECT_NE(field, fields.end()) << word;
        field->set(word.substr(equals + 1));
    }
    return message;
}

TEST(Messages, StartValidAndZero) {
    for (const std::string message : {
             "VCVersion _valid=1 _versionString=-",
             "VCStatus _valid=1 _linkState=0",
             "VCProtocolSelect _valid=1 proto=0",
             "VCWriteSettings _valid=1",
             "VCReset _valid=1",
             "VCHumDuration _valid=1 detect_mode=0 min_short=0 max_short=0 min_long=0 max_long=0 hold_on=0 "
             "hold_off=0",
             "VCHumThresholds _valid=1 apThreshold=00000000 siThreshold=00000000",
             "VCKeyboardConfig _valid=1 shortKey0Modifier=0 shortKey0=0 shortKey1Modifier=0 shortKey1=0 "
             "longKey0Modifier=0 longKey0=0 longKey1Modifier=0 longKey1=0",
             "VCOutputPath _valid=1 path=0",
             "VCRelayConfig _valid=1 config_modeShort=1 config_modeLong=1 config_typeShort=0 "
             "config_typeLong=0 min_pulse_short=0 min_pulse_long=0 max_pulse_short=0 max_pulse_long=0",
             "VCLastHumDuration _valid=1 _duration=0 _sourceSI=0",
             "VCAutoTune _valid=1 channel=0 _minThreshold=00000000 _maxThreshold=00000000",
         }) {
        EXPECT_EQ(described(made(message.substr(0, message.find(' '))).get()), message);
    }
}

struct Command {
    std::string message;
    ByteBuffer frame;
};

const std::vector<Command> commands{
    {"VCHumDuration detect_mode=3 min_short=258 max_short=772 min_long=1286 max_long=65534 hold_on=4 "
     "hold_off=9",
     {'c', 'b', 'd', 0x0B, 0x03, 0x02, 0x01, 0x04, 0x03, 0x06, 0x05, 0xFE, 0xFF, 0x04, 0x09}},
    {"VCHumDuration min_short=300", {'c', 'b', 'd', 0x0B, 0x00, 0x2C, 0x01, 0, 0, 0, 0, 0, 0, 0, 0}},
    // 0.37 and -1.5.
    {"VCHumThresholds apThreshold=3ebd70a4 siThreshold=bfc00000",
     {'c', 'b', 'h', 0x08, 0xA4, 0x70, 0xBD, 0x3E, 0x00, 0x00, 0xC0, 0xBF}},
    {"VCKeyboardConfig shortKey0Modifier=17 shortKey0=34 shortKey1Modifier=51 shortKey1=68 "
     "longKey0Modifier=85 longKey0=102 longKey1Modifier=119 longKey1=136",
     {'c', 'b', 'k', 0x08, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66, 0x77, 0x88}},
    {"VCLastHumDuration _duration=300", {'c', 'b', 'l', 0x03, 0x2C, 0x01, 0x00}},
    {"VCLastHumDuration _duration=300 _sourceSI=1", {'c', 'b', 'l', 0x03, 0x2C, 0x01, 0x01}},
    {"VCOutputPath path=0", {'c', 'b', 'p', 0x01, 0x00}},
    {"VCOutputPath path=1", {'c', 'b', 'p', 0x01, 0x01}},
    {"VCAutoTune channel=2 _minThreshold=3e800000 _maxThreshold=3f400000", {'c', 'b', 't', 0x01, 0x02}},
    {"VCWriteSettings", {'c', 'b', 'w', 0x00}},
    {"VCProtocolSelect proto=0", {'c', 'b', 'x', 0x01, 0x00}},
    {"VCProtocolSelect proto=1", {'c', 'b', 'x', 0x01, 0x01}},
    {"VCRelayConfig config_modeShort=2 config_modeLong=0 config_typeShort=1 config_typeLong=0 "
     "min_pulse_short=258 min_pulse_long=772 max_pulse_short=1286 max_pulse_long=1800",
     {'c', 'b', 'y', 0x0C, 0x02, 0x01, 0x02, 0x01, 0x06, 0x05, 0x00, 0x00, 0x04, 0x03, 0x08, 0x07}},
    {"VCReset", {'c', 'b', 'z', 0x00}},
};

TEST(Messages, AreSentInTheOrderOfTheirFieldsWithTheLowBytesFirst) {
    for (const Command& command : commands) {
        EXPECT_EQ(made(command.message)->serialize(), command.frame) << command.message;
    }
}

TEST(Messages, AreNotSentWhileInvalidExceptForFour) {
    for (const Command& command : commands) {
        SCOPED_TRACE(command.message);
        const auto invalid = made(command.message);
        invalid->_valid = false;
        switch (static_cast<char>(command.frame[2])) {
            case 'h':
            case 'k':
            case 'w':
            case 'z':
                EXPECT_EQ(invalid->serialize(), command.frame);
                break;
            default:
                EXPECT_EQ(errorOf([&] { invalid->serialize(); }), VelmorindalError::InvalidMessageError);
        }
    }
}

TEST(Messages, CannotBeSentWhereTheyAreOnlyReceived) {
    for (const std::string name : {"VCVersion", "VCStatus"}) {
        SCOPED_TRACE(name);
        EXPECT_EQ(errorOf([&] { made(name)->serialize(); }), VelmorindalError::NotImplementedError);
        EXPECT_EQ(errorOf([&] { made(name + " _valid=0")->serialize(); }),
                  VelmorindalError::InvalidMessageError);
    }
}

TEST(Messages, CannotBeReceivedWhereTheyAreOnlySent) {
    for (const auto& [name, code] : {std::pair{"VCWriteSettings", 'w'}, std::pair{"VCReset", 'z'}}) {
        SCOPED_TRACE(name);
        const auto order = made(name);
        const ByteBuffer answer{'r', 'b', static_cast<std::uint8_t>(code), 0x00};
        EXPECT_EQ(errorOf([&] { order->deserialize(answer); }), VelmorindalError::NotImplementedError);
        EXPECT_TRUE(order->_valid);
    }
}

struct Answer {
    const char* what;
    std::string before;
    ByteBuffer frame;
    std::string after;
};

TEST(Messages, AreReceivedFieldByField) {
    const std::vector<Answer> answers{
        {"the low byte of each duration, without the high one",
         "VCHumDuration",
         {'r', 'b', 'd', 0x0B, 0x01, 0x02, 0xAA, 0x03, 0xBB, 0x04, 0xCC, 0xFF, 0xDD, 0x05, 0x06},
         "VCHumDuration detect_mode=1 min_short=2 max_short=3 min_long=4 max_long=255 hold_on=5 hold_off=6"},
        {"the two lowest bits of the detect mode: 3",
         "VCHumDuration",
         {'r', 'b', 'd', 0x0B, 0x07, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         "VCHumDuration detect_mode=3"},
        {"the two lowest bits of the detect mode: 0",
         "VCHumDuration detect_mode=3",
         {'r', 'b', 'd', 0x0B, 0xFC, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         "VCHumDuration"},
        {"the two lowest bits of the detect mode: 2",
         "VCHumDuration",
         {'r', 'b', 'd', 0x0B, 0x82, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         "VCHumDuration detect_mode=2"},
        {"every bit of a threshold, those of a signalling NaN too",
         "VCHumThresholds",
         {'r', 'b', 'h', 0x08, 0x00, 0x00, 0x00, 0x3F, 0x01, 0x00, 0xA0, 0x7F},
         "VCHumThresholds apThreshold=3f000000 siThreshold=7fa00001"},
        {"eight keys",
         "VCKeyboardConfig",
         {'r', 'b', 'k', 0x08, 1, 2, 3, 4, 5, 6, 7, 0xFF},
         "VCKeyboardConfig shortKey0Modifier=1 shortKey0=2 shortKey1Modifier=3 shortKey1=4 "
         "longKey0Modifier=5 longKey0=6 longKey1Modifier=7 longKey1=255"},
        {"the low byte of the last duration",
         "VCLastHumDuration",
         {'r', 'b', 'l', 0x03, 0x2C, 0x01, 0x01},
         "VCLastHumDuration _duration=44 _sourceSI=1"},
        {"a source that is not the SI",
         "VCLastHumDuration _sourceSI=1",
         {'r', 'b', 'l', 0x03, 0x10, 0x00, 0x00},
         "VCLastHumDuration _duration=16"},
        {"any other source",
         "VCLastHumDuration",
         {'r', 'b', 'l', 0x03, 0x10, 0x00, 0x80},
         "VCLastHumDuration _duration=16 _sourceSI=1"},
        {"any state of the link", "VCStatus", {'r', 'b', 's', 0x01, 0xFF}, "VCStatus _linkState=255"},
        {"a frame after one that was refused",
         "VCStatus _valid=0",
         {'r', 'b', 's', 0x01, 0x02},
         "VCStatus _linkState=2"},
        {"every bit of the range, and the channel as it was",
         "VCAutoTune channel=2",
         {'r', 'b', 't', 0x08, 0x01, 0x00, 0xA0, 0x7F, 0x01, 0x02, 0x03, 0x84},
         "VCAutoTune channel=2 _minThreshold=7fa00001 _maxThreshold=84030201"},
        {"the whole payload as text: V, 1, NUL, u with dots, the euro sign, a new line",
         "VCVersion",
         {'r', 'b', 'v', 0x09, 'V', '1', 0x00, 0xC3, 0xBC, 0xE2, 0x82, 0xAC, '\n'},
         "VCVersion _versionString=563100c3bce282ac0a"},
        {"an empty text", "VCVersion _versionString=56", {'r', 'b', 'v', 0x00}, "VCVersion"},
        {"both jacks from the first half and its low bytes",
         "VCRelayConfig",
         {'r', 'b', 'y', 0x0B, 0x02, 0x01, 0x0A, 0xAA, 0xE8, 0xBB, 0x00, 0x00, 0x11, 0x22, 0x33},
         "VCRelayConfig config_modeShort=2 config_modeLong=2 config_typeShort=1 config_typeLong=1 "
         "min_pulse_short=10 min_pulse_long=10 max_pulse_short=232 max_pulse_long=232"},
        {"the unused mode 3 as Fixed",
         "VCRelayConfig config_modeShort=2 config_modeLong=2",
         {'r', 'b', 'y', 0x0B, 0x03, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         "VCRelayConfig config_modeShort=1 config_modeLong=1"},
        {"the two lowest bits of the mode and the lowest of the type",
         "VCRelayConfig",
         {'r', 'b', 'y', 0x0B, 0xFC, 0xFF, 0, 0, 0, 0, 0, 0, 0, 0, 0},
         "VCRelayConfig config_modeShort=0 config_modeLong=0 config_typeShort=1 config_typeLong=1"},
    };
    for (const Answer& answer : answers) {
        SCOPED_TRACE(answer.what);
        const auto message = made(answer.before);
        EXPECT_TRUE(message->deserialize(answer.frame));
        EXPECT_EQ(described(message.get()), described(made(answer.after).get()));
    }
}

TEST(Messages, ReceiveTheLowestBitOfAChoiceOfTwo) {
    for (unsigned byte = 0; byte <= 0xFF; ++byte) {
        const auto value = static_cast<std::uint8_t>(byte);
        VCOutputPath path;
        EXPECT_TRUE(path.deserialize(ByteBuffer{'r', 'b', 'p', 0x01, value}));
        EXPECT_EQ(path.path, byte % 2 == 0 ? VCOutputPath::OutputPath::USB : VCOutputPath::OutputPath::Relay);
        VCProtocolSelect select;
        EXPECT_TRUE(select.deserialize(ByteBuffer{'r', 'b', 'x', 0x01, value}));
        EXPECT_EQ(select.proto, byte % 2 == 0 ? VCProtocolSelect::CommProtocol::Gazell
                                              : VCProtocolSelect::CommProtocol::Bluetooth);
    }
}

struct Refused {
    std::string message;
    ByteBuffer frame;
    const char* line = "";
};

TEST(Messages, KeepTheirFieldsAndAreInvalidAfterAFrameThatFails) {
    const std::vector<Refused> all{
        {"VCHumDuration max_short=300", {'r', 'b', 'd', 0x0A, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        {"VCHumDuration max_short=300", {'r', 'b', 'd', 0x0C, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}},
        {"VCHumThresholds apThreshold=3e800000", {'r', 'b', 'h', 0x07, 1, 2, 3, 4, 5, 6, 7}},
        {"VCHumThresholds apThreshold=3e800000", {'r', 'b', 'h', 0x09, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
        {"VCKeyboardConfig longKey1=136", {'r', 'b', 'k', 0x07, 1, 2, 3, 4, 5, 6, 7}},
        {"VCKeyboardConfig longKey1=136", {'r', 'b', 'k', 0x09, 1, 2, 3, 4, 5, 6, 7, 8, 9}},
        {"VCLastHumDuration _duration=300", {'r', 'b', 'l', 0x02, 0x10, 0x00}},
        {"VCLastHumDuration _duration=300", {'r', 'b', 'l', 0x04, 0x10, 0x00, 0x01, 0x00}},
        {"VCOutputPath path=1", {'r', 'b', 'p', 0x00}},
        {"VCOutputPath path=1", {'r', 'b', 'p', 0x02, 0x00, 0x00}},
        {"VCStatus _linkState=7", {'r', 'b', 's', 0x00}},
        {"VCStatus _linkState=7", {'r', 'b', 's', 0x02, 0x02, 0x00}},
        {"VCAutoTune channel=2 _maxThreshold=3f400000", {'r', 'b', 't', 0x07, 1, 2, 3, 4, 5, 6, 7}},
        {"VCAutoTune channel=2 _maxThreshold=3f400000", {'r', 'b', 't', 0x01, 0x02}},
        {"VCProtocolSelect proto=1", {'r', 'b', 'x', 0x00}},
        {"VCProtocolSelect proto=1", {'r', 'b', 'x', 0x02, 0x00, 0x00}},
        {"VCRelayConfig config_modeShort=2", {'r', 'b', 'y', 0x0A, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10}},
        // As long as the command.
        {"VCRelayConfig config_modeShort=2",
         {'r', 'b', 'y', 0x0C, 1, 0, 10, 0, 0xE8, 3, 1, 0, 10, 0, 0xE8, 3}},
        {"VCVersion _versionString=56",
         {'r', 'b', 'v', 0x02, 'a'},
         "Expected total payload length of  2  but got  1\n"},
        // The same layout.
        {"VCHumThresholds",
         {'r', 'b', 't', 0x08, 1, 2, 3, 4, 5, 6, 7, 8},
         "Expected message type  104 ). Got  116\n"},
        {"VCAutoTune",
         {'r', 'b', 'h', 0x08, 1, 2, 3, 4, 5, 6, 7, 8},
         "Expected message type  116 ). Got  104\n"},
    };
    for (const Refused& refused : all) {
        SCOPED_TRACE(refused.message + " and " + std::to_string(refused.frame.size()) + " bytes");
        const auto message = made(refused.message);
        EXPECT_EQ(printedBy([&] { EXPECT_FALSE(message->deserialize(refused.frame)); }), refused.line);
        EXPECT_EQ(described(message.get()), described(made(refused.message + " _valid=0").get()));
    }
}

TEST(RawValues, AreTheCasesInOrderAndNoOther) {
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(0), VCHumDuration::DetectMode::DetectModeContinuous);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(1), VCHumDuration::DetectMode::DetectModeShortOnly);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(2), VCHumDuration::DetectMode::DetectModeLongOnly);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(3), VCHumDuration::DetectMode::DetectModeShortAndLong);
    EXPECT_EQ(VCHumDuration::detectModeFromRawValue(4), std::nullopt);
    using Mode = VCRelayConfig::RelayConfigMode;
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(0), Mode::RelayConfigModeFollow);
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(1), Mode::RelayConfigModeFixed);
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(2), Mode::RelayConfigModeToggle);
    EXPECT_EQ(VCRelayConfig::relayConfigModeFromRawValue(3), std::nullopt);
    using Type = VCRelayConfig::RelayConfigType;
    EXPECT_EQ(VCRelayConfig::relayConfigTypeFromRawValue(0), Type::RelayConfigTypeNO);
    EXPECT_EQ(VCRelayConfig::relayConfigTypeFromRawValue(1), Type::RelayConfigTypeNC);
    EXPECT_EQ(VCRelayConfig::relayConfigTypeFromRawValue(2), std::nullopt);
    EXPECT_EQ(VCOutputPath::outputPathFromRawValue(0), VCOutputPath::OutputPath::USB);
    EXPECT_EQ(VCOutputPath::outputPathFromRawValue(1), VCOutputPath::OutputPath::Relay);
    EXPECT_EQ(VCOutputPath::outputPathFromRawValue(2), std::nullopt);
    EXPECT_EQ(VCProtocolSelect::commProtocolFromRawValue(0), VCProtocolSelect::CommProtocol::Gazell);
    EXPECT_EQ(VCProtocolSelect::commProtocolFromRawValue(1), VCProtocolSelect::CommProtocol::Bluetooth);
    EXPECT_EQ(VCProtocolSelect::commProtocolFromRawValue(2), std::nullopt);
}

}  // namespace
}  // namespace velmorindal
