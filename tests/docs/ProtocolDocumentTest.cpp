#include "ProtocolDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <memory>

#include "HexText.h"
#include "MessageClass.h"
#include "Record.h"
#include "SessionTest.h"
#include "SimulatedDevice.h"
#include "VelmorindalMessageFactory.h"

namespace velmorindal {
namespace {

using testing::IsEmpty;
using testing::Not;

using Example = ProtocolDocument::Example;

constexpr std::size_t typeOffset = 2;

const ProtocolDocument& document() {
    static const ProtocolDocument page{VELMORINDAL_TEST_SOURCE_DIRECTORY "/../docs/protocol.md"};
    return page;
}

std::vector<Example> examplesOf(const std::string& kind) {
    std::vector<Example> found;
    std::ranges::copy_if(document().examples(), std::back_inserter(found),
                         [&](const Example& example) { return example.kind == kind; });
    return found;
}

bool hasExample(std::string_view messageClass, const std::string& kind) {
    return std::ranges::any_of(examplesOf(kind),
                               [&](const Example& example) { return example.messageClass == messageClass; });
}

std::map<std::string, std::string> fieldsOf(const MessageClass& messageClass, VelmorindalCommand& message) {
    std::map<std::string, std::string> fields;
    for (const auto& each : messageClass.fields(message)) {
        if (each.name != "_valid") {
            fields.emplace(each.name, each.text());
        }
    }
    return fields;
}

/// The types that a host queries; the document's table says why it does not query the others.
bool isQueried(std::string_view messageClass) {
    return messageClass != "VCRelayConfig" && messageClass != "VCAutoTune" &&
           messageClass != "VCWriteSettings" && messageClass != "VCReset";
}

template <typename Operation>
bool isImplemented(Operation operation) {
    try {
        operation();
    } catch (const VelmorindalException& exception) {
        return exception.error != VelmorindalError::NotImplementedError;
    }
    return true;
}

TEST(ProtocolDocument, HasAnExampleOfEveryMessageInEveryDirectionThatItTravels) {
    for (const MessageClass& each : allMessageClasses()) {
        const auto message = each.make();
        EXPECT_EQ(hasExample(each.name, "query"), isQueried(each.name)) << each.name;
        const bool isSent = isImplemented([&] { message->serialize(); });
        EXPECT_EQ(hasExample(each.name, "command"), isSent) << each.name;
        EXPECT_EQ(hasExample(each.name, "acknowledgement"), isSent) << each.name;
        const bool isDecoded = isImplemented([&] { message->deserialize({}); });
        EXPECT_EQ(hasExample(each.name, "answer"), isDecoded) << each.name;
        EXPECT_TRUE(hasExample(each.name, "refused")) << each.name;
    }
}

TEST(ProtocolDocument, HasNoExampleOfAKindThatNoTestLooksAt) {
    EXPECT_EQ(examplesOf("query").size() + examplesOf("command").size() +
                  examplesOf("acknowledgement").size() + examplesOf("answer").size() +
                  examplesOf("refused").size() + examplesOf("denied").size(),
              document().examples().size());
}

TEST(ProtocolDocument, ItsQueriesAreTheFramesThatTheHostSends) {
    for (const Example& example : examplesOf("query")) {
        ASSERT_GT(example.frame.size(), typeOffset);
        EXPECT_EQ(VelmorindalCommand::addHeader({}, example.frame[typeOffset], true), example.frame);
        const auto answer = VelmorindalMessageFactory::createFromWire(example.frame);
        ASSERT_NE(answer, nullptr);
        EXPECT_TRUE(messageClassNamed(example.messageClass).matches(*answer)) << example.messageClass;
    }
}

TEST(ProtocolDocument, ItsCommandsAreWhatTheirFieldsAreSentAs) {
    for (const Example& example : examplesOf("command")) {
        const MessageClass& messageClass = messageClassNamed(example.messageClass);
        const auto message = messageClass.make();
        for (const auto& each : messageClass.fields(*message)) {
            if (const auto value = example.fields.find(std::string{each.name});
                value != example.fields.end()) {
                each.set(value->second);
            }
        }
        EXPECT_EQ(hexText(message->serialize()), hexText(example.frame)) << example.messageClass;
        EXPECT_EQ(fieldsOf(messageClass, *message), example.fields) << example.messageClass;
    }
}

TEST(ProtocolDocument, ItsAnswersAreReadAsTheirFields) {
    for (const Example& example : examplesOf("answer")) {
        const MessageClass& messageClass = messageClassNamed(example.messageClass);
        const auto message = VelmorindalMessageFactory::createFromWire(example.frame);
        ASSERT_NE(message, nullptr) << example.messageClass;
        ASSERT_TRUE(messageClass.matches(*message)) << example.messageClass;
        EXPECT_TRUE(message->_valid) << hexText(example.frame);
        EXPECT_EQ(fieldsOf(messageClass, *message), example.fields) << hexText(example.frame);
    }
}

TEST(ProtocolDocument, ItsAcknowledgementsPassTheCheckOfTheHost) {
    for (const Example& example : examplesOf("acknowledgement")) {
        const auto message = messageClassNamed(example.messageClass).make();
        const std::uint8_t type = message->serialize().at(typeOffset);
        EXPECT_TRUE(VelmorindalCommand::verifyHeader(example.frame, type)) << hexText(example.frame);
    }
}

TEST(ProtocolDocument, WhatItCallsDeniedAcknowledgesNoCommand) {
    ASSERT_THAT(examplesOf("denied"), Not(IsEmpty()));
    for (const Example& example : examplesOf("denied")) {
        const std::uint8_t type = messageClassNamed(example.messageClass).make()->serialize().at(typeOffset);
        EXPECT_EQ(example.frame.at(typeOffset), type) << hexText(example.frame);
        EXPECT_FALSE(VelmorindalCommand::verifyHeader(example.frame, type)) << hexText(example.frame);
    }
}

TEST(ProtocolDocument, WhatItCallsRefusedBecomesNoValidMessage) {
    for (const Example& example : examplesOf("refused")) {
        const auto message = VelmorindalMessageFactory::createFromWire(example.frame);
        EXPECT_FALSE(message && message->_valid) << hexText(example.frame);
        if (message) {
            EXPECT_TRUE(messageClassNamed(example.messageClass).matches(*message)) << hexText(example.frame);
        }
    }
}

TEST(ProtocolDocument, ItsRecordIsOneThatCanBePlayed) {
    const TemporaryDirectory directory;
    const auto file = directory.path() / "record";
    std::ofstream{file} << document().record();
    const auto events = readRecord(file);
    std::vector<ByteBuffer> sent;
    for (const RecordedEvent& event : events) {
        if (event.kind == RecordedEvent::Kind::fromHost) {
            sent.push_back(event.bytes);
        }
    }
    ASSERT_THAT(sent, Not(IsEmpty()));
    for (std::size_t index = 0; index < sent.size(); ++index) {
        EXPECT_EQ(sent[index], document().conversation("Connecting").at(index * 2).frame);
    }
}

/// The model beside a dongle as the page's conversations have it.
class ProtocolDocumentConversation : public SessionTest {
  protected:
    /// The lines of one side.
    static std::vector<ByteBuffer> said(const std::string& heading, bool byHost) {
        std::vector<ByteBuffer> frames;
        for (const auto& line : document().conversation(heading)) {
            if (line.fromHost == byHost) {
                frames.push_back(line.frame);
            }
        }
        return frames;
    }

    /// What the simulated device would say to the host's lines, from the state that it is in.
    static std::vector<ByteBuffer> answersTo(const std::vector<ByteBuffer>& frames) {
        SimulatedDevice device{DeviceState{}, std::nullopt};
        std::vector<ByteBuffer> answers;
        for (const ByteBuffer& frame : frames) {
            answers.push_back(device.answerTo(frame));
            device.apply(frame);
        }
        return answers;
    }
};

TEST_F(ProtocolDocumentConversation, ConnectsAndWritesAsTheModelAndTheDeviceDo) {
    ASSERT_THAT(said("Connecting", true), Not(IsEmpty()));
    ASSERT_THAT(said("Writing", true), Not(IsEmpty()));

    ASSERT_TRUE(connect());
    EXPECT_EQ(dongle.receivedFrames(), said("Connecting", true));
    EXPECT_EQ(answersTo(said("Connecting", true)), said("Connecting", false));

    const std::size_t frames = dongle.receivedFrames().size();
    ASSERT_TRUE(dispatch.finish([this] { return velmorindal.commitSettingsToDevice(); }));
    EXPECT_EQ(framesAfter(frames), said("Writing", true));
    EXPECT_EQ(answersTo(said("Writing", true)), said("Writing", false));
}

}  // namespace
}  // namespace velmorindal
