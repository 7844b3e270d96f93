#pragma once

#include <termios.h>

#include "SerialSettings.h"

namespace velmorindal {

/// The attributes `current` of a line, changed as `settings` say: raw bytes, no echo, no signals, the
/// receiver on and the modem control lines ignored.
///
/// Makes no system call. Parity is only added: parity bits set in `current` stay set. Every control character
/// becomes 0 except VMIN and VTIME. A `minimumBytesToRead` or `timeout` outside 0..255 stops the process.
termios lineAttributes(termios current, const SerialSettings& settings);

/// Whether two lines have the same flags, control characters and speeds.
bool sameAttributes(const termios& one, const termios& other);

}  // namespace velmorindal
