#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/web_view.h"

namespace tavelle {

/// The value as text for the event log: a text as it stands, numbers as the page writes them, "nil" for none.
std::string scriptText(const ScriptValue& value);

/// The numbers of an array that holds nothing else; none when it is no such array.
std::optional<std::vector<double>> scriptNumbers(const ScriptValue& value);

}  // namespace tavelle
