#include "desktop_picture/store_values.h"

namespace tavelle {

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

std::string onOneLine(plist_t node) {
  std::string text = xmlPlist(node).value();
  std::erase_if(text, [](char each) { return each == '\n' || each == '\t'; });
  const auto begin = text.find('>', text.find("<plist")) + 1;
  return text.substr(begin, text.rfind("</plist>") - begin);
}

std::string packed(const std::string& list) {
  const std::string bytes = binaryPlist(parsedPlist(list).get()).value();
  return onOneLine(PlistPtr(plist_new_data(bytes.data(), bytes.size())).get());
}

std::string entryShowing(const std::string& address, const std::string& items) {
  const std::string configuration = packed(storeWith("url/relative", "<string>" + address + "</string>"));
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

}  // namespace tavelle
