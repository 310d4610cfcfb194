#pragma once

#include <string>
#include <string_view>

namespace tavelle {

/// Comparing names as people do. All text is UTF-8; bytes that are not are treated as U+FFFD. Any thread.
class TextOrder {
 public:
  virtual ~TextOrder() = default;

  /// A key whose byte order is the order in which a file browser shows names: case-insensitive, runs of digits by
  /// value, by the user's locale. Names that it shows as equals have equal keys.
  virtual std::string fileBrowserKey(std::string_view name) const = 0;

  /// The canonically composed form (NFC): two texts are the same to a reader exactly when these are equal byte for
  /// byte, and its byte order is the order of Unicode scalar values.
  virtual std::string canonical(std::string_view text) const = 0;

  /// Tells of texts whether they are the same to a reader as `text`. Not to outlive this.
  auto sameAs(std::string_view text) const {
    return [this, wanted = canonical(text)](std::string_view other) { return canonical(other) == wanted; };
  }

  /// In lower case, by Unicode's own rules, not by those of the user's language.
  virtual std::string lowercase(std::string_view text) const = 0;
};

}  // namespace tavelle
