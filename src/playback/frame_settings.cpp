#include "playback/frame_settings.h"

#include <cmath>
#include <optional>
#include <string>

#include "base/text.h"
#include "model/controller.h"
#include "platform/user_defaults.h"
#include "playback/page_scripts.h"
#include "playback/script_value.h"

namespace tavelle {
namespace {

constexpr auto frameRateKey = "fps";
constexpr auto resolutionKey = "resolutionScale";
constexpr double measurementLength = 3.0;

/// A page may answer anything; what is no sensible count reads as 0.
std::int64_t asInteger(double value) { return std::abs(value) < 1e15 ? static_cast<std::int64_t>(value) : 0; }

std::optional<FrameSample> frameSample(const Result<ScriptValue>& answer) {
  const auto numbers = answer ? scriptNumbers(*answer) : std::nullopt;
  if (!numbers || numbers->size() != 4) return std::nullopt;
  return FrameSample{asInteger((*numbers)[0]), (*numbers)[1], asInteger((*numbers)[2]), asInteger((*numbers)[3])};
}

}  // namespace

FrameSettings Controller::frameSettings() const {
  const UserDefaults& defaults = platform_.defaults;
  FrameSettings settings;
  if (const auto rate = defaults.integer(frameRateKey); rate >= 20 && rate <= 60) settings.frameRate = rate;
  if (const auto scale = defaults.real(resolutionKey); scale >= 0.25 && scale <= 1.0) settings.resolutionScale = scale;
  return settings;
}

void Controller::chooseFrameRate(std::int64_t framesPerSecond) {
  platform_.defaults.set(frameRateKey, framesPerSecond);
  applyFrameSettings();
}

void Controller::chooseResolution(double scale) {
  platform_.defaults.set(resolutionKey, scale);
  applyFrameSettings();
}

void Controller::applyFrameSettings() {
  const FrameSettings settings = frameSettings();
  for (const auto& webView : webViews_) {
    webView->setUserScripts(pageScripts(settings));
    webView->evaluate(applyScript(settings), {});
  }
  log("frame rate " + std::to_string(settings.frameRate) + " FPS, resolution " +
      std::to_string(static_cast<int>(settings.resolutionScale * 100)) + "%");
  measureFrameRate();
}

void Controller::measureFrameRate() {
  if (webViews_.empty()) return;
  webViews_.front()->evaluate(samplingJS, [this](const Result<ScriptValue>& answer) {
    const auto first = frameSample(answer);
    if (!first || webViews_.empty()) return;
    pending_.after(measurementLength, [this, first = *first, page = std::weak_ptr(webViews_.front())] {
      // The windows may have been rebuilt meanwhile; a page that has gone is not measured.
      const auto view = page.lock();
      if (!view) return;
      view->evaluate(samplingJS, [this, first](const Result<ScriptValue>& later) {
        if (const auto second = frameSample(later)) finishMeasurement(first, *second);
      });
    });
  });
}

void Controller::finishMeasurement(const FrameSample& first, const FrameSample& second) {
  const double elapsed = (second.clockMs - first.clockMs) / 1000;
  if (!(elapsed > 0)) return;
  const double rate = static_cast<double>(second.draws - first.draws) / elapsed;
  log("measured " + fixedDecimal(rate, 1) + " FPS (setting " + std::to_string(frameSettings().frameRate) +
      (shouldRest(0) ? ", paused" : "") + "), canvas " + std::to_string(second.canvasWidth) + "x" +
      std::to_string(second.canvasHeight));
}

}  // namespace tavelle
