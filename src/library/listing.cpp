#include "library/listing.h"

#include <algorithm>
#include <utility>

#include "model/controller.h"
#include "model/settings_keys.h"
#include "platform/text_order.h"
#include "platform/user_defaults.h"
#include "platform/workspace.h"

namespace tavelle {
namespace {

constexpr std::size_t recentsKept = 30;
constexpr std::size_t quickListLength = 3;

}  // namespace

std::vector<Wallpaper> sortedByName(std::vector<Wallpaper> all, const TextOrder& order) {
  // A key for each name costs one collation a name, where comparing in the sort would cost one a comparison.
  std::vector<std::pair<std::string, Wallpaper>> keyed;
  keyed.reserve(all.size());
  for (Wallpaper& each : all) {
    std::string key = order.fileBrowserKey(each.name());
    keyed.emplace_back(std::move(key), std::move(each));
  }
  std::stable_sort(keyed.begin(), keyed.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
  std::transform(keyed.begin(), keyed.end(), all.begin(), [](auto& each) { return std::move(each.second); });
  return all;
}

std::vector<Wallpaper> listWallpapers(const std::filesystem::path& library, const Files& files,
                                      const TextOrder& order) {
  const auto entries = files.list(library, Files::Hidden::skip);
  if (!entries) return {};
  std::vector<Wallpaper> found;
  for (const FileLocation& entry : *entries) {
    Wallpaper wallpaper{entry};
    if (files.exists(wallpaper.page())) found.push_back(std::move(wallpaper));
  }
  return sortedByName(std::move(found), order);
}

std::optional<Wallpaper> findNamed(const std::vector<Wallpaper>& all, const std::string& name, const TextOrder& order) {
  const auto isNamed = order.sameAs(name);
  const auto found = std::find_if(all.begin(), all.end(), [&](const Wallpaper& each) { return isNamed(each.name()); });
  return found == all.end() ? std::nullopt : std::optional(*found);
}

std::vector<std::string> withMostRecent(const std::vector<std::string>& recents, const std::string& name,
                                        const TextOrder& order) {
  std::vector<std::string> result{name};
  std::remove_copy_if(recents.begin(), recents.end(), std::back_inserter(result), order.sameAs(name));
  if (result.size() > recentsKept) result.resize(recentsKept);
  return result;
}

std::vector<Wallpaper> quickList(const std::vector<Wallpaper>& all, const std::optional<Wallpaper>& current,
                                 const std::vector<std::string>& recents, const Files& files, const TextOrder& order) {
  std::vector<Wallpaper> result;
  const auto appendOnce = [&](const Wallpaper& wallpaper) {
    const auto isSame = [&](const Wallpaper& each) { return each.same(wallpaper); };
    if (std::none_of(result.begin(), result.end(), isSame)) result.push_back(wallpaper);
  };

  for (const Wallpaper& each : all) {
    if (!each.same(current)) continue;
    appendOnce(each);
    break;
  }
  std::vector<std::string> names;
  names.reserve(all.size());
  for (const Wallpaper& each : all) names.push_back(order.canonical(each.name()));
  for (const std::string& recent : recents) {
    const auto found = std::find(names.begin(), names.end(), order.canonical(recent));
    if (found != names.end()) appendOnce(all[static_cast<std::size_t>(found - names.begin())]);
  }

  std::vector<std::pair<WallTime, const Wallpaper*>> byAge;
  if (result.size() < quickListLength) {
    for (const Wallpaper& each : all) byAge.emplace_back(each.added(files), &each);
    std::stable_sort(byAge.begin(), byAge.end(), [](const auto& a, const auto& b) { return a.first > b.first; });
  }
  for (const auto& [added, wallpaper] : byAge) {
    if (result.size() >= quickListLength) break;
    appendOnce(*wallpaper);
  }
  if (result.size() > quickListLength) result.erase(result.begin() + quickListLength, result.end());
  return result;
}

void Controller::showFolder() { platform_.workspace.openFolder(library_); }

std::vector<Wallpaper> Controller::wallpapers() const {
  return listWallpapers(library_, platform_.files, platform_.textOrder);
}

void Controller::remember(const Wallpaper& wallpaper) {
  platform_.defaults.set(keys::recentWallpapers, withMostRecent(platform_.defaults.stringArray(keys::recentWallpapers),
                                                                wallpaper.name(), platform_.textOrder));
}

void Controller::takeStoredWallpaper(const std::vector<Wallpaper>& all) {
  current_ = findNamed(all, platform_.defaults.string(keys::wallpaper).value_or(""), platform_.textOrder);
}

void Controller::takeStoredOrFirst(const std::vector<Wallpaper>& all) {
  takeStoredWallpaper(all);
  if (!current_ && !all.empty()) current_ = all.front();
}

std::vector<Wallpaper> Controller::quickList(const std::vector<Wallpaper>& all) const {
  return tavelle::quickList(all, current_, platform_.defaults.stringArray(keys::recentWallpapers), platform_.files,
                            platform_.textOrder);
}

}  // namespace tavelle
