#include "playback/script_value.h"

#include <cmath>

#include "base/text.h"

namespace tavelle {
namespace {

struct Writer {
  std::string operator()(std::monostate) const { return "nil"; }
  std::string operator()(bool value) const { return value ? "true" : "false"; }
  std::string operator()(double value) const {
    return value == std::trunc(value) ? fixedDecimal(value, 0) : shortestDecimal(value);
  }
  std::string operator()(const std::string& text) const { return text; }
  std::string operator()(const ScriptObject& object) const { return object.json; }
  std::string operator()(const ScriptArray& elements) const {
    std::string text;
    for (const ScriptValue& element : elements) text += (text.empty() ? "" : ", ") + scriptText(element);
    return "[" + text + "]";
  }
};

}  // namespace

std::string scriptText(const ScriptValue& value) { return std::visit(Writer{}, value.value); }

std::optional<std::vector<double>> scriptNumbers(const ScriptValue& value) {
  const auto* elements = std::get_if<ScriptArray>(&value.value);
  if (!elements) return std::nullopt;
  std::vector<double> numbers;
  for (const ScriptValue& element : *elements) {
    const double* number = std::get_if<double>(&element.value);
    if (!number) return std::nullopt;
    numbers.push_back(*number);
  }
  return numbers;
}

}  // namespace tavelle
