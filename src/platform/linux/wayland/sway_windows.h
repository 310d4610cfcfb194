#pragma once

#include <filesystem>

#include "platform/linux/sway/sway_connection.h"
#include "platform/linux/wayland/wayland_windows.h"

namespace tavelle {

/// The windows as sway lists them. None while it doesn't answer. One look takes one question.
class SwayWindows final : public WaylandWindows {
 public:
  /// `socket` is where sway answers.
  SwayWindows(std::filesystem::path socket, const Monitors& monitors)
      : monitors_(monitors), socket_(socket), client_(std::move(socket)) {}

  std::optional<std::vector<WindowDescription>> onScreen() const override;
  Registration onChange(std::function<void()> changed) override;

 private:
  const Monitors& monitors_;
  const std::filesystem::path socket_;
  mutable SwayClient client_;
};

/// What panels leave of the workspaces that sway shows. The whole monitors while it doesn't answer.
class SwayWorkAreas final : public WorkAreas {
 public:
  /// `socket` is where sway answers.
  SwayWorkAreas(std::filesystem::path socket, const Monitors& monitors)
      : monitors_(monitors), client_(std::move(socket)) {}

  std::vector<Rect> of(const std::vector<GdkMonitor*>& monitors) const override;

 private:
  const Monitors& monitors_;
  mutable SwayClient client_;
};

}  // namespace tavelle
