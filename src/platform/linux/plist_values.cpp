#include "platform/linux/plist_values.h"

#include <cstdint>
#include <cstdlib>
#include <optional>

namespace tavelle {
namespace {

std::optional<std::vector<std::string>> textArray(plist_t node) {
  std::vector<std::string> texts;
  for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
    auto text = plistText(plist_array_get_item(node, i));
    if (!text) return std::nullopt;
    texts.push_back(*std::move(text));
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
      return *plistText(node);
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

}  // namespace tavelle
