#pragma once

#include <webkit2/webkit2.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/result.h"

namespace tavelle {

/// The symbolic links in a folder and below it.
struct FolderLinks {
  /// Those that lead to somewhere outside the folder, or nowhere.
  std::vector<std::filesystem::path> leadingOut;
  /// Whether some lead to folders within, so that what is in there has more than one path.
  bool toFoldersWithin = false;
};

FolderLinks linksIn(const std::filesystem::path& folder);

/// The engine's content rules, as JSON, that let a page read the files in and below `folder` and no other file; and
/// what lies behind links that lead out of it neither. Addresses other than files' are not touched.
std::string isolationRules(const std::filesystem::path& folder, const FolderLinks& links);

/// Compiles the rules for `folder` and its links as they are now, and hands on the filter, or why there is none, on the
/// main loop; never when `cancellable` was cancelled before.
void isolationFilter(const std::filesystem::path& folder, GCancellable* cancellable,
                     std::function<void(const Result<WebKitUserContentFilter*>&)> done);

}  // namespace tavelle
