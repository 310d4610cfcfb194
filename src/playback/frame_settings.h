#pragma once

#include <array>
#include <cstdint>

namespace tavelle {

/// How often and how finely pages draw.
struct FrameSettings {
  /// Frames per second, 20 to 60.
  std::int64_t frameRate = 60;
  /// Share of the full resolution in each direction, 0.25 to 1.
  double resolutionScale = 1.0;
};

struct Resolution {
  const char* title;
  double scale;
};

/// What the menu offers, in its order. Other values in range may be stored, and count.
inline constexpr std::array<std::int64_t, 5> frameRates{60, 50, 40, 30, 20};
inline constexpr std::array<Resolution, 4> resolutions{
    {{"Full", 1.0}, {"High (75%)", 0.75}, {"Medium (50%)", 0.5}, {"Low (35%)", 0.35}}};

/// What a page answered to the sampling script at one moment.
struct FrameSample {
  std::int64_t draws = 0;
  double clockMs = 0;
  std::int64_t canvasWidth = 0;
  std::int64_t canvasHeight = 0;
};

}  // namespace tavelle
