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
  if (!isFolder(folder)) return Error{"no such folder"};
  std::vector<FileLocation> entries;
  for (const auto& [path, object] : objects_) {
    if (path.parent_path() != folder || path == folder) continue;
    if (hidden == Hidden::skip && path.filename().native().starts_with(".")) continue;
    entries.push_back({path, object.created});
  }
  return entries;
}

std::optional<WallTime> FakeFiles::created(const fs::path& path) const {
  return exists(path) ? std::optional(objects_.at(path).created) : std::nullopt;
}

Result<void> FakeFiles::createFolders(const fs::path& folder) {
  if (isFolder(folder)) return {};
  if (exists(folder)) return Error{"in the way"};
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
  return isFolder(from) ? Error{"not a file"} : copy(from, to);
}

Result<std::string> FakeFiles::read(const fs::path& path) const {
  if (!exists(path)) return Error{"no such file", Error::Kind::notFound};
  if (isFolder(path)) return Error{"can't read"};
  return objects_.at(path).content;
}

Result<void> FakeFiles::write(const fs::path& path, std::string_view bytes, Readers /*readers*/) {
  return isFolder(path) ? Error{"in the way"} : make(path, {false, std::string(bytes), {}});
}

Result<void> FakeFiles::append(const fs::path& path, std::string_view bytes) {
  if (!exists(path)) return write(path, bytes, Readers::asUsual);
  if (isFolder(path) || isFull(path)) return Error{"can't open"};
  objects_.at(path).content += bytes;
  return {};
}

void FakeFiles::put(const fs::path& path, std::string content) {
  const auto before = std::exchange(full, {});
  static_cast<void>(createFolders(path.parent_path()));
  objects_.erase(path);
  static_cast<void>(append(path, content));
  full = before;
}

void FakeFiles::remove(const fs::path& path) {
  std::erase_if(objects_, [&](const auto& object) { return isBelow(object.first, path); });
}

std::optional<std::string> FakeFiles::content(const fs::path& path) const {
  return exists(path) ? std::optional(objects_.at(path).content) : std::nullopt;
}

Result<void> FakeFiles::make(const fs::path& path, Object object) {
  if (!isFolder(path.parent_path())) return Error{"no such folder"};
  if (isFull(path)) return Error{"disk full"};
  object.created = now_ += std::chrono::seconds(1);
  objects_.insert_or_assign(path, std::move(object));
  return {};
}

bool FakeFiles::isFull(const fs::path& path) const {
  return std::any_of(full.begin(), full.end(), [&](const fs::path& each) { return isBelow(path, each); });
}

}  // namespace tavelle
