#include "platform/user_defaults.h"

#include <cmath>
#include <utility>

namespace tavelle {
namespace {

template <typename T>
T valueOr(const std::optional<DefaultsValue>& value, T otherwise) {
  const T* held = value ? std::get_if<T>(&*value) : nullptr;
  return held ? *held : std::move(otherwise);
}

std::int64_t truncated(double value) {
  // 2^63 is exact as a double, the greatest 64-bit integer is not.
  constexpr double limit = 9223372036854775808.0;
  return std::isnan(value) || value < -limit || value >= limit ? 0 : static_cast<std::int64_t>(value);
}

}  // namespace

std::optional<std::string> UserDefaults::string(std::string_view key) const {
  const auto stored = value(key);
  if (!stored || !std::holds_alternative<std::string>(*stored)) return std::nullopt;
  return std::get<std::string>(*stored);
}

std::vector<std::string> UserDefaults::stringArray(std::string_view key) const {
  return valueOr<std::vector<std::string>>(value(key), {});
}

bool UserDefaults::boolean(std::string_view key) const { return valueOr(value(key), false) || real(key) != 0; }

std::int64_t UserDefaults::integer(std::string_view key) const {
  const auto stored = value(key);
  return stored && std::holds_alternative<double>(*stored) ? truncated(std::get<double>(*stored))
                                                           : valueOr<std::int64_t>(stored, 0);
}

double UserDefaults::real(std::string_view key) const {
  const auto stored = value(key);
  return valueOr<double>(stored, static_cast<double>(valueOr<std::int64_t>(stored, 0)));
}

}  // namespace tavelle
