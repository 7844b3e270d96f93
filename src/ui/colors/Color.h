#pragma once

namespace velmorindal {

/// A colour in sRGB, each part 0 to 1.
struct Color {
    double red;
    double green;
    double blue;

    bool operator==(const Color&) const = default;
};

/// The colours of the pages. All but white and veryLightGrey have a contrast of 3 : 1 or more with a light
/// background, and with white text on them.
namespace colors {
inline constexpr Color green{.red = 0.13, .green = 0.55, .blue = 0.13};
inline constexpr Color blue{.red = 0.0, .green = 0.40, .blue = 0.85};
inline constexpr Color red{.red = 0.80, .green = 0.11, .blue = 0.11};
inline constexpr Color grey{.red = 0.53, .green = 0.53, .blue = 0.53};
inline constexpr Color white{.red = 1.0, .green = 1.0, .blue = 1.0};
inline constexpr Color black{.red = 0.0, .green = 0.0, .blue = 0.0};
/// The empty track of every bar.
inline constexpr Color veryLightGrey{.red = 0.96, .green = 0.96, .blue = 0.96};
}  // namespace colors

}  // namespace velmorindal
