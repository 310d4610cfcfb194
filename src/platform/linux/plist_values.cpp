#include "platform/linux/plist_values.h"

#include <cstdint>
#include <cstdlib>
#include <optional>

namespace tavelle {
namespace {

using PlistBytes = std::unique_ptr<char, FreeWith<plist_to_xml_free>>;

std::string text(plist_t node) {
  std::uint64_t length = 0;
  const char* bytes = plist_get_string_ptr(node, &length);
  return bytes ? std::string(bytes, length) : std::string();
}

std::optional<std::vector<std::string>> textArray(plist_t node) {
  std::vector<std::string> texts;
  for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
    plist_t element = plist_array_get_item(node, i);
    if (plist_get_node_type(element) != PLIST_STRING) return std::nullopt;
    texts.push_back(text(element));
  }
  return texts;
}

struct NodeMaker {
  plist_t operator()(std::monostate) const { return plist_new_string(""); }
  plist_t operator()(const std::string& value) const { return plist_new_string(value.c_str()); }
  // The library keeps integers as 64 bits whose sign the reader decides on.
  plist_t operator()(std::int64_t value) const { return plist_new_uint(static_cast<std::uint64_t>(value)); }
  plist_t operator()(double value) const { return plist_new_real(value); }
  plist_t operator()(bool value) const { return plist_new_bool(value ? 1 : 0); }
  plist_t operator()(const std::vector<std::string>& values) const {
    plist_t array = plist_new_array();
    for (const std::string& value : values) plist_array_append_item(array, plist_new_string(value.c_str()));
    return array;
  }
};

}  // namespace

DefaultsValue defaultsValue(plist_t node) {
  switch (plist_get_node_type(node)) {
    case PLIST_STRING:
      return text(node);
    case PLIST_UINT: {
      std::uint64_t value = 0;
      plist_get_uint_val(node, &value);
      return static_cast<std::int64_t>(value);
    }
    case PLIST_REAL: {
      double value = 0;
      plist_get_real_val(node, &value);
      return value;
    }
    case PLIST_BOOLEAN: {
      std::uint8_t value = 0;
      plist_get_bool_val(node, &value);
      return value != 0;
    }
    case PLIST_ARRAY:
      if (auto texts = textArray(node)) return *std::move(texts);
      return std::monostate{};
    default:
      return std::monostate{};
  }
}

PlistPtr plistNode(const DefaultsValue& value) { return PlistPtr(std::visit(NodeMaker{}, value)); }

PlistPtr parsedDictionary(std::string_view bytes) {
  plist_t parsed = nullptr;
  plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &parsed);
  PlistPtr owned(parsed);
  if (owned && plist_get_node_type(owned.get()) != PLIST_DICT) owned.reset();
  return owned;
}

Result<std::string> serialized(plist_t node) {
  char* bytes = nullptr;
  std::uint32_t length = 0;
  plist_to_xml(node, &bytes, &length);
  const PlistBytes owned(bytes);
  if (!owned || length == 0) return Error{"the settings can't be put into a property list"};
  return std::string(owned.get(), length);
}

}  // namespace tavelle
