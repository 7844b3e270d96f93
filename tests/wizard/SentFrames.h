#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "VelmorindalCommand.h"

namespace velmorindal {

/// Looks at the frames that one dongle receives, in order, for one that the wizard must not send then. The
/// sequences are written down here by hand.
class SentFrames {
  public:
    /// Where an exchange was made to fail, an order to end the reports may be missing.
    void expectFailures() { failuresExpected_ = true; }

    /// Takes the next frame. `writeFailed`: a write has ended without its last frame.
    /// @returns what is wrong with it, if anything.
    std::optional<std::string> add(const ByteBuffer& frame, bool writeFailed);

    /// What the last frame has left open, if anything: a write without its end, reports that go on.
    std::optional<std::string> leftOpen() const;

  private:
    std::optional<std::string> addConnectingQuery(char type);
    std::optional<std::string> addWriting(char type, const ByteBuffer& frame);
    std::optional<std::string> addPolling(char type, const ByteBuffer& frame);

    std::size_t connecting_ = 0;
    /// Of the write that is under way; 0 between writes.
    std::size_t writing_ = 0;
    bool skipsOutputPath_ = false;
    bool reporting_ = false;
    bool failuresExpected_ = false;
};

}  // namespace velmorindal
