#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tavelle {

/// The address of a file, given by its absolute path, with every byte escaped that an address cannot hold.
std::string fileUri(const std::filesystem::path& file);

/// The path of the file that an address denotes; none when it denotes no file of this machine.
std::optional<std::filesystem::path> filePath(std::string_view uri);

}  // namespace tavelle
