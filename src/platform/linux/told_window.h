#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "base/geometry.h"
#include "platform/window_list.h"

namespace tavelle {

/// What a compositor tells of a window that it does not let others look at. Rectangles are all in one space, y down.
struct ToldWindow {
  bool minimized = false;
  bool maximized = false;
  bool fullscreen = false;
  /// Whether it belongs to the desktop's furniture, as panels do, rather than to an application.
  bool furniture = false;
  /// The process that it belongs to.
  std::optional<std::int32_t> owner = {};
  /// Where it is, with its title bar.
  std::optional<Rect> frame = {};
  /// The whole outputs that it is told to be on.
  std::vector<Rect> outputs = {};

  friend bool operator==(const ToldWindow&, const ToldWindow&) = default;
};

/// Whether a window's application id, as Wayland has it, is this program's.
bool isOwnAppId(std::string_view id);

/// What it hides. A maximised or full-screen window hides the whole of its output, since where panels are these
/// compositors don't tell: of the `outputs` all told ones, or, when its frame is told, the one of `all` that most of it
/// is on. Another window hides its frame, and nothing that is known when that is not told. Empty for a minimised one.
std::vector<WindowDescription> hiddenBy(const ToldWindow& window, std::span<const Rect> all);

}  // namespace tavelle
