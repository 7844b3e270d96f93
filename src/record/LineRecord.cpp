#include "LineRecord.h"

#include <chrono>
#include <utility>

#include "Hexadecimal.h"

namespace velmorindal {
namespace {

/// Seconds with three decimals, cut and not rounded.
std::string secondsIn(System::Clock::duration time) {
    const auto milliseconds = std::chrono::duration_cast<std::chrono::milliseconds>(time).count();
    const std::string rest = std::to_string(milliseconds % 1000);
    return std::to_string(milliseconds / 1000) + "." + std::string(3 - rest.size(), '0') + rest;
}

}  // namespace

LineRecord::LineRecord(std::string path, Clock::time_point start)
    : file_{std::move(path)}, start_{start}, when_{start} {
    file_.append(heading);
}

void LineRecord::moved(int port, Side from, std::span<const std::uint8_t> bytes, Clock::time_point now) {
    if (port != port_ || from != side_) {
        endPiece();
    }
    port_ = port;
    side_ = from;
    when_ = now;
    for (const ByteBuffer& piece : (from == Side::host ? host_ : device_).add(bytes)) {
        writePiece(piece);
    }
}

void LineRecord::endPiece() {
    if (const ByteBuffer piece = (side_ == Side::host ? host_ : device_).flush(); !piece.empty()) {
        writePiece(piece);
    }
}

void LineRecord::happened(std::string_view what, int port, Clock::time_point now) {
    endPiece();
    file_.append(secondsIn(now - start_) + " " + std::to_string(port) + " " + std::string{what});
}

void LineRecord::writePiece(const ByteBuffer& piece) {
    file_.append(secondsIn(when_ - start_) + " " + std::to_string(port_) +
                 (side_ == Side::host ? " > " : " < ") + hexadecimal(piece, " "));
}

}  // namespace velmorindal
