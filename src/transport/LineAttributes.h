#pragma once

#include <termios.h>

#include "SerialSettings.h"

namespace velmorindal {

/// The attributes that a line with the attributes `current` gets from `settings`: raw bytes, neither echo nor
/// signals, the receiver on and the modem control lines ignored.
///
/// Touches no descriptor. Parity is only ever added: parity bits set in `current` stay set. Every control
/// character becomes 0 except VMIN and VTIME. `minimumBytesToRead` or `timeout` outside 0..255 stops the
/// process.
termios lineAttributes(termios current, const SerialSettings& settings);

/// Whether two lines are configured alike in all that lineAttributes() sets.
bool sameAttributes(const termios& one, const termios& other);

}  // namespace velmorindal
