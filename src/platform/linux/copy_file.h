#pragma once

#include <filesystem>

#include "base/result.h"

namespace tavelle {

/// Copies the content and permissions of the regular file `from`, symbolic links followed. Where the file system can,
/// both share their blocks, and the copy is done at once whatever its size. Fails when `to` exists. `to` comes into
/// being, in one step, when all of the copy is on the disk.
Result<void> copyRegularFile(const std::filesystem::path& from, const std::filesystem::path& to);

}  // namespace tavelle
