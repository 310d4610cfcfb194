#pragma once

#include <jsc/jsc.h>

#include "platform/web_view.h"

namespace tavelle {

/// What a JavaScript value means outside the engine. Functions and other things without a JSON form count as null.
ScriptValue scriptValue(JSCValue* value);

/// What the page process replied to a script: whether it ran, and its answer as JSON or else what went wrong.
Result<ScriptValue> evaluationAnswer(GVariant* reply);

}  // namespace tavelle
