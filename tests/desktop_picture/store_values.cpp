#include "desktop_picture/store_values.h"

#include <map>

#include "base/allocated.h"

namespace tavelle {
namespace {

/// A value as XML has it, without the list around it.
std::string element(plist_t node) {
  const std::string text = xmlPlist(node).value();
  const auto begin = text.find('\n', text.find("<plist")) + 1;
  return text.substr(begin, text.find("\n</plist>") - begin);
}

std::string dataHolding(const std::string& list) {
  const std::string bytes = binaryPlist(parsedPlist(list).get()).value();
  return element(PlistPtr(plist_new_data(bytes.data(), bytes.size())).get());
}

std::string joined(const std::vector<std::string>& parts, const char* open, const char* close) {
  std::string line = open;
  for (const auto& each : parts) line += (line.size() > 1 ? ", " : "") + each;
  return line + close;
}

std::vector<std::string> itemsOf(plist_t node) {
  std::map<std::string, std::string> items;
  plist_dict_iter iterator = nullptr;
  plist_dict_new_iter(node, &iterator);
  const AllocatedPtr<void> owned(iterator);
  for (std::uint32_t i = 0; i < plist_dict_get_size(node); ++i) {
    char* key = nullptr;
    plist_t value = nullptr;
    plist_dict_next_item(node, iterator, &key, &value);
    items.emplace(AllocatedPtr<char>(key).get(), inWords(value));
  }
  std::vector<std::string> lines;
  for (const auto& [key, value] : items) lines.push_back(key + ": " + value);
  return lines;
}

}  // namespace

std::string xml(const std::string& content) { return R"(<?xml version="1.0"?><plist>)" + content + "</plist>"; }
std::string dict(const std::string& content) { return xml("<dict>" + content + "</dict>"); }
std::string repeated(const std::string& what, int times) {
  std::string result;
  while (times-- > 0) result += what;
  return result;
}

std::string storeWith(const std::string& path, const std::string& value) {
  const auto slash = path.rfind('/');
  const std::string inner = "<key>" + path.substr(slash == path.npos ? 0 : slash + 1) + "</key>" + value;
  return slash == path.npos ? dict(inner) : storeWith(path.substr(0, slash), "<dict>" + inner + "</dict>");
}

std::string entryShowing(const std::string& address, const std::string& items) {
  const std::string configuration = dataHolding(storeWith("url/relative", "<string>" + address + "</string>"));
  return "<dict><key>Type</key><string>individual</string><key>Desktop</key><dict><key>Content</key><dict>"
         "<key>Choices</key><array><dict><key>Configuration</key>" +
         configuration + "</dict></array>" + items + "</dict></dict></dict>";
}

std::string bigEndian(std::uint64_t value, int bytes) {
  std::string result;
  for (int shift = 8 * (bytes - 1); shift >= 0; shift -= 8) result += static_cast<char>(value >> shift);
  return result;
}

std::string binaryTable(const std::vector<std::string>& objects) {
  std::string bytes = "bplist00";
  std::string offsets;
  for (const auto& object : objects) {
    offsets += bigEndian(bytes.size(), 4);
    bytes += object;
  }
  return bytes + offsets + std::string(6, '\0') + "\4\2" + bigEndian(objects.size(), 8) + bigEndian(0, 8) +
         bigEndian(bytes.size(), 8);
}

std::string inWords(plist_t node) {
  if (ofType(node, PLIST_DICT)) return joined(itemsOf(node), "{", "}");
  if (ofType(node, PLIST_ARRAY)) {
    std::vector<std::string> elements;
    for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
      elements.push_back(inWords(plist_array_get_item(node, i)));
    }
    return joined(elements, "[", "]");
  }
  if (const auto content = plistText(node)) return "'" + *content + "'";
  if (ofType(node, PLIST_DATE)) {
    std::int32_t seconds = 0;
    std::int32_t microseconds = 0;
    plist_get_date_val(node, &seconds, &microseconds);
    return "date " + std::to_string(seconds) + " " + std::to_string(microseconds);
  }
  std::uint64_t length = 0;
  const char* const bytes = ofType(node, PLIST_DATA) ? plist_get_data_ptr(node, &length) : nullptr;
  if (const PlistPtr list = bytes ? parsedDictionary({bytes, length}) : nullptr) return "packed " + inWords(list.get());
  return element(node);
}

}  // namespace tavelle
