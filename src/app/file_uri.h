#pragma once

#include <filesystem>
#include <string>

namespace tavelle {

/// The address of a file, given by its absolute path, with every byte escaped that an address cannot hold.
std::string fileUri(const std::filesystem::path& file);

}  // namespace tavelle
