// The coverage of one screen, beside the plain way: testing each sample point against each window.

#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "coverage/coverage.h"
#include "platform/screens.h"

namespace tavelle {
namespace {

constexpr Rect bounds{0, 0, 1920, 1080};
const Screen screen{"screen", bounds, {0, 0, 1920, 1050}, bounds};

std::vector<Rect> someWindows(std::int64_t count) {
  std::mt19937 random(4);
  const auto upTo = [&](double end) { return std::uniform_real_distribution(0.0, end)(random); };
  std::vector<Rect> windows(static_cast<std::size_t>(count));
  for (Rect& window : windows) window = {upTo(1800), upTo(1000), 50 + upTo(900), 50 + upTo(700)};
  return windows;
}

void coverageOfOneScreen(benchmark::State& state) {
  const auto windows = someWindows(state.range(0));
  for (auto _ : state) benchmark::DoNotOptimize(coverage(screen, windows));
}

void pointByPoint(benchmark::State& state) {
  const auto windows = someWindows(state.range(0));
  for (auto _ : state) {
    int covered = 0;
    for (int point = 0; point < 1440; ++point) {
      const double x = (point % 48 + 0.5) * 1920 / 48;
      const double y = 30 + (point / 48 + 0.5) * 1050 / 30;
      covered += std::any_of(windows.begin(), windows.end(), [&](const Rect& window) {
        return window.x <= x && x < window.maxX() && window.y <= y && y < window.maxY();
      });
    }
    benchmark::DoNotOptimize(covered);
  }
}

BENCHMARK(coverageOfOneScreen)->Arg(20)->Arg(500)->Unit(benchmark::kMicrosecond);
BENCHMARK(pointByPoint)->Arg(20)->Arg(500)->Unit(benchmark::kMicrosecond);

}  // namespace
}  // namespace tavelle
