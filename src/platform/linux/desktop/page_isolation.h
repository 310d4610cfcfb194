#pragma once

#include <webkit2/webkit2.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include "platform/result.h"

namespace tavelle {

/// The symbolic links in `folder` and below it that lead to somewhere outside it, or nowhere.
std::vector<std::filesystem::path> linksLeadingOut(const std::filesystem::path& folder);

/// The engine's content rules, as JSON, that let a page read the files in and below `folder` and no other file; and
/// what lies behind `blockedLinks`, which are in the folder, neither. Addresses other than files' are not touched.
std::string isolationRules(const std::filesystem::path& folder, const std::vector<std::filesystem::path>& blockedLinks);

/// Compiles the rules for `folder` and its links as they are now, and hands on the filter, or why there is none, on the
/// main loop; never when `cancellable` was cancelled before.
void isolationFilter(const std::filesystem::path& folder, GCancellable* cancellable,
                     std::function<void(const Result<WebKitUserContentFilter*>&)> done);

}  // namespace tavelle
