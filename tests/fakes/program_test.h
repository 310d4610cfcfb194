#pragma once

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {

/// The program on a fake desktop, not yet launched.
struct ProgramTest : testing::Test {
  /// Launches it, and forgets what it logs about that.
  void launch() {
    controller.applicationDidFinishLaunching();
    platform.files.put("/home/Library/Logs/Tavelle.log");
  }
  void end() { running.reset(); }
  Wallpaper wallpaper(const std::string& name) const { return {{controller.library() / name}}; }

  FakePlatform platform;
  std::optional<Controller> running{std::in_place, platform};
  Controller& controller = *running;
};

}  // namespace tavelle
