#include <gtest/gtest.h>

#include "fakes/fake_platform.h"
#include "model/controller.h"

namespace tavelle {
namespace {

using enum LoginItemStatus;

TEST(OpenAtLogin, FlipsTheRegistration) {
  using Case = std::tuple<LoginItemStatus, LoginItemStatus, LoginItemStatus, const char*>;
  for (const auto& [before, whenRegistered, after, line] :
       std::initializer_list<Case>{{notRegistered, enabled, enabled, "open at login: true"},
                                   {requiresApproval, enabled, enabled, "open at login: true"},
                                   {notRegistered, requiresApproval, requiresApproval, "open at login: false"},
                                   {enabled, enabled, notRegistered, "open at login: false"}}) {
    FakePlatform platform;
    platform.loginItem.now = before;
    platform.loginItem.whenRegistered = whenRegistered;
    Controller(platform).toggleLogin();
    EXPECT_EQ(platform.loginItem.now, after) << line;
    EXPECT_EQ(platform.log(), Lines{line});
    EXPECT_TRUE(platform.alerts.shown.empty());
  }
}

TEST(OpenAtLogin, TellsWhatWentWrong) {
  FakePlatform platform;
  platform.loginItem.trouble = "the disk is full";
  Controller(platform).toggleLogin();
  EXPECT_EQ(platform.log(), Lines{"open at login failed: the disk is full"});
  EXPECT_EQ(platform.alerts.shown.at(0).message, "Couldn't turn on Open at Login");
  EXPECT_EQ(platform.alerts.shown.at(0).information,
            "Add Tavelle in System Settings > General > Login Items instead.\n\nthe disk is full");
}

}  // namespace
}  // namespace tavelle
