#include "platform/linux/picture/plasma_picture.h"

#include <string>
#include <string_view>

#include "base/file_uri.h"
#include "base/text.h"
#include "platform/linux/picture/session_bus.h"

namespace tavelle {
namespace {

/// How the answer of a script begins that has done its work; anything else is a complaint.
constexpr std::string_view success = "tavelle: ";

/// Finds the screen. The shell counts its screens in its own way, and may measure them in other pixels than the X
/// server, so a screen is told by the share that it has in the rectangle round all screens. Desktops of activities that
/// are out of sight stand on no screen, but remember the one they were on last.
constexpr std::string_view findingJS = R"JS(
  function edges(place, whole) {
    return [(place.x - whole.x) / whole.width, (place.y - whole.y) / whole.height,
            (place.x + place.width - whole.x) / whole.width, (place.y + place.height - whole.y) / whole.height];
  }
  function around(places) {
    var left = Infinity, top = Infinity, right = -Infinity, bottom = -Infinity;
    for (var i = 0; i < places.length; ++i) {
      left = Math.min(left, places[i].x);
      top = Math.min(top, places[i].y);
      right = Math.max(right, places[i].x + places[i].width);
      bottom = Math.max(bottom, places[i].y + places[i].height);
    }
    return {x: left, y: top, width: right - left, height: bottom - top};
  }
  function screenAt(wanted, all) {
    var numbers = [], places = [];
    for (var i = 0; i < all.length; ++i) {
      if (all[i].screen < 0 || numbers.indexOf(all[i].screen) >= 0) continue;
      numbers.push(all[i].screen);
      places.push(screenGeometry(all[i].screen));
    }
    var whole = around(places), best = -1, least = tolerance;
    for (var i = 0; i < places.length; ++i) {
      var found = edges(places[i], whole), distance = 0;
      for (var k = 0; k < 4; ++k) distance += Math.abs(found[k] - wanted[k]);
      if (distance < least) {
        best = numbers[i];
        least = distance;
      }
    }
    return best;
  }
  var all = desktops(), screen = screenAt(wanted, all);
  if (screen < 0) {
    print("there is no such screen");
    return;
  }
)JS";

/// Fill mode 2 scales the image to cover the screen with its aspect kept, and crops it.
constexpr std::string_view settingJS = R"JS(
  for (var i = 0; i < all.length; ++i) {
    var last = all[i].screen;
    if (last < 0) {
      all[i].currentConfigGroup = [];
      last = Number(all[i].readConfig("lastScreen", -1));
    }
    if (last !== screen) continue;
    all[i].wallpaperPlugin = "org.kde.image";
    all[i].currentConfigGroup = ["Wallpaper", "org.kde.image", "General"];
    all[i].writeConfig("Image", image);
    all[i].writeConfig("FillMode", 2);
  }
  print("tavelle: set");
)JS";

constexpr std::string_view readingJS = R"JS(
  for (var i = 0; i < all.length; ++i) {
    if (all[i].screen !== screen) continue;
    all[i].currentConfigGroup = ["Wallpaper", all[i].wallpaperPlugin, "General"];
    print("tavelle: " + all[i].wallpaperPlugin + " " + all[i].readConfig("Image", ""));
    return;
  }
)JS";

/// The rectangle's edges, left, top, right and bottom, as shares of the one round all screens.
std::string edgesForScript(const Rect& place, const Rect& whole) {
  std::string text = "[";
  for (const double edge : {(place.x - whole.x) / whole.width, (place.y - whole.y) / whole.height,
                            (place.maxX() - whole.x) / whole.width, (place.maxY() - whole.y) / whole.height}) {
    text += fixedDecimal(edge, 6) + ",";
  }
  return text + "]";
}

/// Runs the script's parts in the shell, as one function, and gives what it has to say. `whole` is the rectangle round
/// all screens.
Result<std::string> runForScreen(const Screen& screen, const Rect& whole, std::string_view declarations,
                                 std::string_view action) {
  const std::string script =
      "(function () {\n  var tolerance = 0.25;\n  var wanted = " + edgesForScript(screen.bounds, whole) + ";\n" +
      std::string(declarations) + std::string(findingJS) + std::string(action) + "})();\n";
  constexpr BusMethod evaluate{.service = "org.kde.plasmashell",
                               .path = "/PlasmaShell",
                               .interface = "org.kde.PlasmaShell",
                               .name = "evaluateScript"};
  const auto reply = callSessionBus(evaluate, g_variant_new("(s)", script.c_str()), "(s)", BusActivation::onlyRunning);
  if (!reply) return reply.error();
  const char* text = nullptr;
  g_variant_get(reply->get(), "(&s)", &text);
  const std::string_view answer = text;
  if (answer.empty()) return Error{"the Plasma shell did not finish the script"};
  if (!answer.starts_with(success)) return Error{"the Plasma shell says: " + oneLine(answer)};
  return std::string(answer.substr(success.size()));
}

}  // namespace

Result<void> PlasmaPicture::set(const std::filesystem::path& image, const Screen& screen) {
  // An address is printable ASCII without quotation marks (but for the plain ') and backslashes, whatever the path is.
  const auto answer =
      runForScreen(screen, monitors_.extent(), "  var image = \"" + fileUri(image) + "\";\n", settingJS);
  return answer ? Result<void>() : answer.error();
}

std::optional<std::string> PlasmaPicture::current(const Screen& screen) const {
  const auto answer = runForScreen(screen, monitors_.extent(), "", readingJS);
  return answer ? std::optional(*answer) : std::nullopt;
}

}  // namespace tavelle
