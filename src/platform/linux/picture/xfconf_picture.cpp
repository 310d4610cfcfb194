#include "platform/linux/picture/xfconf_picture.h"

#include <gdk/gdkx.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "base/text.h"
#include "platform/linux/picture/session_bus.h"

namespace tavelle {
namespace {

constexpr std::array<std::string_view, 1> currentDesktopName{"_NET_CURRENT_DESKTOP"};

constexpr const char* channel = "xfce4-desktop";
constexpr std::string_view styleKey = "/image-style";
constexpr std::string_view imageKey = "/last-image";
constexpr std::string_view workspaceMark = "/workspace";

/// xfdesktop's numbers of the ways to lay out a picture.
constexpr gint32 noImage = 0;
constexpr gint32 zoomedStyle = 5;

BusMethod xfconf(const char* method) {
  return {.service = "org.xfce.Xfconf", .path = "/org/xfce/Xfconf", .interface = "org.xfce.Xfconf", .name = method};
}

/// All settings of Xfce's desktop, by their names: `a{sv}`.
Result<GVariantPtr> allProperties() {
  auto answer =
      callSessionBus(xfconf("GetAllProperties"), g_variant_new("(ss)", channel, "/"), "(a{sv})", BusActivation::start);
  if (!answer) return answer;
  return GVariantPtr(g_variant_get_child_value(answer->get(), 0));
}

Result<void> setProperty(const std::string& name, GVariant* value) {
  const auto answer = callSessionBus(xfconf("SetProperty"), g_variant_new("(ssv)", channel, name.c_str(), value), "()",
                                     BusActivation::start);
  return answer ? Result<void>() : answer.error();
}

/// The numbers of the workspaces that have settings under the monitor's name.
std::set<std::uint32_t> workspacesWithSettings(GVariant* properties, const std::string& monitor) {
  std::set<std::uint32_t> found;
  GVariantIter each;
  g_variant_iter_init(&each, properties);
  const char* text = nullptr;
  while (g_variant_iter_next(&each, "{&sv}", &text, nullptr)) {
    const std::string_view name = text;
    const std::string start = monitor + std::string(workspaceMark);
    if (!name.starts_with(start)) continue;
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(name.data() + start.size(), name.data() + name.size(), number);
    if (error == std::errc() && end != name.data() + name.size() && *end == '/') found.insert(number);
  }
  return found;
}

std::string key(const std::string& monitor, std::uint32_t workspace, std::string_view end) {
  return monitor + std::string(workspaceMark) + std::to_string(workspace) + std::string(end);
}

/// The workspace whose picture is shown on all of them; none when the user wants each to show its own.
std::optional<std::uint32_t> workspaceForAll(GVariant* properties) {
  // What xfdesktop takes where nothing is set.
  gboolean single = TRUE;
  gint32 number = 0;
  g_variant_lookup(properties, "/backdrop/single-workspace-mode", "b", &single);
  g_variant_lookup(properties, "/backdrop/single-workspace-number", "i", &number);
  return single ? std::optional(static_cast<std::uint32_t>(number)) : std::nullopt;
}

}  // namespace

XfconfPicture::XfconfPicture(const XConnection& connection, const Monitors& monitors)
    : connection_(connection),
      monitors_(monitors),
      spaces_(connection),
      currentDesktop_(internAtoms(connection, currentDesktopName).front()) {}

Result<void> XfconfPicture::set(const std::filesystem::path& image, const Screen& screen) {
  // The bus carries UTF-8 only.
  if (!isUtf8(image.native()))
    return Error{"the desktop's settings can't hold the path " + escapedUtf8(image.native())};
  const auto properties = allProperties();
  if (!properties) return properties.error();
  const auto names = monitorNames(screen, properties->get());
  if (names.empty()) return Error{"the screen has no name and is no longer there"};

  const auto workspaces = std::max<std::size_t>(spaces_.list().size(), 1);
  for (const auto& monitor : names) {
    auto numbers = workspacesWithSettings(properties->get(), monitor);
    for (std::uint32_t i = 0; i < workspaces; ++i) numbers.insert(i);
    if (const auto shown = workspaceForAll(properties->get())) numbers.insert(*shown);
    for (const auto number : numbers) {
      if (auto done = setProperty(key(monitor, number, styleKey), g_variant_new_int32(zoomedStyle)); !done) return done;
      if (auto done = setProperty(key(monitor, number, imageKey), g_variant_new_string(image.c_str())); !done)
        return done;
    }
  }
  return {};
}

std::optional<std::string> XfconfPicture::current(const Screen& screen) const {
  const auto properties = allProperties();
  if (!properties) return std::nullopt;
  const auto shown = PropertyRequest(connection_, connection_.root(), currentDesktop_).readFirst();
  const auto number = workspaceForAll(properties->get()).value_or(shown.value_or(0));
  for (const auto& monitor : monitorNames(screen, properties->get())) {
    gint32 style = zoomedStyle;
    g_variant_lookup(properties->get(), key(monitor, number, styleKey).c_str(), "i", &style);
    if (style == noImage) return "no image";
    const char* image = nullptr;
    if (g_variant_lookup(properties->get(), key(monitor, number, imageKey).c_str(), "&s", &image)) {
      return "image " + std::string(image);
    }
  }
  return std::nullopt;
}

/// The names under which the screen's settings stand: by its connector and, where settings of the older kind are left,
/// by its number as well.
std::vector<std::string> XfconfPicture::monitorNames(const Screen& screen, GVariant* properties) const {
  const int xScreen = gdk_x11_screen_get_screen_number(gdk_display_get_default_screen(monitors_.display()));
  const std::string start = "/backdrop/screen" + std::to_string(xScreen) + "/monitor";
  std::vector<std::string> names;
  if (!screen.name.empty()) names.push_back(start + screen.name);
  if (const auto number = monitors_.numberOf(screen)) {
    const std::string numbered = start + std::to_string(*number);
    if (names.empty() || !workspacesWithSettings(properties, numbered).empty()) names.push_back(numbered);
  }
  return names;
}

}  // namespace tavelle
