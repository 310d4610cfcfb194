#pragma once

#include <gtest/gtest.h>
#include <jsc/jsc.h>

#include <string>

#include "platform/linux/handles.h"

namespace tavelle {

/// The web engine's own JavaScript, without a page.
class JavaScript {
 public:
  /// What the script's last expression is, as JSON.
  std::string evaluate(const std::string& script) {
    const auto value = adopt(jsc_context_evaluate(context_.get(), script.c_str(), -1));
    if (auto* const exception = jsc_context_get_exception(context_.get())) {
      ADD_FAILURE() << jsc_exception_get_message(exception) << " in " << script;
      jsc_context_clear_exception(context_.get());
    }
    const GCharPtr json(jsc_value_to_json(value.get(), 0));
    return json ? json.get() : "undefined";
  }

 private:
  GObjectPtr<JSCContext> context_ = adopt(jsc_context_new());
};

}  // namespace tavelle
