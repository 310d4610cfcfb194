// Runs the page scripts in the web engine's own JavaScript, on a display that this test simulates.

#include "playback/page_scripts.h"

#include <gtest/gtest.h>

#include "fakes/java_script.h"

namespace tavelle {
namespace {

/// A window with as much of a page as the scripts use. `run(ms, hz)` lets time pass on the display.
constexpr auto simulatedWindow = R"js(
  var now = 0, natives = [], events = [], timers = [], posted = [];
  var window = this;
  window.requestAnimationFrame = cb => { natives.push(cb); return natives.length; };
  window.dispatchEvent = e => { events.push(e.type); };
  window.Event = function (type) { this.type = type; };
  window.addEventListener = () => {};
  window.webkit = { messageHandlers: { log: { postMessage: text => posted.push(text) } } };
  var console = {};
  function setTimeout(cb) { timers.push(cb); }
  function run(ms, hz) {
    for (const end = now + ms; now < end; now += 1000 / hz) {
      const due = natives; natives = [];
      due.forEach(cb => cb(now));
    }
  }
  // An animation loop as pages write it; `draws` holds the display frame of each draw.
  var draws = [];
  function animate(hz) {
    const loop = t => { draws.push(Math.round(t * hz / 1000)); window.requestAnimationFrame(loop); };
    window.requestAnimationFrame(loop);
  }
  var spacings = () => draws.slice(1).map((d, i) => d - draws[i]);
)js";

struct Page : JavaScript {
  explicit Page(const FrameSettings& settings) {
    evaluate(simulatedWindow);
    for (const auto& script : pageScripts(settings)) evaluate(script);
  }
};

TEST(PageScripts, DrawsAtTheChosenRateInEvenSpacesOnAnyDisplay) {
  // The last one is within 3 % of 7.2, and in whole frames.
  for (const auto& [rate, hz, pattern] : {std::tuple(60, 60, "[1]"),
                                          {50, 60, "[1,1,2,1,1]"},
                                          {20, 60, "[3]"},
                                          {60, 144, "[2,3,2,3,2]"},
                                          {20, 144, "[7]"}}) {
    Page page({rate, 1.0});
    const std::string display = std::to_string(hz);
    page.evaluate("animate(" + display + "); run(3000, " + display + ")");
    // The same cycle over and over, from wherever in it the last draws begin.
    const std::string repeats = page.evaluate("(() => { const p = " + std::string(pattern) +
                                              ", s = spacings().slice(-40);"
                                              "return p.some((_, o) => s.every((d, i) => d === p[(i + o) % p.length])) "
                                              "|| s; })()");
    EXPECT_EQ(repeats, "true") << rate << " FPS on " << hz << " Hz";
  }
}

TEST(PageScripts, CallsBackOnce) {
  using Case = std::tuple<const char*, const char*, const char*, const char*>;
  for (const auto& [what, script, seen, wanted] : std::initializer_list<Case>{
           {"a loop that is queued twice, with one native request at a time",
            "var calls = 0; const cb = () => { calls++; requestAnimationFrame(cb); requestAnimationFrame(cb); };"
            "cb(); calls = 0; run(100, 60)",
            "[calls === tavelle.frames, natives.length]", "[true,1]"},
           {"a cancelled callback, for which nothing is asked of the display",
            "cancelAnimationFrame(requestAnimationFrame(() => { posted.push('ran') })); run(100, 60)",
            "[posted, natives.length]", "[[],0]"},
           {"one that throws",
            "requestAnimationFrame(() => { throw new Error('boom') });"
            "requestAnimationFrame(() => posted.push('second')); run(50, 60)",
            "[posted, timers.map(t => { try { t() } catch (e) { return e.message } })]", R"([["second"],["boom"]])"}}) {
    Page page({60, 1.0});
    page.evaluate(script);
    EXPECT_EQ(page.evaluate(seen), wanted) << what;
  }
}

TEST(PageScripts, ChangesSettingsInALoadedPage) {
  Page page({60, 1.0});
  page.evaluate("var moments = []; window.wallpaper = { renderAt: t => { moments.push(t); throw new Error('no') } };");
  page.evaluate("var first = tavelle; tavelle.set(30, 0.5)");
  EXPECT_EQ(page.evaluate("[moments, events]"), R"([[],["resize"]])") << "nothing was drawn that could be drawn again";
  page.evaluate("animate(60); run(1000, 60); events = []");
  page.evaluate(applyScript({20, 0.5}));
  EXPECT_EQ(page.evaluate("[tavelle.fps, events]"), "[20,[]]") << "the scale is the same";
  page.evaluate(applyScript({20, 0.35}));
  EXPECT_EQ(page.evaluate("[tavelle.scale, events, moments.length]"), R"([0.35,["resize"],1])");
  // The scripts again in the same page: settings, not a second wrapping.
  page.evaluate(pageScripts({50, 1.0}).at(1));
  EXPECT_EQ(page.evaluate("[tavelle === first, tavelle.fps]"), "[true,50]");
}

TEST(PageScripts, TakesALongGapForAMissedFrameAndManyForASlowerDisplay) {
  Page page({30, 1.0});
  page.evaluate("animate(60); run(2000, 60); now += 300; draws = []; run(2000, 60)");
  EXPECT_EQ(page.evaluate("spacings().slice(3).every(d => d === 2)"), "true") << "nothing is caught up";
  page.evaluate("run(4000, 30); var before = window.tavelle.frames; run(3000, 30)");
  EXPECT_NEAR(std::stod(page.evaluate("window.tavelle.frames - before")) / 3, 30, 1);
}

}  // namespace
}  // namespace tavelle
