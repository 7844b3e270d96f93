#pragma once

namespace velmorindal {

/// Makes a line deliver what arrives byte by byte, without echo. Does nothing to a descriptor that is not
/// a terminal.
///
/// A line that is not configured yet echoes, and a device may send as soon as its line is opened.
void stopEcho(int descriptor);

}  // namespace velmorindal
