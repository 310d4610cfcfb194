#include "platform/linux/sway/sway_tree.h"

#include <json-glib/json-glib.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string>

#include "platform/linux/handles.h"

namespace tavelle {
namespace {

/// Members of an object that may be missing or of another type than is expected.
JsonNode* member(JsonObject* object, const char* name) {
  return object ? json_object_get_member(object, name) : nullptr;
}

JsonObject* asObject(JsonNode* node) {
  return node && JSON_NODE_HOLDS_OBJECT(node) ? json_node_get_object(node) : nullptr;
}

bool holds(JsonNode* node, GType type) {
  return node && JSON_NODE_HOLDS_VALUE(node) && json_node_get_value_type(node) == type;
}

std::optional<std::int64_t> integerOf(JsonObject* object, const char* name) {
  JsonNode* const node = member(object, name);
  if (!holds(node, G_TYPE_INT64)) return std::nullopt;
  return json_node_get_int(node);
}

bool isTrue(JsonObject* object, const char* name) {
  JsonNode* const node = member(object, name);
  return holds(node, G_TYPE_BOOLEAN) && json_node_get_boolean(node);
}

std::string_view textOf(JsonObject* object, const char* name) {
  JsonNode* const node = member(object, name);
  return holds(node, G_TYPE_STRING) ? json_node_get_string(node) : "";
}

std::vector<JsonObject*> objectsIn(JsonNode* node) {
  std::vector<JsonObject*> objects;
  if (!node || !JSON_NODE_HOLDS_ARRAY(node)) return objects;
  JsonArray* const array = json_node_get_array(node);
  for (guint i = 0; i < json_array_get_length(array); ++i) {
    if (JsonObject* const object = asObject(json_array_get_element(array, i))) objects.push_back(object);
  }
  return objects;
}

std::optional<Rect> rectOf(JsonObject* object, const char* name) {
  JsonObject* const rect = asObject(member(object, name));
  const auto x = integerOf(rect, "x");
  const auto y = integerOf(rect, "y");
  const auto width = integerOf(rect, "width");
  const auto height = integerOf(rect, "height");
  if (!x || !y || !width || !height) return std::nullopt;
  return Rect{static_cast<double>(*x), static_cast<double>(*y), static_cast<double>(*width),
              static_cast<double>(*height)};
}

/// Owns what it has read. Empty when the text is no JSON.
class Json {
 public:
  explicit Json(std::string_view text) : parser_(adopt(json_parser_new_immutable())) {
    if (text.size() <= static_cast<std::size_t>(std::numeric_limits<gssize>::max())) {
      json_parser_load_from_data(parser_.get(), text.data(), static_cast<gssize>(text.size()), nullptr);
    }
  }
  JsonNode* root() const { return json_parser_get_root(parser_.get()); }

 private:
  const GObjectPtr<JsonParser> parser_;
};

/// What lies over what, the topmost first.
enum class Level { fullscreen, floating, tiled };

/// Collects the windows of a tree.
class Collector {
 public:
  /// `row` is how many title bars lie one below the other above the node.
  void visit(JsonObject* node, Level level, std::size_t row) {
    const auto first = windows_.size();
    // Workspaces say that they are full-screen, whatever is on them.
    const bool isContainer = textOf(node, "type") == "con" || textOf(node, "type") == "floating_con";
    if (isContainer && integerOf(node, "fullscreen_mode").value_or(0) != 0) level = Level::fullscreen;
    // Of nothing but windows does sway say that they are in sight.
    if (isTrue(node, "visible")) windows_.emplace_back(level, describe(node));
    visitChildren(node, level);
    // The title bars of the node: not part of its own rectangle, but of what the topmost windows in it hide.
    const auto bar = rectOf(node, "deco_rect");
    const auto rect = rectOf(node, "rect");
    if (isContainer && bar && rect) stretch(first, rect->y, bar->height * static_cast<double>(row));
  }

  std::vector<WindowDescription> take() {
    std::stable_sort(windows_.begin(), windows_.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    std::vector<WindowDescription> all;
    all.reserve(windows_.size());
    for (const auto& [level, window] : windows_) all.push_back(window);
    return all;
  }

 private:
  static WindowDescription describe(JsonObject* node) {
    const auto pid = integerOf(node, "pid");
    std::optional<std::int32_t> owner;
    if (pid && *pid > 0 && *pid <= std::numeric_limits<std::int32_t>::max()) owner = static_cast<std::int32_t>(*pid);
    return {.layer = 0, .owner = owner, .alpha = std::nullopt, .bounds = rectOf(node, "rect")};
  }

  void visitChildren(JsonObject* node, Level level) {
    const auto tiled = objectsIn(member(node, "nodes"));
    const std::size_t row = textOf(node, "layout") == "stacked" ? tiled.size() : 1;
    for (JsonObject* child : tiled) visit(child, level, row);
    // Of those that float the last is the topmost.
    auto floating = objectsIn(member(node, "floating_nodes"));
    std::reverse(floating.begin(), floating.end());
    for (JsonObject* child : floating) visit(child, Level::floating, 1);
  }

  /// Adds the bars to those windows from the `first` on that lie right below them. Of a node that holds others sway 1.7
  /// takes the bars off twice, so that its rectangle begins too low by them.
  void stretch(std::size_t first, double top, double bars) {
    for (auto i = first; i < windows_.size(); ++i) {
      auto& bounds = windows_[i].second.bounds;
      if (!bounds || (bounds->y != top && bounds->y != top - bars)) continue;
      bounds->y -= bars;
      bounds->height += bars;
    }
  }

  std::vector<std::pair<Level, WindowDescription>> windows_;
};

}  // namespace

std::optional<std::vector<WindowDescription>> windowsInSwayTree(std::string_view tree) {
  const Json json(tree);
  JsonObject* const root = asObject(json.root());
  if (textOf(root, "type") != "root") return std::nullopt;
  Collector windows;
  windows.visit(root, Level::tiled, 1);
  return windows.take();
}

std::vector<Rect> shownSwayWorkspaces(std::string_view workspaces) {
  const Json json(workspaces);
  std::vector<Rect> shown;
  for (JsonObject* workspace : objectsIn(json.root())) {
    const auto rect = rectOf(workspace, "rect");
    if (rect && isTrue(workspace, "visible")) shown.push_back(*rect);
  }
  return shown;
}

Rect areaWithoutPanels(const Rect& output, const std::vector<Rect>& workspaces) {
  for (const Rect& workspace : workspaces) {
    if (workspace.isEmpty() ||
        !output.contains({workspace.x + workspace.width / 2, workspace.y + workspace.height / 2})) {
      continue;
    }
    const Rect area = intersection(output, workspace);
    const double gap =
        std::min({area.x - output.x, area.y - output.y, output.maxX() - area.maxX(), output.maxY() - area.maxY()});
    return {area.x - gap, area.y - gap, area.width + 2 * gap, area.height + 2 * gap};
  }
  return output;
}

bool mayMoveWindows(std::string_view event) {
  const Json json(event);
  constexpr std::array<std::string_view, 4> harmless{"title", "mark", "urgent", "rename"};
  const auto change = textOf(asObject(json.root()), "change");
  return std::find(harmless.begin(), harmless.end(), change) == harmless.end();
}

}  // namespace tavelle
