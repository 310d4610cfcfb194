#include "coverage/coverage_report.h"

#include <ostream>

#include "base/text.h"
#include "coverage/coverage.h"
#include "platform/screens.h"

namespace tavelle {

void reportCoverage(const Screens& screens, const WindowList& windows, std::int32_t ownProcess, std::ostream& out) {
  const auto rects = otherWindowRects(windows, ownProcess);
  int number = 0;
  for (const Screen& screen : screens.list()) {
    const double covered = coverage(screen, rects);
    out << "screen " << ++number << ": " << fixedDecimal(covered * 100, 1) << "% covered by " << rects.size()
        << " windows -> " << (countsAsCovered(covered) ? "paused" : "playing") << '\n';
  }
}

}  // namespace tavelle
