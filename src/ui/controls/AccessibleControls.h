#pragma once

namespace velmorindal {

/// Teaches the accessibility layer the controls drawn here: bars and sliders with their real values, and the
/// pictures. Once, before the first of them is made; repeating it changes nothing.
void installAccessibleControls();

}  // namespace velmorindal
