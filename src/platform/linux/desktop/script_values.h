#pragma once

#include <jsc/jsc.h>

#include "platform/web_view.h"

namespace tavelle {

/// What a JavaScript value means outside the engine. Functions and other things without a JSON form count as null.
ScriptValue scriptValue(JSCValue* value);

}  // namespace tavelle
