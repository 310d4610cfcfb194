#pragma once

#include <map>
#include <utility>

#include "platform/user_defaults.h"

namespace tavelle {

class FakeDefaults final : public UserDefaults {
 public:
  std::optional<DefaultsValue> value(std::string_view key) const override {
    const auto found = values_.find(key);
    return found == values_.end() ? std::nullopt : std::optional(found->second);
  }
  void set(std::string_view key, DefaultsValue value) override {
    values_.insert_or_assign(std::string(key), std::move(value));
  }
  void remove(std::string_view key) override { values_.erase(std::string(key)); }
  Registration onTrouble(std::function<void(const std::string&)>) override { return {}; }

 private:
  std::map<std::string, DefaultsValue, std::less<>> values_;
};

}  // namespace tavelle
