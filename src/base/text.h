#pragma once

#include <string>
#include <string_view>

namespace tavelle {

/// The shortest decimal form that reads back as the same number, with at least one digit after the point: "1.0",
/// "0.35". Never in the user's locale, never with an exponent.
std::string shortestDecimal(double value);

/// `value` with exactly `digits` digits after the point. Never in the user's locale.
std::string fixedDecimal(double value, int digits);

/// The number as JavaScript writes it: "30", "0.35", "1e+21", "NaN". Never in the user's locale.
std::string scriptDecimal(double value);

bool isUtf8(std::string_view bytes);

/// `bytes` as UTF-8: each byte that is not part of it becomes "\x" and two hexadecimal digits, so that names that
/// differ in such bytes stay different.
std::string escapedUtf8(std::string_view bytes);

/// ASCII letters in lower case, all else unchanged.
std::string asciiLowercase(std::string_view text);

}  // namespace tavelle
