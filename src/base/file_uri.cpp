#include "base/file_uri.h"

#include <charconv>
#include <cstdint>
#include <string_view>

namespace tavelle {
namespace {

/// What a path in an address holds as it is (RFC 3986, "pchar" and the slash), but for the semicolon, which older
/// readers take for the beginning of parameters.
bool standsForItself(char byte) {
  constexpr std::string_view marks = "-._~!$&'()*+,=:@/";
  return (byte >= 'a' && byte <= 'z') || (byte >= 'A' && byte <= 'Z') || (byte >= '0' && byte <= '9') ||
         marks.find(byte) != std::string_view::npos;
}

}  // namespace

std::string fileUri(const std::filesystem::path& file) {
  constexpr std::string_view digits = "0123456789ABCDEF";
  std::string uri = "file://";
  for (const char byte : file.native()) {
    if (standsForItself(byte)) {
      uri += byte;
    } else {
      const auto value = static_cast<unsigned char>(byte);
      uri += {'%', digits[value >> 4], digits[value & 15]};
    }
  }
  return uri;
}

std::optional<std::filesystem::path> filePath(std::string_view uri) {
  constexpr std::string_view scheme = "file://";
  if (!uri.starts_with(scheme) || !uri.substr(scheme.size()).starts_with("/")) return std::nullopt;
  uri.remove_prefix(scheme.size());
  std::string path;
  while (!uri.empty()) {
    std::uint8_t byte = 0;
    const bool escaped = uri.front() == '%';
    if (!escaped) {
      path += uri.front();
    } else if (uri.size() < 3 || std::from_chars(uri.data() + 1, uri.data() + 3, byte, 16).ptr != uri.data() + 3 ||
               byte == 0) {
      return std::nullopt;
    } else {
      path += static_cast<char>(byte);
    }
    uri.remove_prefix(escaped ? 3 : 1);
  }
  return path;
}

}  // namespace tavelle
