#include "platform/linux/autostart_entry.h"

#include <gio/gdesktopappinfo.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <regex>

#include "fakes/temporary_folder.h"
#include "platform/linux/handles.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;
using enum LoginItemStatus;

struct Autostart : testing::Test {
  Autostart() { put(program, "#!/bin/sh\n"); }
  static void put(const fs::path& file, const std::string& content) {
    fs::create_directories(file.parent_path());
    std::ofstream(file) << content;
    chmod(file.c_str(), 0755);
  }
  AutostartEntry entryFor(const fs::path& executable) const { return {{home, system}, executable}; }

  TemporaryFolder folder;
  const fs::path home = folder.path() / "home/autostart";
  const fs::path system = folder.path() / "system/autostart";
  const fs::path users = home / "tavelle.desktop";
  const fs::path systems = system / "tavelle.desktop";
  const fs::path program = folder.path() / "bin/tavelle";
  AutostartEntry item = entryFor(program);
  const std::string head = "[Desktop Entry]\nType=Application\nName=T\n";
};

TEST_F(Autostart, TellsWhatTheSessionWillDo) {
  const std::string run = head + "Exec=true --now\n";
  // The user's entry, the system's; the status as it is, once registered, once unregistered.
  using Case = std::tuple<std::string, std::string, LoginItemStatus, LoginItemStatus, LoginItemStatus>;
  for (const auto& [own, others, status, registered, unregistered] : std::initializer_list<Case>{
           {"", "", notRegistered, enabled, notRegistered},
           {run, "", enabled, enabled, notRegistered},
           {run + "Hidden=true\n", run, notRegistered, enabled, notRegistered},
           {run + "Hidden=false\nX-GNOME-Autostart-enabled=true\n", "", enabled, enabled, notRegistered},
           {run + "X-MATE-Autostart-enabled=false\n", "", requiresApproval, enabled, notRegistered},
           {run + "OnlyShowIn=Elsewhere;\n", "", requiresApproval, requiresApproval, notRegistered},
           {head + "Exec=/gone/tavelle\n", "", notFound, enabled, notRegistered},
           {run + "TryExec=/gone/tavelle\n", "", notFound, enabled, notRegistered},
           {head + "Exec=\"unfinished\n", "", notFound, enabled, notRegistered},
           {"[Other Group]\n", "", notFound, notFound, notFound},
           {"", run + "X-GNOME-Autostart-enabled=false\n", requiresApproval, enabled, notRegistered}}) {
    SCOPED_TRACE(own + others);
    for (const bool registers : {true, false}) {
      fs::remove_all(home);
      fs::remove_all(system);
      if (!own.empty()) put(users, own);
      if (!others.empty()) put(systems, others);
      EXPECT_EQ(item.status(), status);
      const auto wanted = registers ? registered : unregistered;
      EXPECT_EQ(static_cast<bool>(registers ? item.registerApplication() : item.unregister()), wanted != notFound);
      EXPECT_EQ(item.status(), wanted);
      EXPECT_TRUE(wanted != notFound || contentOf(users) == own);
      EXPECT_EQ(contentOf(systems), others);
    }
  }
}

TEST_F(Autostart, KeepsWhatOthersWroteIntoIt) {
  const std::string kept = "# mine\n\n" + head + "Name[de]=Tapete\nExec=env LANG=C " + program.native() +
                           " # later\nX-GNOME-Autostart-Delay=5\nOnlyShowIn=KDE;XFCE;\n\n[Desktop Action a]\nName=A\n";
  put(folder.path() / "dotfiles", kept);
  fs::create_directories(home);
  fs::create_symlink(folder.path() / "dotfiles", users);
  for (int i = 0; i < 3; ++i) {
    ASSERT_TRUE(item.unregister());
    EXPECT_NE(contentOf(users), kept);
    ASSERT_TRUE(item.registerApplication());
  }
  EXPECT_EQ(contentOf(folder.path() / "dotfiles"), kept);
  EXPECT_TRUE(fs::is_symlink(users));
}

TEST_F(Autostart, StartsTheProgramWhereverItIs) {
  for (const std::string name :
       {"plain", "two words", "a\"b'c", "a\\b\\\\", "$HOME `x`", "100%", "%f %%", "a;b#c=d", "é\tü"}) {
    const fs::path executable = folder.path() / name / "tavelle";
    put(executable, "#!/bin/sh\n");
    auto entry = entryFor(executable);
    ASSERT_TRUE(entry.registerApplication());
    EXPECT_EQ(entry.status(), enabled) << contentOf(users);
    const std::unique_ptr<GKeyFile, FreeWith<g_key_file_unref>> keys(g_key_file_new());
    g_key_file_load_from_file(keys.get(), users.c_str(), G_KEY_FILE_NONE, nullptr);
    const GCharPtr command(g_key_file_get_string(keys.get(), "Desktop Entry", "Exec", nullptr));
    ASSERT_TRUE(command);
    // What a session makes of a percent sign; one that stands alone would be a field code.
    const std::string line = std::regex_replace(command.get(), std::regex("%(.)"), "$1");
    char** words = nullptr;
    ASSERT_TRUE(g_shell_parse_argv(line.c_str(), nullptr, &words, nullptr)) << line;
    const std::unique_ptr<char*, FreeWith<g_strfreev>> owned(words);
    EXPECT_EQ(words[0], executable.native());
    EXPECT_FALSE(words[1]);
    // GLib looks for the program without taking a doubled percent sign for one.
    EXPECT_TRUE(name.find('%') != name.npos || adopt(g_desktop_app_info_new_from_filename(users.c_str()))) << name;
    EXPECT_TRUE(entry.unregister() && fs::is_empty(home)) << "its own entry goes";
  }
}

}  // namespace
}  // namespace tavelle
