#include "Fault.h"

#include <utility>

#include "VelmorindalMessageType.h"
#include "WireFrame.h"

namespace velmorindal {
namespace {

std::uint8_t code(VelmorindalMessageType type) {
    return static_cast<std::uint8_t>(type);
}

/// A well-formed response of a type that was not asked for.
ByteBuffer otherFrameThan(const ByteBuffer& answer) {
    const bool statusAnswered = answer[typeOffset] == code(VelmorindalMessageType::status);
    const ByteBuffer payload{static_cast<std::uint8_t>(statusAnswered ? 0x00 : 0x01)};
    const auto type =
        statusAnswered ? VelmorindalMessageType::protocolSelect : VelmorindalMessageType::status;
    return wireFrame(VelmorindalCommandProtocol::ResponseByte, code(type), payload);
}

Fault withByte(std::string name, std::size_t offset, std::uint8_t byte) {
    return {std::move(name), [offset, byte](AnswerPlan& plan) { plan.answer[offset] = byte; }};
}

void keepHalf(AnswerPlan& plan) {
    const std::size_t payload = plan.answer.size() - headerSize;
    plan.answer.resize(payload > 0 ? headerSize + payload / 2 : headerSize - 1);
    plan.applies = false;
}

}  // namespace

Fault::Fault(std::string name, std::function<void(AnswerPlan&)> bend)
    : name_{std::move(name)}, bend_{std::move(bend)} {}

Fault Fault::silence() {
    return {"silence", [](AnswerPlan& plan) {
                plan.delivery = AnswerPlan::Delivery::never;
                plan.applies = false;
            }};
}

Fault Fault::halfAHeader() {
    return {"half a header", [](AnswerPlan& plan) {
                plan.answer.resize(headerSize / 2);
                plan.applies = false;
            }};
}

Fault Fault::halfAPayload() {
    return {"half a payload", keepHalf};
}

Fault Fault::anotherFrameFirst(ByteBuffer frame) {
    Fault fault = floodFirst(1, std::move(frame));
    fault.name_ = "another frame first";
    return fault;
}

Fault Fault::floodFirst(std::size_t count, ByteBuffer frame) {
    return {"a flood first", [count, frame = std::move(frame)](AnswerPlan& plan) {
                const ByteBuffer other = frame.empty() ? otherFrameThan(plan.answer) : frame;
                plan.bytesBefore.reserve(plan.bytesBefore.size() + count * other.size());
                for (std::size_t sent = 0; sent < count; ++sent) {
                    plan.bytesBefore.insert(plan.bytesBefore.end(), other.begin(), other.end());
                }
            }};
}

Fault Fault::errorFrame() {
    return {"an error frame", [](AnswerPlan& plan) {
                plan.answer[kindOffset] = VelmorindalCommandProtocol::ErrorByte;
                plan.applies = false;
            }};
}

Fault Fault::wrongKind(std::uint8_t kind) {
    return withByte("wrong kind", kindOffset, kind);
}

Fault Fault::wrongMarker(std::uint8_t marker) {
    return withByte("wrong marker", markerOffset, marker);
}

Fault Fault::wrongType(std::uint8_t type) {
    return withByte("wrong type", typeOffset, type);
}

Fault Fault::lengthTooLong() {
    return {"length too long", [](AnswerPlan& plan) { ++plan.answer[lengthOffset]; }};
}

Fault Fault::lengthTooShort() {
    return {"length too short", [](AnswerPlan& plan) {
                if (plan.answer[lengthOffset] == 0) {
                    plan.answer.push_back(0);
                } else {
                    --plan.answer[lengthOffset];
                }
            }};
}

Fault Fault::payloadOneByteLonger() {
    return {"payload one byte longer", [](AnswerPlan& plan) {
                ++plan.answer[lengthOffset];
                plan.answer.push_back(0);
            }};
}

Fault Fault::payloadOneByteShorter() {
    return {"payload one byte shorter", [](AnswerPlan& plan) {
                if (plan.answer[lengthOffset] > 0) {
                    --plan.answer[lengthOffset];
                    plan.answer.pop_back();
                }
            }};
}

Fault Fault::late() {
    return {"late", [](AnswerPlan& plan) { plan.delivery = AnswerPlan::Delivery::beforeNextAnswer; }};
}

Fault Fault::lateBy(std::chrono::milliseconds delay) {
    return {"late by a while", [delay](AnswerPlan& plan) {
                plan.delivery = AnswerPlan::Delivery::afterDelay;
                plan.delay = delay;
            }};
}

Fault Fault::noiseFirst(ByteBuffer noise) {
    return {"noise first", [noise = std::move(noise)](AnswerPlan& plan) {
                plan.bytesBefore.insert(plan.bytesBefore.end(), noise.begin(), noise.end());
            }};
}

Fault Fault::answerWith(ByteBuffer bytes) {
    return {"other bytes", [bytes = std::move(bytes)](AnswerPlan& plan) { plan.answer = bytes; }};
}

Fault Fault::unplugBeforeAnswer() {
    return {"unplugged before the answer", [](AnswerPlan& plan) {
                plan.unplugging = AnswerPlan::Unplugging::before;
                plan.applies = false;
            }};
}

Fault Fault::unplugDuringAnswer() {
    return {"unplugged during the answer", [](AnswerPlan& plan) {
                keepHalf(plan);
                plan.unplugging = AnswerPlan::Unplugging::after;
            }};
}

Fault Fault::unplugAfterAnswer() {
    return {"unplugged after the answer",
            [](AnswerPlan& plan) { plan.unplugging = AnswerPlan::Unplugging::after; }};
}

Fault Fault::stillApplied() const {
    return {name_ + ", still applied", [bend = bend_](AnswerPlan& plan) {
                bend(plan);
                plan.applies = true;
            }};
}

}  // namespace velmorindal
