#pragma once

namespace velmorindal {

/// Registers the accessible interfaces of these controls: bars and sliders with their real values, groups,
/// key lists, Show buttons, headings, announcements and pictures. Call it before the first of them is
/// created; repeating it changes nothing.
void installAccessibleControls();

}  // namespace velmorindal
