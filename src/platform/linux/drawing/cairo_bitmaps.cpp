#include "platform/linux/drawing/cairo_bitmaps.h"

#include <pango/pangocairo.h>

#include <cmath>
#include <utility>

#include "platform/linux/drawing/cairo_canvas.h"

namespace tavelle {
namespace {

/// Whatever the user's settings say of the screen, so that the picture fits others, too. Letters rounded to whole
/// points would stand too far apart.
GObjectPtr<PangoContext> textForAnyScreen(cairo_t* context) {
  const CairoFontOptionsPtr options(cairo_font_options_create());
  cairo_font_options_set_antialias(options.get(), CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_SLIGHT);
  cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
  auto text = adopt(pango_cairo_create_context(context));
  pango_cairo_context_set_font_options(text.get(), options.get());
  pango_context_set_round_glyph_positions(text.get(), FALSE);
  return text;
}

class CairoBitmap final : public Bitmap {
 public:
  CairoBitmap(CairoSurfacePtr surface, const CairoPtr& context)
      : surface_(std::move(surface)), canvas_(context.get(), textForAnyScreen(context.get()).get()) {}

  Canvas& canvas() override { return canvas_; }

  Result<std::string> png() override {
    std::string bytes;
    const auto append = [](void* to, const unsigned char* data, unsigned length) {
      // Nothing may be thrown through the C library.
      try {
        static_cast<std::string*>(to)->append(reinterpret_cast<const char*>(data), length);
        return CAIRO_STATUS_SUCCESS;
      } catch (...) {
        return CAIRO_STATUS_NO_MEMORY;
      }
    };
    const auto status = cairo_surface_write_to_png_stream(surface_.get(), append, &bytes);
    if (status != CAIRO_STATUS_SUCCESS) return Error{cairo_status_to_string(status)};
    return bytes;
  }

 private:
  CairoSurfacePtr surface_;
  CairoCanvas canvas_;
};

}  // namespace

std::unique_ptr<Bitmap> CairoBitmaps::make(double width, double height, double scale) {
  const double columns = std::ceil(width * scale);
  const double rows = std::ceil(height * scale);
  // Cairo's own limit of an image's sides.
  constexpr double longestSide = 32767;
  if (!(columns >= 1 && rows >= 1 && columns <= longestSide && rows <= longestSide)) return nullptr;
  CairoSurfacePtr surface(
      cairo_image_surface_create(CAIRO_FORMAT_ARGB32, static_cast<int>(columns), static_cast<int>(rows)));
  cairo_surface_set_device_scale(surface.get(), scale, scale);
  const CairoPtr context(cairo_create(surface.get()));
  if (cairo_status(context.get()) != CAIRO_STATUS_SUCCESS) return nullptr;
  return std::make_unique<CairoBitmap>(std::move(surface), context);
}

}  // namespace tavelle
