#include "platform/linux/toolkit/wallpaper_surface.h"

#include "platform/linux/toolkit/web_widget.h"

namespace tavelle {

WallpaperSurface::WallpaperSurface() {
  set_title("Tavelle wallpaper");
  set_decorated(false);
  set_accept_focus(false);
  set_focus_on_map(false);
  signal_realize().connect([this] { letClicksThrough(); });
  set_app_paintable(true);
  signal_draw().connect(
      [](const Cairo::RefPtr<Cairo::Context>& context) {
        context->set_source_rgb(0, 0, 0);
        context->paint();
        return false;
      },
      false);
}

void WallpaperSurface::fillWith(WebView& content) {
  remove();
  gtk_container_add(GTK_CONTAINER(gobj()), dynamic_cast<WebWidget&>(content).widget());
}

void WallpaperSurface::letClicksThrough() { input_shape_combine_region(Cairo::Region::create()); }

}  // namespace tavelle
