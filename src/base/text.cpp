#include "base/text.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>

namespace tavelle {
namespace {

/// The longest fixed form of a double: sign, 309 digits before the point, point, 1074 after it.
using DecimalBuffer = std::array<char, 1400>;

/// How many bytes the well-formed UTF-8 sequence at the start of `bytes` takes; 0 when there is none.
/// Unicode 15, table 3-7: besides the continuation bytes' shape, no overlong forms, no surrogates, nothing past 10FFFF.
std::size_t sequenceLength(std::string_view bytes) {
  const auto byte = [&](std::size_t i) { return static_cast<std::uint8_t>(bytes[i]); };
  const std::uint8_t lead = byte(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : 2;
  if (lead < 0xC2 || lead > 0xF4 || bytes.size() < length) return 0;
  const std::uint8_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const std::uint8_t high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  if (byte(1) < low || byte(1) > high) return 0;
  for (std::size_t i = 2; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 0;
  }
  return length;
}

}  // namespace

std::string shortestDecimal(double value) {
  DecimalBuffer buffer;
  const auto end = std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::fixed).ptr;
  std::string text(buffer.begin(), end);
  if (std::isfinite(value) && text.find('.') == std::string::npos) text += ".0";
  return text;
}

std::string fixedDecimal(double value, int digits) {
  DecimalBuffer buffer;
  const auto end = std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::fixed, digits).ptr;
  return {buffer.begin(), end};
}

std::string scriptDecimal(double value) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value > 0 ? "Infinity" : "-Infinity";
  if (value < 0) return "-" + scriptDecimal(-value);
  if (value == 0) return "0";
  // The fewest digits that read back the same, of which one stands before the point: ECMA-262, Number::toString.
  DecimalBuffer buffer;
  const auto end = std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::scientific).ptr;
  const std::string shortest(buffer.begin(), end);
  const std::size_t mark = shortest.find('e');
  const int exponent = std::stoi(shortest.substr(mark + 1));
  if (exponent < -6 || exponent > 20) {
    return shortest.substr(0, mark) + (exponent < 0 ? "e" : "e+") + std::to_string(exponent);
  }
  std::string digits = shortest.substr(0, mark);
  std::erase(digits, '.');
  if (exponent < 0) return "0." + std::string(static_cast<std::size_t>(-exponent - 1), '0') + digits;
  const auto whole = static_cast<std::size_t>(exponent) + 1;
  if (digits.size() <= whole) return digits + std::string(whole - digits.size(), '0');
  return digits.substr(0, whole) + "." + digits.substr(whole);
}

bool isUtf8(std::string_view bytes) {
  while (!bytes.empty()) {
    const std::size_t length = sequenceLength(bytes);
    if (length == 0) return false;
    bytes.remove_prefix(length);
  }
  return true;
}

std::string escapedUtf8(std::string_view bytes) {
  constexpr std::string_view hex = "0123456789ABCDEF";
  std::string text;
  while (!bytes.empty()) {
    const std::size_t length = sequenceLength(bytes);
    if (length == 0) {
      const auto byte = static_cast<std::uint8_t>(bytes[0]);
      text += {'\\', 'x', hex[byte >> 4], hex[byte & 15]};
    } else {
      text += bytes.substr(0, length);
    }
    bytes.remove_prefix(std::max<std::size_t>(length, 1));
  }
  return text;
}

std::string asciiLowercase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
  return lower;
}

}  // namespace tavelle
