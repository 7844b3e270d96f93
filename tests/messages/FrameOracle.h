#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// A second implementation of the wire format, as plain as possible and independent of the first: the build
/// finds no header of the program here. Any difference between the two is a finding.
namespace velmorindal::oracle {

/// A field's value: of a number its bytes, the lowest first; of a text its bytes.
using Bytes = std::vector<unsigned char>;

enum class Kind { byte, bit, twoBits, relayMode, truth, word, pattern, text };

struct Field {
    std::string_view name;
    Kind kind;
    /// Where it stands in the payload of an answer and of a command; nothing where it is not in there.
    std::optional<std::size_t> inAnswer;
    std::optional<std::size_t> inCommand;
    unsigned char first = 0;
};

enum class Sending { never, whenValid, always };

struct Message {
    char type;
    std::string_view name;
    /// The payload's length in an answer; `anyLength` or `notReceived`.
    std::size_t answerLength;
    Sending sending;
    std::vector<Field> fields;
};

constexpr std::size_t anyLength = 1000;
constexpr std::size_t notReceived = 2000;

const std::vector<Message>& messages();

/// The value of a field of that kind at `start` of an answer's payload.
Bytes valueFrom(Kind kind, const Bytes& payload, std::size_t start);

/// A message with its fields, one value each.
struct Object {
    explicit Object(const Message& itsMessage);

    /// Every field as text, in the notation of MessageClass.
    std::vector<std::pair<std::string, std::string>> texts() const;
    /// The class and the fields.
    std::string description() const;

    const Message* message;
    bool valid = true;
    std::vector<Bytes> values;
};

/// A whole frame: kind, type and payload.
Bytes frame(char kind, char type, const Bytes& payload = {});
/// A query's four bytes.
Bytes query(char type);

bool isUTF8(const Bytes& text);

/// The line that checking `frame` for a message type prints, newline included; empty when it passes.
std::string lineOfCheck(const Bytes& frame, unsigned expectedType);

/// The frame that the object becomes when it is sent, as hexadecimal digits, or the name of the error.
std::string sent(const Object& object);

struct Reception {
    /// The name of the error that is thrown, if one is.
    std::string error = {};
    /// What is printed, newline included.
    std::string line = {};
    /// The program stops on purpose; nothing else of this counts then.
    bool stops = false;
};

/// Puts the fields of `frame` into `object`.
Reception receive(Object& object, const Bytes& frame);

struct Decoding {
    /// As Object describes it, or "none".
    std::string message = {};
    std::string line = {};
    /// As sent() says.
    std::string sentAgain = {};
    bool stops = false;
};

/// What becomes of a received frame of any type.
Decoding decoded(const Bytes& frame);

}  // namespace velmorindal::oracle
