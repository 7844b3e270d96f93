#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "FrameSplitter.h"
#include "RecordFile.h"
#include "System.h"

namespace velmorindal {

/// What passed over the lines to devices and when, as text: one line a frame, as docs/protocol.md describes.
///
/// Ports are numbered, since their paths are private. Times count from `start`. Once a line cannot be
/// written, all later ones are dropped, as in RecordFile. Not safe from several threads.
class LineRecord {
  public:
    using Clock = System::Clock;
    using Side = FrameSplitter::Side;

    /// The first line of every record.
    static constexpr std::string_view heading = "Velmorindal record 1";

    /// Creates the file. @throws std::system_error as RecordFile does.
    LineRecord(std::string path, Clock::time_point start);

    void opened(int port, Clock::time_point now) { happened("open", port, now); }
    /// An open that the system did not allow.
    void refused(int port, Clock::time_point now) { happened("refused", port, now); }
    void closed(int port, Clock::time_point now) { happened("close", port, now); }
    /// The device was unplugged.
    void lost(int port, Clock::time_point now) { happened("lost", port, now); }

    /// One side has sent these bytes. They become a line when a frame is complete.
    void moved(int port, Side from, std::span<const std::uint8_t> bytes, Clock::time_point now);
    /// No more bytes came while the host waited, or it stops reading: an incomplete frame becomes a line as
    /// it is.
    void endPiece();

  private:
    void happened(std::string_view what, int port, Clock::time_point now);
    void writePiece(const ByteBuffer& piece);

    RecordFile file_;
    const Clock::time_point start_;
    FrameSplitter host_{Side::host};
    FrameSplitter device_{Side::device};
    /// The port and the side whose bytes came last.
    int port_ = 0;
    Side side_ = Side::host;
    Clock::time_point when_;
};

}  // namespace velmorindal
