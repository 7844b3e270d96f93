#pragma once

namespace velmorindal {

/// Sets the name, icon, style and accessible controls of the existing QApplication, and keeps the locale from
/// changing how numbers are written. Call once, before the first window.
void setUpApplication();

}  // namespace velmorindal
