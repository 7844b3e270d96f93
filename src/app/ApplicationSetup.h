#pragma once

namespace velmorindal {

/// Gives the QApplication, which exists already, its name, icon, style and accessible controls, and takes the
/// locale's hands off numbers. Once, before the first window.
void setUpApplication();

}  // namespace velmorindal
