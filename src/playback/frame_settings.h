#pragma once

#include <array>
#include <cstdint>

namespace tavelle {

/// The ends of a range belong to it.
template <typename T>
struct Range {
  T least;
  T most;

  constexpr bool contains(T value) const { return value >= least && value <= most; }
};

/// Frames per second that a page can be asked for.
inline constexpr Range<std::int64_t> frameRateRange{20, 60};
/// Shares of the full resolution in each direction that a page can be asked for.
inline constexpr Range<double> resolutionScaleRange{0.25, 1.0};

/// How often and how finely pages draw; each in its range.
struct FrameSettings {
  std::int64_t frameRate = frameRateRange.most;
  double resolutionScale = resolutionScaleRange.most;
};

struct Resolution {
  const char* title;
  double scale;
};

/// What the menu offers, in its order. Other values in range may be stored, and count.
inline constexpr std::array<std::int64_t, 5> frameRates{60, 50, 40, 30, 20};
inline constexpr std::array<Resolution, 4> resolutions{
    {{"Full", 1.0}, {"High (75%)", 0.75}, {"Medium (50%)", 0.5}, {"Low (35%)", 0.35}}};

}  // namespace tavelle
