#include "platform/linux/desktop/script_values.h"

#include <cmath>

#include "platform/linux/handles.h"

namespace tavelle {
namespace {

/// More elements than any script of ours asks for; an array past that is taken as its JSON text.
constexpr double mostElements = 1000;

ScriptValue jsonValue(JSCValue* value) {
  const GCharPtr json(jsc_value_to_json(value, 0));
  return json ? ScriptValue{ScriptObject{json.get()}} : ScriptValue{};
}

ScriptValue arrayValue(JSCValue* value) {
  const auto length = adopt(jsc_value_object_get_property(value, "length"));
  const double count = jsc_value_to_double(length.get());
  if (!(count <= mostElements)) return jsonValue(value);
  ScriptArray elements;
  for (guint i = 0; i < static_cast<guint>(count); ++i) {
    const auto element = adopt(jsc_value_object_get_property_at_index(value, i));
    // An array within an array comes as text: a page could nest them without end.
    elements.push_back(jsc_value_is_array(element.get()) ? jsonValue(element.get()) : scriptValue(element.get()));
  }
  return {std::move(elements)};
}

}  // namespace

ScriptValue scriptValue(JSCValue* value) {
  if (jsc_value_is_null(value) || jsc_value_is_undefined(value)) return {};
  if (jsc_value_is_boolean(value)) return {jsc_value_to_boolean(value) != FALSE};
  if (jsc_value_is_number(value)) return {jsc_value_to_double(value)};
  if (jsc_value_is_string(value)) return {std::string(GCharPtr(jsc_value_to_string(value)).get())};
  if (jsc_value_is_array(value)) return arrayValue(value);
  return jsonValue(value);
}

}  // namespace tavelle
