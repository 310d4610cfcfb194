#include "app/file_uri.h"

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

}  // namespace tavelle
