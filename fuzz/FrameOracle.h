#pragma once

#include <string>
#include <vector>

/// The wire format written a second time, the slow and obvious way, and without a line of the first. Any
/// difference between the two is a finding.
namespace velmorindal::oracle {

using Bytes = std::vector<unsigned char>;

/// The line that checking `frame` for a message type prints, newline included; empty when it passes.
std::string lineOfCheck(const Bytes& frame, unsigned expectedType);

bool isUTF8(const Bytes& text);

struct Decoding {
    /// Name of the message class and every field as text, or "none".
    std::string message;
    /// What is printed, newline included.
    std::string line;
    /// The frame that the decoded message becomes when sent, as hexadecimal digits, or the name of the error.
    std::string sentAgain;
    /// The program stops on purpose; nothing else of this counts.
    bool stops = false;
};

/// What becomes of a received frame.
Decoding decoded(const Bytes& frame);

}  // namespace velmorindal::oracle
