#pragma once

namespace velmorindal {

/// Sets the name, icon, style and accessible controls of the existing QApplication. Call once, before the
/// first window.
void setUpApplication();

}  // namespace velmorindal
