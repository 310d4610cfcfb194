#include "platform/linux/drawing/cairo_canvas.h"

#include <pango/pangocairo.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace tavelle {
namespace {

/// A bent stroke. Sizes are in units of the text's size, corners in those of the symbol's own width and height.
struct Symbol {
  std::string_view name;
  Size size;
  std::array<Point, 3> corners;
};

constexpr std::array<Symbol, 3> symbols{{{"checkmark", {0.91, 0.91}, {{{0.09, 0.56}, {0.37, 0.86}, {0.91, 0.13}}}},
                                         {"chevron.up", {0.91, 0.55}, {{{0.10, 0.84}, {0.50, 0.16}, {0.90, 0.84}}}},
                                         {"chevron.down", {0.91, 0.55}, {{{0.10, 0.16}, {0.50, 0.84}, {0.90, 0.16}}}}}};

/// As heavy as the stems of semibold letters.
constexpr double strokeWidth = 0.155;

const Symbol* symbolNamed(std::string_view name) {
  const auto* const found =
      std::find_if(symbols.begin(), symbols.end(), [&](const Symbol& each) { return each.name == name; });
  return found == symbols.end() ? nullptr : found;
}

/// Whole points, so that a symbol in the middle of a row meets the pixels.
Size sizeOf(const Symbol& symbol, double pointSize) {
  return {std::round(symbol.size.width * pointSize), std::round(symbol.size.height * pointSize)};
}

double toPoints(int pangoUnits) { return static_cast<double>(pangoUnits) / PANGO_SCALE; }

GObjectPtr<PangoLayout> oneLineLayout(cairo_t* context, PangoContext* text) {
  auto layout = adopt(text ? pango_layout_new(text) : pango_cairo_create_layout(context));
  pango_layout_set_single_paragraph_mode(layout.get(), TRUE);
  pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
  return layout;
}

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

CairoCanvas::CairoCanvas(cairo_t* context, PangoContext* text)
    : context_(cairo_reference(context)), layout_(oneLineLayout(context, text)) {}

void CairoCanvas::clip(const Rect& area) {
  cairo_rectangle(context_.get(), area.x, area.y, area.width, area.height);
  cairo_clip(context_.get());
}

void CairoCanvas::setColor(const Color& color) {
  cairo_set_source_rgba(context_.get(), color.red, color.green, color.blue, color.opacity);
}

void CairoCanvas::fillRoundedRect(const Rect& area, double radius, const Color& color) {
  if (area.isEmpty()) return;
  cairo_t* const context = context_.get();
  const double round = std::clamp(radius, 0.0, std::min(area.width, area.height) / 2);
  constexpr double quarter = std::numbers::pi / 2;
  cairo_new_path(context);
  cairo_arc(context, area.maxX() - round, area.y + round, round, -quarter, 0);
  cairo_arc(context, area.maxX() - round, area.maxY() - round, round, 0, quarter);
  cairo_arc(context, area.x + round, area.maxY() - round, round, quarter, 2 * quarter);
  cairo_arc(context, area.x + round, area.y + round, round, 2 * quarter, 3 * quarter);
  cairo_close_path(context);
  setColor(color);
  cairo_fill(context);
}

void CairoCanvas::use(const TextFont& font) {
  if (font_ == font) return;
  font_ = font;
  const PangoFontDescriptionPtr description(pango_font_description_new());
  pango_font_description_set_family(description.get(), font.family.c_str());
  pango_font_description_set_absolute_size(description.get(), font.size * PANGO_SCALE);
  pango_layout_set_font_description(layout_.get(), description.get());
  // Of the font alone: those of the context would count all fonts that the user's language may need.
  PangoContext* const context = pango_layout_get_context(layout_.get());
  // Under a scale the library tells them divided by it. The next text sets the scale again.
  pango_context_set_matrix(context, nullptr);
  const auto loaded = adopt(pango_font_map_load_font(pango_context_get_font_map(context), context, description.get()));
  const PangoFontMetricsPtr metrics(pango_font_get_metrics(loaded.get(), nullptr));
  metrics_ = {toPoints(pango_font_metrics_get_ascent(metrics.get())),
              -toPoints(pango_font_metrics_get_descent(metrics.get()))};
}

FontMetrics CairoCanvas::metrics(const TextFont& font) {
  use(font);
  return metrics_;
}

double CairoCanvas::toPixelRow(double y) const {
  double across = 0;
  cairo_user_to_device(context_.get(), &across, &y);
  y = std::round(y);
  across = 0;
  cairo_device_to_user(context_.get(), &across, &y);
  return y;
}

void CairoCanvas::drawText(std::string_view text, const Rect& area, const TextFont& font, const Color& color) {
  if (area.isEmpty()) return;
  cairo_t* const context = context_.get();
  PangoLayout* const layout = layout_.get();
  use(font);
  pango_cairo_update_layout(context, layout);
  pango_layout_set_text(layout, text.data(), static_cast<int>(text.size()));
  pango_layout_set_width(layout, static_cast<int>(std::lround(area.width * PANGO_SCALE)));

  // Text that is read from the right lies at the right of the layout's width.
  PangoRectangle extents{};
  pango_layout_get_extents(layout, nullptr, &extents);
  const double left = area.x - toPoints(extents.x);
  const double baseline = toPixelRow(area.y + metrics_.ascender);
  const CanvasState outer(*this);
  // What is too narrow even for the ellipsis.
  if (toPoints(extents.width) > area.width) clip(area);
  setColor(color);
  cairo_move_to(context, left, baseline - toPoints(pango_layout_get_baseline(layout)));
  pango_cairo_show_layout(context, layout);
}

std::optional<Size> CairoCanvas::symbolSize(std::string_view name, double pointSize) const {
  const Symbol* const symbol = symbolNamed(name);
  return symbol ? std::optional(sizeOf(*symbol, pointSize)) : std::nullopt;
}

void CairoCanvas::drawSymbol(std::string_view name, double pointSize, const Point& corner, const Color& color) {
  const Symbol* const symbol = symbolNamed(name);
  if (!symbol) return;
  cairo_t* const context = context_.get();
  const Size size = sizeOf(*symbol, pointSize);
  const CanvasState outer(*this);
  cairo_new_path(context);
  for (const Point& each : symbol->corners) {
    cairo_line_to(context, corner.x + each.x * size.width, corner.y + each.y * size.height);
  }
  cairo_set_line_width(context, strokeWidth * pointSize);
  cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
  cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
  setColor(color);
  cairo_stroke(context);
}

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
