#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "model/controller.h"
#include "model/settings_keys.h"
#include "platform/files.h"
#include "platform/text_order.h"
#include "platform/user_defaults.h"

namespace tavelle {
void Controller::seedLibraryIfEmpty() {
  // When the library cannot be made, each copy below says so.
  static_cast<void>(platform_.files.createFolders(library_));
  platform_.files.sweep(library_);
  if (!platform_.resources) return;
  auto samples = platform_.files.list(*platform_.resources / "Wallpapers", Files::Hidden::skip);
  if (!samples) return;

  const auto precedes = [this](const std::string& a, const std::string& b) {
    return platform_.textOrder.canonical(a) < platform_.textOrder.canonical(b);
  };
  const auto stored = platform_.defaults.stringArray(keys::seededWallpapers);
  std::set<std::string, decltype(precedes)> seeded(stored.begin(), stored.end(), precedes);

  std::vector<Wallpaper> inNameOrder;
  for (FileLocation& sample : std::move(samples).value()) inNameOrder.push_back({std::move(sample)});
  std::stable_sort(inNameOrder.begin(), inNameOrder.end(),
                   [&](const Wallpaper& a, const Wallpaper& b) { return precedes(a.name(), b.name()); });

  for (const Wallpaper& sample : inNameOrder) {
    const std::string name = sample.name();
    if (seeded.contains(name)) continue;
    const auto target = library_ / sample.folder.path.filename();
    if (!platform_.files.exists(target)) {
      if (const auto copied = platform_.files.copy(sample.folder.path, target); !copied) {
        log("couldn't add " + name + ": " + copied.error().description);
        continue;
      }
      log("added the bundled " + name + " wallpaper");
    }
    seeded.insert(name);
  }
  platform_.defaults.set(keys::seededWallpapers, std::vector<std::string>(seeded.begin(), seeded.end()));
}

}  // namespace tavelle
