#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace tavelle {

class UserDefaults;

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

/// The settings in force: what is stored under "fps" and "resolutionScale", where it is in range, else full rate and
/// full resolution.
FrameSettings storedFrameSettings(const UserDefaults& defaults);

/// "frame rate 30 FPS, resolution 75%"
std::string describe(const FrameSettings& settings);

/// What a page answered to the sampling script at one moment.
struct FrameSample {
  std::int64_t draws = 0;
  double clockMs = 0;
  std::int64_t canvasWidth = 0;
  std::int64_t canvasHeight = 0;
};

/// "measured 29.8 FPS (setting 30), canvas 1728x1117", with ", paused" behind the setting when `paused`. Empty when no
/// time has passed between the samples.
std::string describeMeasurement(const FrameSample& first, const FrameSample& second, std::int64_t frameRate,
                                bool paused);

}  // namespace tavelle
