#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "base/result.h"

namespace tavelle {

/// The ways out of a folder that lie in it and below.
struct FolderLinks {
  /// Symbolic links that lead to somewhere outside the folder, or nowhere; and folders that cannot be looked into.
  std::vector<std::filesystem::path> leadingOut;
  /// Whether links lead to folders within, so that what is in there has more than one path.
  bool toFoldersWithin = false;
};

/// An error when the folder cannot be searched to its end.
Result<FolderLinks> linksIn(const std::filesystem::path& folder);

/// The engine's content rules, as JSON, that let a page read the files in and below `folder` and no other file; and
/// what lies behind links that lead out of it neither. Addresses other than files' are not touched.
std::string isolationRules(const std::filesystem::path& folder, const FolderLinks& links);

}  // namespace tavelle
