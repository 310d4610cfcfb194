#include "model/wallpaper.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "platform/text_order.h"

namespace tavelle {
namespace {

bool isStillCandidate(const std::filesystem::path& file) {
  constexpr std::array<std::string_view, 4> extensions{".jpg", ".jpeg", ".png", ".heic"};
  return std::find(extensions.begin(), extensions.end(), asciiLowercase(file.extension().native())) != extensions.end();
}

/// Without "." and "..", doubled separators and a separator at the end.
std::filesystem::path standardized(const std::filesystem::path& path) {
  const auto normal = path.lexically_normal();
  return normal.has_filename() ? normal : normal.parent_path();
}

}  // namespace

std::string Wallpaper::name() const { return escapedUtf8(standardized(folder.path).filename().native()); }

std::filesystem::path Wallpaper::page() const { return folder.path / "index.html"; }

std::optional<std::filesystem::path> Wallpaper::still(const Files& files, const TextOrder& order) const {
  const auto entries = files.list(folder.path, Files::Hidden::include);
  if (!entries) return std::nullopt;

  struct Candidate {
    std::string key;
    std::filesystem::path path;
  };
  std::vector<Candidate> candidates;
  for (const FileLocation& entry : *entries) {
    if (isStillCandidate(entry.path)) {
      candidates.push_back({order.canonical(entry.path.filename().native()), entry.path});
    }
  }
  if (candidates.empty()) return std::nullopt;
  std::stable_sort(candidates.begin(), candidates.end(),
                   [](const Candidate& a, const Candidate& b) { return a.key < b.key; });
  const auto named = std::find_if(candidates.begin(), candidates.end(), [](const Candidate& candidate) {
    return asciiLowercase(candidate.path.stem().native()) == "still";
  });
  return (named == candidates.end() ? candidates.begin() : named)->path;
}

WallTime Wallpaper::added(const Files& files) const {
  const auto created = folder.created ? folder.created : files.created(folder.path);
  return created.value_or(distantPast);
}

bool Wallpaper::same(const std::optional<Wallpaper>& other) const {
  return other && standardized(folder.path) == standardized(other->folder.path);
}

}  // namespace tavelle
