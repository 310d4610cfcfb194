// Loaded by the engine into each page process. It tells the program which process runs the page, which the engine
// itself does not.

#include <unistd.h>
#include <webkit2/webkit-web-extension.h>

namespace {

void tellProcess(WebKitWebExtension*, WebKitWebPage* page) {
  webkit_web_page_send_message_to_view(page, webkit_user_message_new("process", g_variant_new_int32(getpid())), nullptr,
                                       nullptr, nullptr);
}

}  // namespace

extern "C" [[gnu::visibility("default")]] void webkit_web_extension_initialize(WebKitWebExtension* extension) {
  g_signal_connect(extension, "page-created", G_CALLBACK(tellProcess), nullptr);
}
