#include "playback/frame_settings.h"

#include <cmath>
#include <optional>
#include <string>

#include "base/text.h"
#include "model/controller.h"
#include "model/settings_keys.h"
#include "platform/user_defaults.h"
#include "playback/page_scripts.h"

namespace tavelle {
namespace {

constexpr std::chrono::milliseconds measurementLength{3000};

/// What a page answered to the sampling script at one moment.
struct FrameSample {
  std::int64_t draws = 0;
  double clockMs = 0;
  std::int64_t canvasWidth = 0;
  std::int64_t canvasHeight = 0;
};

/// A page may answer anything; what is no sensible count reads as 0.
std::int64_t asInteger(double value) { return std::abs(value) < 1e15 ? static_cast<std::int64_t>(value) : 0; }

std::optional<FrameSample> frameSample(const Result<ScriptValue>& answer) {
  const auto numbers = answer ? scriptNumbers(*answer) : std::nullopt;
  if (!numbers || numbers->size() != 4) return std::nullopt;
  return FrameSample{asInteger((*numbers)[0]), (*numbers)[1], asInteger((*numbers)[2]), asInteger((*numbers)[3])};
}

struct Measurement {
  double rate;
  std::string canvas;
};

/// None when no time has passed between the samples.
std::optional<Measurement> measurement(const FrameSample& first, const FrameSample& second) {
  const double elapsed = (second.clockMs - first.clockMs) / 1000;
  if (!(elapsed > 0)) return std::nullopt;
  return Measurement{static_cast<double>(second.draws - first.draws) / elapsed,
                     std::to_string(second.canvasWidth) + "x" + std::to_string(second.canvasHeight)};
}

}  // namespace

FrameSettings Controller::frameSettings() const {
  const UserDefaults& defaults = platform_.defaults;
  FrameSettings settings;
  if (const auto rate = defaults.integer(keys::frameRate); frameRateRange.contains(rate)) settings.frameRate = rate;
  if (const auto scale = defaults.real(keys::resolutionScale); resolutionScaleRange.contains(scale))
    settings.resolutionScale = scale;
  return settings;
}

void Controller::chooseFrameRate(std::int64_t framesPerSecond) {
  platform_.defaults.set(keys::frameRate, framesPerSecond);
  applyFrameSettings();
}

void Controller::chooseResolution(double scale) {
  platform_.defaults.set(keys::resolutionScale, scale);
  applyFrameSettings();
}

void Controller::applyFrameSettings() {
  const FrameSettings settings = frameSettings();
  for (std::size_t i = 0; i < shownScreens(); ++i) {
    WebView& page = *shownScreen(i).webView;
    page.setUserScripts(pageScripts(settings));
    page.evaluate(applyScript(settings), {});
  }
  log("frame rate " + std::to_string(settings.frameRate) + " FPS, resolution " +
      std::to_string(static_cast<int>(settings.resolutionScale * 100)) + "%");
  measureFrameRate();
}

void Controller::measureFrameRate() {
  if (shownScreens() == 0) return;
  shownScreen(0).webView->evaluate(samplingJS, [this](const Result<ScriptValue>& answer) {
    const auto first = frameSample(answer);
    if (!first || shownScreens() == 0) return;
    pending_.after(measurementLength, [this, first = *first, page = std::weak_ptr(shownScreen(0).webView)] {
      // The windows may have been rebuilt meanwhile; a page that has gone is not measured.
      const auto view = page.lock();
      if (!view) return;
      view->evaluate(samplingJS, [this, first](const Result<ScriptValue>& later) {
        const auto second = frameSample(later);
        const auto measured = second ? measurement(first, *second) : std::nullopt;
        if (!measured) return;
        log("measured " + fixedDecimal(measured->rate, 1) + " FPS (setting " +
            std::to_string(frameSettings().frameRate) + (shouldRest(0) ? ", paused" : "") + "), canvas " +
            measured->canvas);
      });
    });
  });
}

}  // namespace tavelle
