#include "app/command_line.h"

#include <algorithm>
#include <array>
#include <ostream>
#include <string_view>

#include "platform/desktop_picture.h"
#include "platform/screens.h"

namespace tavelle {
namespace {

struct Option {
  std::string_view name;
  /// The least number of arguments, the option among them.
  std::size_t count;
  Mode mode;
};

constexpr std::array<Option, 5> options{{{"--set-still", 2, Mode::setStill},
                                         {"--delete-wallpaper", 2, Mode::deleteWallpaper},
                                         {"--sync-spaces", 2, Mode::syncSpaces},
                                         {"--coverage", 1, Mode::coverage},
                                         {"--preview-menu", 2, Mode::previewMenu}}};

}  // namespace

std::optional<Mode> commandLineMode(const std::vector<std::string>& arguments) {
  const auto found = std::find_if(options.begin(), options.end(), [&](const Option& option) {
    return arguments.size() >= option.count && arguments.front() == option.name;
  });
  return found == options.end() ? std::nullopt : std::optional(found->mode);
}

int setStill(const std::filesystem::path& image, const Screens& screens, DesktopPicture& desktopPicture,
             std::ostream& out, std::ostream& err) {
  bool failed = false;
  for (const Screen& screen : screens.list()) {
    if (const auto result = desktopPicture.set(image, screen); !result) {
      err << "failed: " << result.error().description << '\n';
      failed = true;
    }
  }
  out << (failed ? "desktop picture failed\n" : "desktop picture set\n");
  return failed ? 1 : 0;
}

}  // namespace tavelle
