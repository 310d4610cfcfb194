#include "platform/linux/told_window.h"

#include <algorithm>

namespace tavelle {
namespace {

Rect withItsOutput(const Rect& frame, std::span<const Rect> outputs) {
  const auto common = [&](const Rect& output) {
    const Rect shared = intersection(frame, output);
    return shared.width * shared.height;
  };
  const auto most = std::max_element(outputs.begin(), outputs.end(),
                                     [&](const Rect& a, const Rect& b) { return common(a) < common(b); });
  return most == outputs.end() || common(*most) == 0 ? frame : around(frame, *most);
}

}  // namespace

// The toolkit gives the program's name, other ways of starting a program that of its desktop entry.
bool isOwnAppId(std::string_view id) { return id == "tavelle" || id == "org.tavelle.Tavelle"; }

std::vector<WindowDescription> hiddenBy(const ToldWindow& window, std::span<const Rect> all) {
  if (window.minimized) return {};
  const bool whole = window.maximized || window.fullscreen;
  std::vector<Rect> places;
  if (window.frame) {
    places.push_back(whole ? withItsOutput(*window.frame, all) : *window.frame);
  } else if (whole) {
    places = window.outputs;
  }
  std::vector<WindowDescription> hidden;
  hidden.reserve(places.size());
  for (const Rect& place : places) {
    hidden.push_back(
        {.layer = window.furniture ? 1 : 0, .owner = window.owner, .alpha = std::nullopt, .bounds = place});
  }
  return hidden;
}

}  // namespace tavelle
