// Loaded by the engine into each page process, before the page.

#include <unistd.h>
#include <webkit2/webkit-web-extension.h>

namespace {

/// The engine announces each playing page on the session bus as a media player, and holds off the screen saver and
/// sleep for as long as it plays. A wallpaper is to do neither, so that its process gets no session bus.
void withdrawSessionBus() { g_setenv("DBUS_SESSION_BUS_ADDRESS", "disabled:", TRUE); }

/// Tells the program which process runs the page, which the engine itself does not.
void tellProcess(WebKitWebExtension*, WebKitWebPage* page) {
  webkit_web_page_send_message_to_view(page, webkit_user_message_new("process", g_variant_new_int32(getpid())), nullptr,
                                       nullptr, nullptr);
}

}  // namespace

// The engine gives the name.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" [[gnu::visibility("default")]] void webkit_web_extension_initialize(WebKitWebExtension* extension) {
  withdrawSessionBus();
  g_signal_connect(extension, "page-created", G_CALLBACK(tellProcess), nullptr);
}
