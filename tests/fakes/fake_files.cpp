#include "fakes/fake_files.h"

#include <algorithm>

namespace tavelle {
namespace {

namespace fs = std::filesystem;

bool isBelow(const fs::path& path, const fs::path& folder) {
  const auto [end, rest] = std::mismatch(folder.begin(), folder.end(), path.begin(), path.end());
  return end == folder.end();
}

}  // namespace

Result<std::vector<FileLocation>> FakeFiles::list(const fs::path& folder, Hidden hidden) const {
  const auto found = objects_.find(folder);
  if (found == objects_.end() || !found->second.folder) return Error{"no such folder"};
  std::vector<FileLocation> entries;
  for (const auto& [path, object] : objects_) {
    if (path.parent_path() != folder || path == folder) continue;
    if (hidden == Hidden::skip && path.filename().native().starts_with(".")) continue;
    entries.push_back({path, created(path)});
  }
  return entries;
}

std::optional<WallTime> FakeFiles::created(const fs::path& path) const {
  const auto found = objects_.find(path);
  return found == objects_.end() || undated.contains(path) ? std::nullopt : std::optional(found->second.created);
}

Result<void> FakeFiles::createFolders(const fs::path& folder) {
  if (const auto found = objects_.find(folder); found != objects_.end()) {
    return found->second.folder ? Result<void>() : Error{"in the way"};
  }
  if (auto parent = createFolders(folder.parent_path()); !parent) return parent;
  return make(folder, {true, {}, {}});
}

Result<void> FakeFiles::copy(const fs::path& from, const fs::path& to) {
  if (!exists(from)) return Error{"no such file"};
  if (exists(to)) return Error{"exists already"};
  const auto originals = objects_;
  for (const auto& [path, object] : originals) {
    if (!isBelow(path, from)) continue;
    const fs::path relative = path.lexically_relative(from);
    if (auto made = make(relative == "." ? to : to / relative, object); !made) return made;
  }
  return {};
}

Result<void> FakeFiles::copyFile(const fs::path& from, const fs::path& to) {
  if (const auto found = objects_.find(from); found != objects_.end() && found->second.folder)
    return Error{"not a file"};
  return copy(from, to);
}

Result<void> FakeFiles::trash(const fs::path& path) {
  if (!exists(path) || isBroken(path)) return Error{"can't trash"};
  remove(path);
  return {};
}

Result<std::string> FakeFiles::read(const fs::path& path) const {
  const auto found = objects_.find(path);
  if (found == objects_.end() || found->second.folder || isBroken(path)) return Error{"can't read"};
  return found->second.content;
}

Result<void> FakeFiles::write(const fs::path& path, std::string_view bytes) {
  if (const auto found = objects_.find(path); found != objects_.end() && found->second.folder)
    return Error{"in the way"};
  return make(path, {false, std::string(bytes), {}});
}

Result<void> FakeFiles::append(const fs::path& path, std::string_view bytes) {
  const auto found = objects_.find(path);
  if (found == objects_.end()) return make(path, {false, std::string(bytes), {}});
  if (found->second.folder || isBroken(path)) return Error{"can't open"};
  found->second.content += bytes;
  return {};
}

void FakeFiles::put(const fs::path& path, std::string content) {
  const auto unbroken = std::exchange(broken, {});
  const auto writable = std::exchange(full, {});
  static_cast<void>(createFolders(path.parent_path()));
  objects_.erase(path);
  static_cast<void>(append(path, content));
  broken = unbroken;
  full = writable;
}

void FakeFiles::remove(const fs::path& path) {
  std::erase_if(objects_, [&](const auto& object) { return isBelow(object.first, path); });
}

std::optional<std::string> FakeFiles::content(const fs::path& path) const {
  const auto found = objects_.find(path);
  return found == objects_.end() ? std::nullopt : std::optional(found->second.content);
}

Result<void> FakeFiles::make(const fs::path& path, Object object) {
  const auto parent = objects_.find(path.parent_path());
  if (parent == objects_.end() || !parent->second.folder) return Error{"no such folder"};
  if (isBroken(path) || full.contains(path)) return Error{"disk full"};
  object.created = now_ += std::chrono::seconds(1);
  objects_.insert_or_assign(path, std::move(object));
  return {};
}

bool FakeFiles::isBroken(const fs::path& path) const {
  return std::any_of(broken.begin(), broken.end(), [&](const fs::path& each) { return isBelow(path, each); });
}

}  // namespace tavelle
