#include "platform/linux/web/script_values.h"

#include "platform/linux/handles.h"

namespace tavelle {
namespace {

/// More elements than any script of ours asks for; an array past that is taken as its JSON text.
constexpr double mostElements = 1000;

/// The whole text, also past a U+0000, with U+FFFD in the place of what is no character.
std::string text(JSCValue* raw) {
  // As it is, a half of a surrogate pair would lose all of it.
  const auto value = adopt(jsc_value_object_invoke_method(raw, "toWellFormed", G_TYPE_NONE));
  const GBytesPtr bytes(jsc_value_to_string_as_bytes(value.get()));
  gsize size = 0;
  const auto* const data = static_cast<const char*>(g_bytes_get_data(bytes.get(), &size));
  return {data, size};
}

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
  if (jsc_value_is_string(value)) return {text(value)};
  if (jsc_value_is_array(value)) return arrayValue(value);
  return jsonValue(value);
}

Result<ScriptValue> evaluationAnswer(GVariant* reply) {
  if (!reply || !g_variant_is_of_type(reply, G_VARIANT_TYPE("(bs)"))) return Error{"the page process gave no answer"};
  gboolean ran = FALSE;
  const char* text = nullptr;
  g_variant_get(reply, "(b&s)", &ran, &text);
  if (!ran) return Error{text};
  const auto context = adopt(jsc_context_new());
  const auto value = adopt(jsc_value_new_from_json(context.get(), text));
  return value ? scriptValue(value.get()) : ScriptValue{};
}

}  // namespace tavelle
