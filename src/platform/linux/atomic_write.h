#pragma once

#include <filesystem>
#include <string_view>

#include "platform/result.h"

namespace tavelle {

/// Replaces the content of `file` in one step that survives a crash or a power cut half way: then the file is either
/// as before or as after. The folder must exist. A file that existed keeps its permissions.
Result<void> writeAtomically(const std::filesystem::path& file, std::string_view bytes);

}  // namespace tavelle
