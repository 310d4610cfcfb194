#include "playback/page_scripts.h"

#include "base/text.h"

namespace tavelle {
namespace {

struct Writer {
  std::string operator()(std::monostate) const { return "nil"; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(double value) const { return scriptDecimal(value); }
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(const ScriptObject& object) const { return object.json; }
  std::string operator()(const ScriptArray& elements) const {
    std::string text;
    for (const ScriptValue& element : elements) text += (text.empty() ? "" : ", ") + scriptText(element);
    return "[" + text + "]";
  }
};

}  // namespace

constexpr std::string_view errorJS =
    R"js(window.addEventListener('error', e => window.webkit.messageHandlers.log.postMessage('js error: ' + e.message));
(() => { const original = console.error; console.error = (...a) => { window.webkit.messageHandlers.log.postMessage('console.error: ' + a.join(' ')); original(...a); }; })();)js";

constexpr std::string_view framesJS = R"js(function (w, fps, scale) {
  // Tavelle's Frame Rate and Resolution settings, for any wallpaper page.
  // It wraps requestAnimationFrame, so a page's animation loop runs at the chosen rate (20 to 60 FPS)
  // without changes, and pages that size their canvas by window.tavelle.scale render fewer pixels.
  const clampF = f => Math.max(20, Math.min(60, Math.round(+f) || 60));
  const clampS = s => Math.max(0.25, Math.min(1, +s || 1));
  if (w.tavelle) { w.tavelle.set(fps, scale); return w.tavelle; }
  const raf = w.requestAnimationFrame.bind(w);
  let queue = new Map(), nextId = 0, pending = 0;
  let frame = 1000 / 60, prev = -1e9, samples = 0, slow = 0, lastDraw = -1e9, need = 0, carry = 0;
  const tv = w.tavelle = {
    fps: clampF(fps), scale: clampS(scale), frames: 0,
    set(f, s) {
      tv.fps = clampF(f);
      const before = tv.scale;
      tv.scale = clampS(s);
      if (tv.scale === before) return;
      w.dispatchEvent(new w.Event('resize'));
      // resizing clears the canvas, so draw the current moment again right away (it may be paused)
      try { if (lastDraw > 0 && w.wallpaper && w.wallpaper.renderAt) w.wallpaper.renderAt(lastDraw / 1000); } catch (e) {}
    }
  };
  function pump(now) {
    pending = 0;
    const d = now - prev;
    prev = now;
    // the display's frame time, smoothed; a long gap is a missed frame, unless they keep coming (a slower display)
    if (d > 2 && d < 70) {
      slow = d > frame * 1.4 ? slow + 1 : 0;
      if (!slow || slow > 8) frame += (d - frame) * (samples++ < 20 ? 0.3 : 0.1);
    }
    // Draw every `ratio` display frames: a whole number when the rate divides the display's (30 on 60 Hz),
    // or an even mix of two spacings when it doesn't (50 FPS on 60 Hz: 1, 1, 2, 1, 1).
    let ratio = 1000 / tv.fps / frame;
    if (Math.abs(ratio - Math.round(ratio)) < ratio * 0.03) ratio = Math.round(ratio);
    ratio = Math.max(1, ratio);
    const n = Math.round((now - lastDraw) / frame);
    if (n >= need) {
      if (n > need + 1) carry = 0;   // after a pause or a slow frame, start fresh instead of catching up
      need = Math.max(1, Math.round(ratio + carry));
      carry += ratio - need;
      lastDraw = now;
      const run = queue, done = new Set();
      queue = new Map();
      tv.frames++;
      run.forEach(cb => {
        if (done.has(cb)) return;   // a loop queued twice still draws once
        done.add(cb);
        try { cb(now); } catch (e) { setTimeout(() => { throw e; }); }
      });
    }
    if (queue.size && !pending) pending = raf(pump);
  }
  w.requestAnimationFrame = cb => { queue.set(++nextId, cb); if (!pending) pending = raf(pump); return nextId; };
  w.cancelAnimationFrame = id => { queue.delete(id); };
  return tv;
})js";

constexpr std::string_view pauseJS =
    "window.wallpaper && wallpaper.pause(); document.querySelectorAll('video').forEach(v => v.pause());";

constexpr std::string_view playJS =
    "window.wallpaper && wallpaper.play(); document.querySelectorAll('video').forEach(v => v.play());";

constexpr std::string_view probeJS =
    "JSON.stringify({title: document.title, size: [innerWidth, innerHeight, devicePixelRatio]})";

constexpr std::string_view samplingJS =
    "window.tavelle ? [tavelle.frames, performance.now(), (document.querySelector('canvas') || {}).width || 0, "
    "(document.querySelector('canvas') || {}).height || 0] : 0";

std::string applyScript(const FrameSettings& settings) {
  return "window.tavelle && tavelle.set(" + std::to_string(settings.frameRate) + ", " +
         shortestDecimal(settings.resolutionScale) + "); 0";
}

std::vector<std::string> pageScripts(const FrameSettings& settings) {
  return {std::string(errorJS), "(" + std::string(framesJS) + ")(window, " + std::to_string(settings.frameRate) + ", " +
                                    shortestDecimal(settings.resolutionScale) + ");"};
}

std::string scriptText(const ScriptValue& value) { return std::visit(Writer{}, value.value); }

std::optional<std::vector<double>> scriptNumbers(const ScriptValue& value) {
  const auto* elements = std::get_if<ScriptArray>(&value.value);
  if (!elements) return std::nullopt;
  std::vector<double> numbers;
  for (const ScriptValue& element : *elements) {
    const double* number = std::get_if<double>(&element.value);
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  return numbers;
}

}  // namespace tavelle
