#include "platform/linux/picture/gsettings_picture.h"

#include <gio/gio.h>

#include <array>
#include <string_view>
#include <utility>

#include "base/file_uri.h"
#include "base/text.h"
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

/// Asking for settings without a schema would end the process.
SchemaPtr installed(const GSettingsDesktop& desktop) {
  return SchemaPtr(
      g_settings_schema_source_lookup(g_settings_schema_source_get_default(), desktop.schema.c_str(), TRUE));
}

bool has(const SchemaPtr& schema, const std::string& key) {
  return !key.empty() && g_settings_schema_has_key(schema.get(), key.c_str());
}

}  // namespace

std::optional<GSettingsDesktop> gsettingsDesktop(std::string_view name) {
  for (const auto& [desktopName, desktop] : desktops) {
    if (name == desktopName) return *desktop;
  }
  return std::nullopt;
}

Result<void> GSettingsPicture::set(const std::filesystem::path& image, const Screen&) {
  const auto schema = installed(desktop_);
  if (!schema) return Error{"the settings " + desktop_.schema + " are not installed"};
  const std::string picture = desktop_.plainPath ? image.native() : fileUri(image);
  // Settings hold UTF-8 only.
  if (!isUtf8(picture)) return Error{"the desktop's settings can't hold the path " + escapedUtf8(picture)};

  const auto settings = adopt(g_settings_new(desktop_.schema.c_str()));
  const std::array<std::pair<std::string, std::string>, 3> values{
      {{desktop_.pictureKey, picture}, {desktop_.darkPictureKey, picture}, {desktop_.optionsKey, "zoom"}}};
  for (const auto& [key, value] : values) {
    if (!has(schema, key)) continue;
    if (!g_settings_set_string(settings.get(), key.c_str(), value.c_str())) {
      return Error{"the setting " + desktop_.schema + " " + key + " can't be changed"};
    }
  }
  // The process may end right after this.
  g_settings_sync();
  return {};
}

std::optional<std::string> GSettingsPicture::current(const Screen&) const {
  const auto schema = installed(desktop_);
  if (!schema) return std::nullopt;
  const auto settings = adopt(g_settings_new(desktop_.schema.c_str()));
  std::string name;
  for (const auto& key : {desktop_.pictureKey, desktop_.darkPictureKey}) {
    if (!has(schema, key)) continue;
    const GCharPtr value(g_settings_get_string(settings.get(), key.c_str()));
    name.append(key).append("=").append(value.get()).append("\n");
  }
  return name;
}

}  // namespace tavelle
