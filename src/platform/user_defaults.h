#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "base/registration.h"

namespace tavelle {

/// A value of the settings. Texts are UTF-8. `monostate` stands for a stored value of a type that this program has no
/// use for.
using DefaultsValue = std::variant<std::monostate, std::string, std::vector<std::string>, std::int64_t, double, bool>;

/// The user's settings: a key-value store that outlives the process and is shared with other processes of this program.
/// Every read sees what was last stored, by whichever process. Main thread only.
///
/// Neither reading nor writing fails towards the caller. A value that cannot be saved stays in force for the rest of
/// the process and is saved along with the next one that can be. What was stored before is never lost: a store that
/// cannot be understood reads as empty and is kept aside before anything new is written.
class UserDefaults {
 public:
  virtual ~UserDefaults() = default;

  virtual std::optional<DefaultsValue> value(std::string_view key) const = 0;
  virtual void set(std::string_view key, DefaultsValue value) = 0;
  virtual void remove(std::string_view key) = 0;

  /// Calls `tell`, with one line for a person (UTF-8), when the store cannot be read or written; once for the same
  /// trouble in a row. Trouble that was met before is told at once.
  virtual Registration onTrouble(std::function<void(const std::string&)> tell) = 0;

  /// The string under `key`; nothing when there is none or it is of another type.
  std::optional<std::string> string(std::string_view key) const;
  /// The strings under `key`; empty when there are none or the value is of another type.
  std::vector<std::string> stringArray(std::string_view key) const;
  /// Whether there is a true, or a number that is not 0, under `key`.
  bool boolean(std::string_view key) const;
  /// The number under `key`, a fraction cut off; 0 when there is none or it does not fit.
  std::int64_t integer(std::string_view key) const;
  /// The number under `key`; 0 when there is none.
  double real(std::string_view key) const;
};

}  // namespace tavelle
