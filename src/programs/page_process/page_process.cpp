// Loaded by the engine into each page process, before the page.

#include <unistd.h>
#include <webkit2/webkit-web-extension.h>

#include <string_view>

#include "platform/linux/handles.h"

namespace {

using namespace tavelle;

/// The engine announces each playing page on the session bus as a media player, and holds off the screen saver and
/// sleep for as long as it plays. A wallpaper is to do neither, so that its process gets no session bus.
void withdrawSessionBus() { g_setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", TRUE); }

/// Runs the message's script and replies whether that went well, with the answer as JSON or else what went wrong.
/// Scripts that the program runs through the engine's own call count as a user's gesture, which would let every page
/// write to the clipboard; from here they do not.
void evaluate(WebKitWebPage* page, WebKitUserMessage* message) {
  gsize length = 0;
  const char* const script = g_variant_get_string(webkit_user_message_get_parameters(message), &length);
  // Deprecated because frames may come to run in other processes; the main one never does.
  G_GNUC_BEGIN_IGNORE_DEPRECATIONS
  WebKitFrame* const frame = webkit_web_page_get_main_frame(page);
  G_GNUC_END_IGNORE_DEPRECATIONS
  const auto context = adopt(webkit_frame_get_js_context(frame));
  const auto value = adopt(jsc_context_evaluate(context.get(), script, static_cast<gssize>(length)));
  const GCharPtr json(jsc_value_to_json(value.get(), 0));
  GVariant* answer = nullptr;
  if (JSCException* const exception = jsc_context_get_exception(context.get())) {
    answer = g_variant_new("(bs)", FALSE, jsc_exception_get_message(exception));
    jsc_context_clear_exception(context.get());
  } else {
    // Undefined, and what else has no JSON form.
    answer = g_variant_new("(bs)", TRUE, json ? json.get() : "null");
  }
  webkit_user_message_send_reply(message, webkit_user_message_new("answer", answer));
}

gboolean receive(WebKitWebPage* page, WebKitUserMessage* message, gpointer) {
  if (std::string_view(webkit_user_message_get_name(message)) != "evaluate") return FALSE;
  evaluate(page, message);
  return TRUE;
}

/// Tells the program which process runs the page, which the engine itself does not.
void tellProcess(WebKitWebPage* page) {
  webkit_web_page_send_message_to_view(page, webkit_user_message_new("process", g_variant_new_int32(getpid())), nullptr,
                                       nullptr, nullptr);
}

void preparePage(WebKitWebExtension*, WebKitWebPage* page) {
  g_signal_connect(page, "user-message-received", G_CALLBACK(receive), nullptr);
  tellProcess(page);
}

}  // namespace

// The engine gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" [[gnu::visibility("default")]] void webkit_web_extension_initialize(WebKitWebExtension* extension) {
  withdrawSessionBus();
  g_signal_connect(extension, "page-created", G_CALLBACK(preparePage), nullptr);
}
