#pragma once

#include <filesystem>
#include <string_view>

#include "base/result.h"

namespace tavelle {

/// Replaces the content of `file` in one step that survives a crash or a power cut half way: then the file is either
/// as before or as after. The folder must exist. A file that existed keeps its permissions. A symbolic link is replaced
/// itself, and what it leads to stays as it is.
Result<void> writeAtomically(const std::filesystem::path& file, std::string_view bytes);

/// Where `file` leads to when it is a symbolic link, as with somebody who keeps their settings elsewhere; else `file`.
std::filesystem::path behindLinks(const std::filesystem::path& file);

}  // namespace tavelle
