#include "platform/linux/icu_text_order.h"

#include <unicode/locid.h>
#include <unicode/normalizer2.h>
#include <unicode/stringpiece.h>
#include <unicode/unistr.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>

namespace tavelle {
namespace {

/// The locale that the user's environment asks for in collation, by POSIX's order of precedence.
icu::Locale collationLocale() {
  for (const char* variable : {"LC_ALL", "LC_COLLATE", "LANG"}) {
    const char* value = std::getenv(variable);
    if (!value || !*value) continue;
    const std::string_view name(value);
    // These sort by code point, which no file browser does, not even for somebody who never chose a language.
    if (name == "C" || name == "POSIX" || name.starts_with("C.")) return icu::Locale::getRoot();
    return icu::Locale::createCanonical(value);
  }
  return icu::Locale::getRoot();
}

std::unique_ptr<const icu::Collator> makeCollator() {
  UErrorCode status = U_ZERO_ERROR;
  std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(collationLocale(), status));
  if (U_FAILURE(status)) return nullptr;
  collator->setAttribute(UCOL_NUMERIC_COLLATION, UCOL_ON, status);
  // Differences of case do not count, differences of accents do.
  collator->setStrength(icu::Collator::SECONDARY);
  return collator;
}

icu::UnicodeString unicode(std::string_view text) {
  return icu::UnicodeString::fromUTF8(icu::StringPiece(text.data(), static_cast<std::int32_t>(text.size())));
}

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

}  // namespace

std::string IcuTextOrder::fileBrowserKey(std::string_view name) const {
  std::call_once(firstUse_, [this] { collator_ = makeCollator(); });
  // Names then sort by their bytes.
  if (!collator_) return std::string(name);
  const icu::UnicodeString text = unicode(name);
  std::array<std::uint8_t, 256> buffer{};
  const auto capacity = static_cast<std::int32_t>(buffer.size());
  // The length counts a zero byte at the end, which does not belong to the order.
  const std::int32_t length = collator_->getSortKey(text, buffer.data(), capacity);
  if (length <= 0) return std::string(name);
  std::string key(static_cast<std::size_t>(length), '\0');
  if (length <= capacity) {
    std::copy_n(buffer.begin(), length, key.begin());
  } else {
    collator_->getSortKey(text, reinterpret_cast<std::uint8_t*>(key.data()), length);
  }
  key.pop_back();
  return key;
}

std::string IcuTextOrder::canonical(std::string_view text) const {
  // Most names are plain ASCII, which is composed as it stands.
  if (isAscii(text)) return std::string(text);
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* composer = icu::Normalizer2::getNFCInstance(status);
  if (U_FAILURE(status)) return std::string(text);
  std::string composed;
  composer->normalize(unicode(text), status).toUTF8String(composed);
  return U_FAILURE(status) ? std::string(text) : composed;
}

std::string IcuTextOrder::lowercase(std::string_view text) const {
  std::string lower;
  unicode(text).toLower(icu::Locale::getRoot()).toUTF8String(lower);
  return lower;
}

}  // namespace tavelle
