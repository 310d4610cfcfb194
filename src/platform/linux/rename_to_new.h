#pragma once

#include <filesystem>

#include "base/result.h"

namespace tavelle {

/// Moves `from` to `to` on the same file system, in one step; fails when `to` exists. On file systems that cannot look
/// and move in one step, one that appears in between may be replaced.
Result<void> renameToNew(const std::filesystem::path& from, const std::filesystem::path& to);

/// Whether `renameToNew` would fail because something is there already. Symbolic links are not followed.
bool isTaken(const std::filesystem::path& path);

}  // namespace tavelle
