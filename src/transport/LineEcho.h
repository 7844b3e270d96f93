#pragma once

namespace velmorindal {

/// Makes a line hand on what arrives byte by byte and send none of it back. Does nothing to a descriptor that
/// is not a terminal.
///
/// A line that has not been configured yet echoes, and a device may speak as soon as its line is opened.
void stopEcho(int descriptor);

}  // namespace velmorindal
