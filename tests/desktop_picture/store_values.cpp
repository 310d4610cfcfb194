#include "desktop_picture/store_values.h"

#include <sstream>

namespace tavelle {
namespace {

using Kind = Value::Kind;

Value other(plist_t node) {
  std::ostringstream words;
  words.precision(17);
  const plist_type type = plist_get_node_type(node);
  words << type << ' ';
  std::uint64_t number = 0;
  std::uint8_t flag = 0;
  double real = 0;
  std::int32_t seconds = 0;
  std::int32_t microseconds = 0;
  if (type == PLIST_BOOLEAN) plist_get_bool_val(node, &flag), words << int{flag};
  if (type == PLIST_UINT) plist_get_uint_val(node, &number), words << number;
  if (type == PLIST_UID) plist_get_uid_val(node, &number), words << number;
  if (type == PLIST_REAL) plist_get_real_val(node, &real), words << real;
  if (type == PLIST_DATE) plist_get_date_val(node, &seconds, &microseconds), words << seconds << ' ' << microseconds;
  return {Kind::other, {}, {}, words.str()};
}

Value array(std::vector<Value> elements) { return {Kind::array, {}, std::move(elements), {}}; }

}  // namespace

Value dictionaryOf(std::map<std::string, Value> items) { return {Kind::dictionary, std::move(items), {}, {}}; }
Value text(std::string content) { return {Kind::text, {}, {}, std::move(content)}; }
Value packed(Value dictionary) { return {Kind::packed, {}, {std::move(dictionary)}, {}}; }

Value valueOf(plist_t node) {
  if (ofType(node, PLIST_DICT)) {
    Value value;
    plist_dict_iter iterator = nullptr;
    plist_dict_new_iter(node, &iterator);
    for (plist_t each = nullptr;;) {
      char* key = nullptr;
      plist_dict_next_item(node, iterator, &key, &each);
      if (!each) break;
      value.items.emplace(key, valueOf(each));
      free(key);
    }
    free(iterator);
    return value;
  }
  if (ofType(node, PLIST_ARRAY)) {
    std::vector<Value> elements;
    for (std::uint32_t i = 0; i < plist_array_get_size(node); ++i) {
      elements.push_back(valueOf(plist_array_get_item(node, i)));
    }
    return array(std::move(elements));
  }
  if (const auto content = plistText(node)) return text(*content);
  if (!ofType(node, PLIST_DATA)) return other(node);
  std::uint64_t length = 0;
  const char* const data = plist_get_data_ptr(node, &length);
  const std::string content(data ? data : "", length);
  if (const PlistPtr inner = parsedDictionary(content)) return packed(valueOf(inner.get()));
  return {Kind::data, {}, {}, content};
}

PlistPtr plistOf(const Value& value, std::mt19937& random) {
  std::istringstream words(value.content);
  PlistPtr node;
  switch (value.kind) {
    case Kind::dictionary:
      node.reset(plist_new_dict());
      for (const auto& [key, item] : value.items) setPlistItem(node.get(), key.c_str(), plistOf(item, random));
      return node;
    case Kind::array:
      node.reset(plist_new_array());
      for (const Value& each : value.elements) plist_array_append_item(node.get(), plistOf(each, random).release());
      return node;
    case Kind::text:
      return PlistPtr(plist_new_string(value.content.c_str()));
    case Kind::data:
      return PlistPtr(plist_new_data(value.content.data(), value.content.size()));
    case Kind::packed: {
      const PlistPtr inner = plistOf(value.elements[0], random);
      const auto bytes = random() % 4 == 0 ? xmlPlist(inner.get()) : binaryPlist(inner.get());
      return PlistPtr(plist_new_data(bytes->data(), bytes->size()));
    }
    case Kind::other:
      break;
  }
  int type = 0;
  std::uint64_t number = 0;
  std::int32_t microseconds = 0;
  words >> type;
  if (type == PLIST_REAL) {
    double real = 0;
    words >> real;
    return PlistPtr(plist_new_real(real));
  }
  if (type == PLIST_DATE) {
    std::int32_t seconds = 0;
    words >> seconds >> microseconds;
    return PlistPtr(plist_new_date(seconds, microseconds));
  }
  words >> number;
  if (type == PLIST_BOOLEAN) return PlistPtr(plist_new_bool(static_cast<std::uint8_t>(number)));
  return PlistPtr(type == PLIST_UID ? plist_new_uid(number) : plist_new_uint(number));
}

std::string inWords(const Value& value) {
  std::mt19937 random;
  return xmlPlist(plistOf(value, random).get()).value();
}

Value StoreMaker::odd(int depth) {
  std::ostringstream words;
  switch (below(depth < 3 ? 10 : 8)) {
    case 0:
      return text(chance(50) ? "individual" : "grün & <blau> \U0001F600");
    case 1:
      return {Kind::data, {}, {}, std::string("\0\xFFplist", 7)};
    case 2:
      words << PLIST_BOOLEAN << ' ' << below(2);
      break;
    case 3:
      words << PLIST_UINT << ' ' << (chance(50) ? ~std::uint64_t{0} : random_());
      break;
    case 4:
      words << PLIST_REAL << ' ' << below(4000) / 8.0 - 100;
      break;
    case 5:
      words << PLIST_DATE << ' ' << below(800'000'000) << ' ' << 125000 * below(8);
      break;
    case 6:
      words << PLIST_UID << ' ' << below(1 << 30);
      break;
    case 7:
      return array({});
    case 8:
      return array({odd(depth + 1), odd(depth + 1)});
    default:
      return dictionaryOf({{"größe", odd(depth + 1)}, {chance(50) ? "" : "Desktop", odd(depth + 1)}});
  }
  return {Kind::other, {}, {}, words.str()};
}

void StoreMaker::add(Value& dictionary, const std::string& key, Value value) {
  if (!tidy_ && chance(8)) return;
  dictionary.items[key] = !tidy_ && chance(8) ? odd() : std::move(value);
}

void StoreMaker::addUnknown(Value& dictionary) {
  if (chance(30)) dictionary.items["unknown" + std::to_string(below(3))] = odd();
}

Value StoreMaker::choices() {
  Value result = array({});
  for (int i = tidy_ || chance(70) ? 1 : below(4); i > 0; --i) {
    Value url;
    add(url, "relative", text(tidy_ || chance(60) ? shown_ : "file:///other.jpg"));
    Value configuration;
    add(configuration, "url", std::move(url));
    add(configuration, "type", text("imageFile"));
    Value choice;
    add(choice, "Configuration", packed(std::move(configuration)));
    addUnknown(choice);
    result.elements.push_back(!tidy_ && chance(5) ? odd() : std::move(choice));
  }
  return result;
}

Value StoreMaker::entry() {
  Value content;
  add(content, "Choices", choices());
  addUnknown(content);
  Value desktop;
  add(desktop, "Content", std::move(content));
  addUnknown(desktop);
  Value result;
  add(result, "Type", text(tidy_ || chance(65) ? "individual" : chance(80) ? "linked" : "Individual"));
  add(result, "Desktop", std::move(desktop));
  if (chance(40)) result.items["Linked"] = odd();
  if (chance(40)) result.items["Idle"] = odd();
  addUnknown(result);
  return result;
}

Value StoreMaker::displays() {
  Value result;
  for (int i = below(3); i > 0; --i) add(result, "display " + std::to_string(i), entry());
  return result;
}

Value StoreMaker::space() {
  Value result;
  if (chance(60)) add(result, "Default", entry());
  if (chance(70)) add(result, "Displays", displays());
  addUnknown(result);
  return result;
}

Value StoreMaker::store() {
  tidy_ = chance(25);
  Value root;
  if (chance(50)) add(root, "SystemDefault", entry());
  if (chance(50)) add(root, "AllSpacesAndDisplays", entry());
  if (chance(60)) add(root, "Displays", displays());
  Value spaces;
  for (int i = below(3); i > 0; --i) add(spaces, "space é" + std::to_string(i), space());
  if (chance(70)) add(root, "Spaces", std::move(spaces));
  addUnknown(root);
  return root;
}

std::string StoreMaker::bytes(const Value& value) {
  const PlistPtr node = plistOf(value, random_);
  return (chance(30) ? xmlPlist(node.get()) : binaryPlist(node.get())).value();
}

std::string xml(const std::string& content) { return R"(<?xml version="1.0"?><plist>)" + content + "</plist>"; }
std::string dict(const std::string& content) { return xml("<dict>" + content + "</dict>"); }
std::string repeated(const std::string& what, int times) {
  std::string result;
  while (times-- > 0) result += what;
  return result;
}

}  // namespace tavelle
