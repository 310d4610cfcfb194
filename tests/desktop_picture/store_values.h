#pragma once

#include <map>
#include <random>
#include <string>
#include <vector>

#include "app/property_list.h"

namespace tavelle {

/// A property list's value, to be compared and taken apart with plain means.
struct Value {
  enum class Kind { dictionary, array, text, data, packed, other };
  Kind kind = Kind::dictionary;
  std::map<std::string, Value> items;
  /// Of an array; of packed data, the dictionary that it holds in either form of a property list.
  std::vector<Value> elements;
  /// A text, bytes; of any other value its type and what it is in words.
  std::string content;

  bool operator==(const Value&) const = default;
  bool isDictionary() const { return kind == Kind::dictionary; }
  /// The dictionary under a key, if there is one.
  const Value* dictionary(const std::string& key) const { return item(key, Kind::dictionary); }
  const Value* item(const std::string& key, Kind wanted) const {
    const auto found = isDictionary() ? items.find(key) : items.end();
    return found != items.end() && found->second.kind == wanted ? &found->second : nullptr;
  }
};

Value dictionaryOf(std::map<std::string, Value> items);
Value text(std::string content);
Value packed(Value dictionary);

Value valueOf(plist_t node);
PlistPtr plistOf(const Value& value, std::mt19937& random);
/// For messages of failed tests.
std::string inWords(const Value& value);

/// Makes up wallpaper stores: mostly of the right shape, with something odd in every place now and then.
class StoreMaker {
 public:
  StoreMaker(unsigned seed, std::string shown) : random_(seed), shown_(std::move(shown)) {}

  Value store();
  /// The bytes of a store, as XML or binary.
  std::string bytes(const Value& value);
  bool chance(int percent) { return below(100) < percent; }
  int below(int end) { return std::uniform_int_distribution(0, end - 1)(random_); }
  std::mt19937& random() { return random_; }

 private:
  Value entry();
  Value displays();
  Value space();
  Value choices();
  Value odd(int depth = 0);
  /// Puts a value under a key, mostly; and now and then something else.
  void add(Value& dictionary, const std::string& key, Value value);
  void addUnknown(Value& dictionary);

  std::mt19937 random_;
  std::string shown_;
  /// In some stores all that is where it belongs is right.
  bool tidy_ = false;
};

/// An XML list that holds this; a dictionary that holds this.
std::string xml(const std::string& content);
std::string dict(const std::string& content);
std::string repeated(const std::string& what, int times);

}  // namespace tavelle
