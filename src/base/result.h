#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace tavelle {

/// Why an operation failed.
struct Error {
  /// What callers tell apart: that there is nothing at the place they asked for is often no failure to them.
  enum class Kind { other, notFound };

  /// In words for a person: one line, no final full stop, valid UTF-8.
  std::string description;
  Kind kind = Kind::other;
};

/// The value of an operation that can fail, or the reason why there is none.
template <typename T>
class [[nodiscard]] Result {
 public:
  Result(T value) : state_(std::in_place_index<0>, std::move(value)) {}
  Result(Error error) : state_(std::in_place_index<1>, std::move(error)) {}

  explicit operator bool() const { return state_.index() == 0; }

  /// Only when the result is true.
  const T& value() const& { return std::get<0>(state_); }
  T&& value() && { return std::get<0>(std::move(state_)); }
  const T* operator->() const { return &value(); }
  const T& operator*() const { return value(); }

  /// Only when the result is false.
  const Error& error() const { return std::get<1>(state_); }

 private:
  std::variant<T, Error> state_;
};

/// An operation that gives nothing but can fail.
template <>
class [[nodiscard]] Result<void> {
 public:
  Result() = default;
  Result(Error error) : error_(std::move(error)) {}

  explicit operator bool() const { return !error_; }
  const Error& error() const { return *error_; }

 private:
  std::optional<Error> error_;
};

}  // namespace tavelle
