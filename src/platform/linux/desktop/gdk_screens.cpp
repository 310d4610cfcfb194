#include "platform/linux/desktop/gdk_screens.h"

#include <algorithm>
#include <memory>

#include "platform/linux/handles.h"

namespace tavelle {
namespace {

GdkRectangle geometryOf(GdkMonitor* monitor) {
  GdkRectangle geometry;
  gdk_monitor_get_geometry(monitor, &geometry);
  return geometry;
}

/// The main monitor first, the others in GDK's order.
std::vector<GdkMonitor*> monitors() {
  GdkDisplay* const display = gdk_display_get_default();
  const int count = gdk_display_get_n_monitors(display);
  std::vector<GdkMonitor*> all;
  all.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) all.push_back(gdk_display_get_monitor(display, i));
  std::stable_partition(all.begin(), all.end(), gdk_monitor_is_primary);
  return all;
}

Screen screenOf(GdkMonitor* monitor, const GdkRectangle& main) {
  const GdkRectangle place = geometryOf(monitor);
  const char* const model = gdk_monitor_get_model(monitor);
  const double width = place.width;
  const double height = place.height;
  const double x = place.x - main.x;
  const double y = place.y - main.y;
  return {.name = model ? model : "",
          .frame = {x, main.height - (y + height), width, height},
          .bounds = {x, y, width, height}};
}

/// Calls one function from several signals of the display and its screen, until it dies.
class ChangeListener {
 public:
  explicit ChangeListener(std::function<void()> changed) : changed_(std::move(changed)) {
    GdkDisplay* const display = gdk_display_get_default();
    GdkScreen* const screen = gdk_display_get_default_screen(display);
    for (const auto& [object, signal] :
         {std::pair{G_OBJECT(display), "monitor-added"}, std::pair{G_OBJECT(display), "monitor-removed"},
          std::pair{G_OBJECT(screen), "monitors-changed"}, std::pair{G_OBJECT(screen), "size-changed"}}) {
      g_signal_connect_swapped(object, signal, G_CALLBACK(notify), this);
    }
  }
  ChangeListener(const ChangeListener&) = delete;
  ChangeListener& operator=(const ChangeListener&) = delete;
  ~ChangeListener() {
    if (idle_ != 0) g_source_remove(idle_);
    GdkDisplay* const display = gdk_display_get_default();
    g_signal_handlers_disconnect_by_data(display, this);
    g_signal_handlers_disconnect_by_data(gdk_display_get_default_screen(display), this);
  }

 private:
  static void notify(ChangeListener* self) {
    // GDK tells of a monitor before it has settled its list, so the list is looked at when it has.
    if (self->idle_ == 0) self->idle_ = g_idle_add(tell, self);
  }
  static gboolean tell(gpointer data) {
    auto* const self = static_cast<ChangeListener*>(data);
    self->idle_ = 0;
    // The callback may end this listener.
    const auto changed = self->changed_;
    changed();
    return G_SOURCE_REMOVE;
  }

  std::function<void()> changed_;
  guint idle_ = 0;
};

}  // namespace

std::vector<Screen> GdkScreens::list() const {
  const auto all = monitors();
  std::vector<Screen> screens;
  screens.reserve(all.size());
  for (GdkMonitor* monitor : all) screens.push_back(screenOf(monitor, geometryOf(all.front())));
  return screens;
}

Registration GdkScreens::onChange(std::function<void()> changed) {
  return Registration([listener = std::make_shared<ChangeListener>(std::move(changed))] {});
}

GdkPoint mainScreenOrigin() {
  const auto all = monitors();
  if (all.empty()) return {0, 0};
  const GdkRectangle main = geometryOf(all.front());
  return {main.x, main.y};
}

}  // namespace tavelle
