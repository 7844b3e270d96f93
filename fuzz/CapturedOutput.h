#pragma once

#include <cstddef>
#include <string>

namespace velmorindal {

/// Takes what this process writes to standard output while it lives; one at a time. The program it is linked
/// into has its own `write`, because a file or a pipe would cost more than all that a target does.
class CapturedOutput {
  public:
    CapturedOutput();
    CapturedOutput(const CapturedOutput&) = delete;
    CapturedOutput& operator=(const CapturedOutput&) = delete;
    ~CapturedOutput();

    /// All that was printed since the construction or the last call.
    std::string take();
};

/// What a write to any descriptor but the three standard ones does instead of writing, where it is set.
using ReplacedWrite = std::ptrdiff_t (*)(const void* bytes, std::size_t size);
void replaceWrites(ReplacedWrite replacement);

}  // namespace velmorindal
