#include "base/property_list.h"

#include <chrono>
#include <clocale>
#include <cstdint>

#include "base/allocated.h"
#include "base/plist_guard.h"

namespace tavelle {
namespace {

/// While it lives, the thread's numbers have a decimal point, as a property list's must. The library reads them in the
/// locale, and would end one at the point where the user's has a comma.
class PointDecimals {
 public:
  PointDecimals() : before_(uselocale(plain())) {}
  PointDecimals(const PointDecimals&) = delete;
  PointDecimals& operator=(const PointDecimals&) = delete;
  ~PointDecimals() { uselocale(before_); }

 private:
  static locale_t plain() {
    static const locale_t locale = newlocale(LC_ALL_MASK, "C", nullptr);
    return locale;
  }
  locale_t before_;
};

// The library's functions give something back, and take more, since version 2.3.

template <typename Given, typename... More>
PlistPtr readBy(Given (*read)(const char*, std::uint32_t, plist_t*, More...), std::string_view bytes) {
  plist_t parsed = nullptr;
  static_cast<void>(read(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed, More{}...));
  return PlistPtr(parsed);
}

template <typename Given>
Result<std::string> writtenBy(Given (*write)(plist_t, char**, std::uint32_t*), plist_t node) {
  char* bytes = nullptr;
  std::uint32_t length = 0;
  static_cast<void>(write(node, &bytes, &length));
  const AllocatedPtr<char> owned(bytes);
  if (!owned || length == 0) return Error{"a value has no form in a property list"};
  return std::string(owned.get(), length);
}

}  // namespace

PlistPtr parsedPlist(std::string_view bytes) {
  if (!isReasonablePlist(bytes)) return nullptr;
  const PointDecimals decimals;
  return readBy(plist_from_memory, bytes);
}

PlistPtr parsedDictionary(std::string_view bytes) {
  PlistPtr parsed = parsedPlist(bytes);
  if (!ofType(parsed.get(), PLIST_DICT)) parsed.reset();
  return parsed;
}

Result<std::string> xmlPlist(plist_t node) { return writtenBy(plist_to_xml, node); }

Result<std::string> binaryPlist(plist_t node) { return writtenBy(plist_to_bin, node); }

plist_t ofType(plist_t node, plist_type type) { return node && plist_get_node_type(node) == type ? node : nullptr; }

std::optional<std::string> plistText(plist_t node) {
  if (!ofType(node, PLIST_STRING)) return std::nullopt;
  std::uint64_t length = 0;
  const char* const bytes = plist_get_string_ptr(node, &length);
  return bytes ? std::string(bytes, length) : std::string();
}

plist_t plistItem(plist_t node, const char* key, plist_type type) {
  return ofType(node, PLIST_DICT) ? ofType(plist_dict_get_item(node, key), type) : nullptr;
}

std::vector<plist_t> plistValues(plist_t node) {
  std::vector<plist_t> values;
  if (!ofType(node, PLIST_DICT)) return values;
  values.reserve(plist_dict_get_size(node));
  plist_dict_iter iterator = nullptr;
  plist_dict_new_iter(node, &iterator);
  const AllocatedPtr<void> owned(iterator);
  for (;;) {
    plist_t value = nullptr;
    plist_dict_next_item(node, iterator, nullptr, &value);
    if (!value) return values;
    values.push_back(value);
  }
}

PlistPtr plistDate(WallTime time) {
  // They count from the beginning of 2001.
  using std::chrono::floor, std::chrono::microseconds, std::chrono::seconds;
  const auto since = time - std::chrono::sys_days(std::chrono::year(2001) / 1 / 1);
  const auto whole = floor<seconds>(since);
  return PlistPtr(plist_new_date(static_cast<std::int32_t>(whole.count()),
                                 static_cast<std::int32_t>(floor<microseconds>(since - whole).count())));
}

void setPlistItem(plist_t dictionary, const char* key, PlistPtr value) {
  plist_dict_set_item(dictionary, key, value.release());
}

}  // namespace tavelle
