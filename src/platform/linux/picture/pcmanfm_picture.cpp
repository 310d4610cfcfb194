#include "platform/linux/picture/pcmanfm_picture.h"

#include <glib.h>

#include <system_error>

#include "base/text.h"
#include "platform/linux/handles.h"
#include "platform/linux/linux_files.h"
#include "platform/linux/picture/session_bus.h"
#include "platform/linux/standard_paths.h"

namespace tavelle {
namespace {

namespace fs = std::filesystem;

using KeyFilePtr = std::unique_ptr<GKeyFile, FreeWith<g_key_file_unref>>;

constexpr BusMethod setWallpaper{.service = "org.pcmanfm.PCManFM",
                                 .path = "/Application",
                                 .interface = "org.pcmanfm.Application",
                                 .name = "setWallpaper"};
/// Of a picture as large as all monitors together, this leaves every pixel as it is.
constexpr const char* layout = "stretch";

/// Where the picture of these bytes lies: it takes no notice of a file that has changed.
fs::path pictureFile(const std::string& bytes) {
  const GCharPtr sum(g_compute_checksum_for_string(G_CHECKSUM_SHA256, bytes.data(), static_cast<gssize>(bytes.size())));
  return desktopPictureFolder() / (std::string(sum.get(), 16) + ".png");
}

void removeAllBut(const fs::path& file) {
  std::error_code code;
  for (const auto& each : fs::directory_iterator(file.parent_path(), code)) {
    if (each.path() != file) fs::remove(each.path(), code);
  }
}

}  // namespace

Result<void> PcmanfmPicture::set(const fs::path& image, const Screen& screen) {
  if (auto painted = root_.set(image, screen); !painted) return painted;
  const auto png = root_.png();
  if (!png) return png.error();
  const fs::path file = pictureFile(*png);
  if (!isUtf8(file.native())) return Error{"pcmanfm-qt can't be told the path " + escapedUtf8(file.native())};
  LinuxFiles files;
  if (auto made = files.createFolders(file.parent_path()); !made) return made;
  if (auto written = files.write(file, *png, Files::Readers::owner); !written) return written;
  const auto answer =
      callSessionBus(setWallpaper, g_variant_new("(ss)", file.c_str(), layout), "()", BusActivation::onlyRunning);
  if (!answer) return answer.error();
  removeAllBut(file);
  return {};
}

std::optional<std::string> PcmanfmPicture::current(const Screen& screen) const {
  const KeyFilePtr settings(g_key_file_new());
  const fs::path file = fs::path(g_get_user_config_dir()) / "pcmanfm-qt/lxqt/settings.conf";
  g_key_file_load_from_file(settings.get(), file.c_str(), G_KEY_FILE_NONE, nullptr);
  const GCharPtr shown(g_key_file_get_value(settings.get(), "Desktop", "Wallpaper", nullptr));
  if (!shown) return std::nullopt;
  // One of ours is for all screens; what each of them shows in it the root window's record tells.
  return fs::path(shown.get()).parent_path() == desktopPictureFolder() ? root_.current(screen)
                                                                       : std::optional<std::string>(shown.get());
}

}  // namespace tavelle
