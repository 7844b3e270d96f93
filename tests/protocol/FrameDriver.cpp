// Answers requests about frames, so that a program in another language can compare its own codec with ours.
//
// Each line of standard input is one request; bytes are written in hexadecimal, "-" stands for no bytes,
// floats are eight hexadecimal digits of their bit pattern, texts are their bytes, everything else is
// decimal:
//
//     create BYTES                          what the factory makes of a frame
//     verify TYPE BYTES                     whether a frame is one of that type
//     deserialize CLASS BYTES FIELD=VALUE.. what becomes of an object with these fields
//     serialize CLASS FIELD=VALUE..         the frame of an object with these fields
//
// The answer is what the call printed, followed by one line that starts with "= ".

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "HexText.h"
#include "MessageClass.h"
#include "Print.h"
#include "VelmorindalMessageFactory.h"

namespace velmorindal {
namespace {

const MessageClass& classOf(const std::string& name) {
    const auto classes = allMessageClasses();
    const auto found = std::ranges::find(classes, name, &MessageClass::name);
    if (found == classes.end()) {
        refuse(name);
    }
    return *found;
}

std::string described(VelmorindalCommand& message) {
    const auto classes = allMessageClasses();
    const auto messageClass =
        std::ranges::find_if(classes, [&](const auto& each) { return each.matches(message); });
    std::string text{messageClass->name};
    for (const Field& each : messageClass->fields(message)) {
        text += ' ';
        text += each.name;
        text += '=';
        text += each.text();
    }
    return text;
}

/// The object that the rest of a request describes field by field.
std::unique_ptr<VelmorindalCommand> objectFrom(const MessageClass& messageClass, std::istream& request) {
    auto message = messageClass.make();
    const std::vector<Field> fields = messageClass.fields(*message);
    for (std::string assignment; request >> assignment;) {
        const std::size_t equals = assignment.find('=');
        const auto found = std::ranges::find(fields, assignment.substr(0, equals), &Field::name);
        if (equals == std::string::npos || found == fields.end()) {
            refuse(assignment);
        }
        found->set(std::string_view{assignment}.substr(equals + 1));
    }
    return message;
}

std::string answerToCreate(std::istream& request) {
    std::string bytes;
    request >> bytes;
    const auto message = VelmorindalMessageFactory::createFromWire(bytesFrom(bytes));
    return message ? described(*message) : "nothing";
}

std::string answerToVerify(std::istream& request) {
    std::string type;
    std::string bytes;
    request >> type >> bytes;
    const bool whole =
        VelmorindalCommandProtocol::verifyHeader(bytesFrom(bytes), numberFrom<std::uint8_t>(type));
    return whole ? "true" : "false";
}

std::string answerToDeserialize(std::istream& request) {
    std::string name;
    std::string bytes;
    request >> name >> bytes;
    const auto message = objectFrom(classOf(name), request);
    const bool result = message->deserialize(bytesFrom(bytes));
    return (result ? "true " : "false ") + described(*message);
}

std::string answerToSerialize(std::istream& request) {
    std::string name;
    request >> name;
    const auto message = objectFrom(classOf(name), request);
    return hexadecimal(message->serialize());
}

struct Verb {
    std::string_view name;
    std::string (*answer)(std::istream& request);
};

constexpr std::array verbs{
    Verb{"create", answerToCreate},
    Verb{"verify", answerToVerify},
    Verb{"deserialize", answerToDeserialize},
    Verb{"serialize", answerToSerialize},
};

std::string answerTo(const std::string& line) {
    std::istringstream request{line};
    std::string name;
    request >> name;
    const auto* const verb = std::ranges::find(verbs, name, &Verb::name);
    if (verb == verbs.end()) {
        refuse(line);
    }
    try {
        return verb->answer(request);
    } catch (const VelmorindalException& exception) {
        return std::string{"throws "} + exception.what();
    }
}

}  // namespace
}  // namespace velmorindal

int main() {
    for (std::string line; std::getline(std::cin, line);) {
        velmorindal::writeLine(STDOUT_FILENO, "= " + velmorindal::answerTo(line));
    }
    return EXIT_SUCCESS;
}
