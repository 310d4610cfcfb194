#include "platform/linux/desktop/gsettings_picture.h"

#include <gio/gio.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "app/file_uri.h"
#include "platform/linux/handles.h"

namespace tavelle {
namespace {

using SchemaPtr = std::unique_ptr<GSettingsSchema, FreeWith<g_settings_schema_unref>>;

const GSettingsDesktop gnome{"org.gnome.desktop.background", false, "picture-uri", "picture-uri-dark",
                             "picture-options"};
const GSettingsDesktop cinnamon{"org.cinnamon.desktop.background", false, "picture-uri", "", "picture-options"};
const GSettingsDesktop mate{"org.mate.background", true, "picture-filename", "", "picture-options"};

/// What the session says of itself (`XDG_CURRENT_DESKTOP`, names between colons) against the desktop's settings.
const std::array<std::pair<std::string_view, const GSettingsDesktop*>, 8> desktops{{{"GNOME", &gnome},
                                                                                    {"ubuntu", &gnome},
                                                                                    {"Unity", &gnome},
                                                                                    {"Budgie", &gnome},
                                                                                    {"Pantheon", &gnome},
                                                                                    {"X-Cinnamon", &cinnamon},
                                                                                    {"Cinnamon", &cinnamon},
                                                                                    {"MATE", &mate}}};

}  // namespace

std::optional<GSettingsDesktop> runningGSettingsDesktop() {
  const char* const variable = std::getenv("XDG_CURRENT_DESKTOP");
  std::string_view names = variable ? variable : "";
  while (!names.empty()) {
    const std::string_view name = names.substr(0, names.find(':'));
    for (const auto& [desktopName, desktop] : desktops) {
      if (name == desktopName) return *desktop;
    }
    names.remove_prefix(std::min(name.size() + 1, names.size()));
  }
  return std::nullopt;
}

Result<void> setGSettingsPicture(const GSettingsDesktop& desktop, const std::filesystem::path& image) {
  // Asking for settings without a schema would end the process.
  const SchemaPtr schema(
      g_settings_schema_source_lookup(g_settings_schema_source_get_default(), desktop.schema.c_str(), TRUE));
  if (!schema) return Error{"the settings " + desktop.schema + " are not installed"};

  const auto settings = adopt(g_settings_new(desktop.schema.c_str()));
  const std::string picture = desktop.plainPath ? image.native() : fileUri(image);
  const std::array<std::pair<std::string, std::string>, 3> values{
      {{desktop.pictureKey, picture}, {desktop.darkPictureKey, picture}, {desktop.optionsKey, "zoom"}}};
  for (const auto& [key, value] : values) {
    if (key.empty() || !g_settings_schema_has_key(schema.get(), key.c_str())) continue;
    if (!g_settings_set_string(settings.get(), key.c_str(), value.c_str())) {
      return Error{"the setting " + desktop.schema + " " + key + " can't be changed"};
    }
  }
  // The process may end right after this.
  g_settings_sync();
  return {};
}

}  // namespace tavelle
