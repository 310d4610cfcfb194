#include "platform/linux/struts.h"

#include <algorithm>

namespace tavelle {
namespace {

bool meets(const Strut& strut, double start, double end) { return strut.from < end && strut.to > start; }

}  // namespace

Rect workArea(const Rect& monitor, double pictureWidth, double pictureHeight, std::span<const Strut> struts) {
  double left = monitor.x;
  double right = monitor.maxX();
  double top = monitor.y;
  double bottom = monitor.maxY();
  const auto between = [](double place, double start, double end) { return start < place && place < end; };
  for (const Strut& strut : struts) {
    const bool upright = strut.edge == Strut::Edge::left || strut.edge == Strut::Edge::right;
    if (!(upright ? meets(strut, monitor.y, monitor.maxY()) : meets(strut, monitor.x, monitor.maxX()))) continue;
    const double fromFarEdge = (upright ? pictureWidth : pictureHeight) - strut.depth;
    switch (strut.edge) {
      case Strut::Edge::left:
        if (between(strut.depth, monitor.x, monitor.maxX())) left = std::max(left, strut.depth);
        break;
      case Strut::Edge::right:
        if (between(fromFarEdge, monitor.x, monitor.maxX())) right = std::min(right, fromFarEdge);
        break;
      case Strut::Edge::top:
        if (between(strut.depth, monitor.y, monitor.maxY())) top = std::max(top, strut.depth);
        break;
      case Strut::Edge::bottom:
        if (between(fromFarEdge, monitor.y, monitor.maxY())) bottom = std::min(bottom, fromFarEdge);
        break;
    }
  }
  return {left, top, std::max(0.0, right - left), std::max(0.0, bottom - top)};
}

}  // namespace tavelle
