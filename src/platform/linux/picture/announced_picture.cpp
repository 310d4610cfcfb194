#include "platform/linux/picture/announced_picture.h"

#include <gio/gio.h>

#include "base/file_uri.h"
#include "platform/linux/handles.h"

namespace tavelle {
namespace {

/// Tells without waiting for an answer: there may be no agent, and no session bus.
void announce(const std::filesystem::path& image, const Screen& screen) {
  const auto bus = adopt(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
  if (!bus) return;
  // An address holds no spaces; what follows the first is the screen's name.
  const std::string announcement = fileUri(image) + " " + screen.name;
  GVariantBuilder arguments;
  g_variant_builder_init(&arguments, G_VARIANT_TYPE("av"));
  g_variant_builder_add(&arguments, "v", g_variant_new_string(announcement.c_str()));
  g_dbus_connection_call(bus.get(), agentName, "/org/tavelle/WallpaperAgent", "org.gtk.Actions", "Activate",
                         g_variant_new("(sava{sv})", pictureSetAction, &arguments, nullptr), nullptr,
                         G_DBUS_CALL_FLAGS_NO_AUTO_START, -1, nullptr, nullptr, nullptr);
  // The process may end right after this.
  g_dbus_connection_flush_sync(bus.get(), nullptr, nullptr);
}

}  // namespace

Result<void> AnnouncedPicture::set(const std::filesystem::path& image, const Screen& screen) {
  auto result = picture_.set(image, screen);
  std::error_code code;
  if (result) announce(std::filesystem::absolute(image, code).lexically_normal(), screen);
  return result;
}

}  // namespace tavelle
