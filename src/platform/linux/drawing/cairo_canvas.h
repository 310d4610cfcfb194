#pragma once

#include <cairo.h>
#include <pango/pango.h>

#include <memory>
#include <optional>

#include "platform/canvas.h"
#include "platform/linux/handles.h"

namespace tavelle {

using CairoSurfacePtr = std::unique_ptr<cairo_surface_t, FreeWith<cairo_surface_destroy>>;
using CairoPtr = std::unique_ptr<cairo_t, FreeWith<cairo_destroy>>;
using CairoFontOptionsPtr = std::unique_ptr<cairo_font_options_t, FreeWith<cairo_font_options_destroy>>;
using PangoFontDescriptionPtr = std::unique_ptr<PangoFontDescription, FreeWith<pango_font_description_free>>;
using PangoFontMetricsPtr = std::unique_ptr<PangoFontMetrics, FreeWith<pango_font_metrics_unref>>;

/// Draws with Cairo, and text with Pango. A point is a unit of the Cairo context's space as it is when the canvas is
/// made: a scale or a surface's device scale gives more pixels a point.
class CairoCanvas final : public Canvas {
 public:
  /// `context` is kept alive; it must not be in an error state. Text follows the font options of `text`; without one,
  /// those of the context's surface.
  explicit CairoCanvas(cairo_t* context, PangoContext* text = nullptr);

  void save() override { cairo_save(context_.get()); }
  void restore() override { cairo_restore(context_.get()); }
  void translate(double x, double y) override { cairo_translate(context_.get(), x, y); }
  void clip(const Rect& area) override;
  void fillRoundedRect(const Rect& area, double radius, const Color& color) override;
  FontMetrics metrics(const TextFont& font) override;
  void drawText(std::string_view text, const Rect& area, const TextFont& font, const Color& color) override;
  std::optional<Size> symbolSize(std::string_view name, double pointSize) const override;
  void drawSymbol(std::string_view name, double pointSize, const Point& corner, const Color& color) override;

 private:
  void setColor(const Color& color);
  void use(const TextFont& font);
  double toPixelRow(double y) const;

  CairoPtr context_;
  GObjectPtr<PangoLayout> layout_;
  /// What the layout is set to: menus take one font for all.
  std::optional<TextFont> font_;
  FontMetrics metrics_;
};

/// Pictures that Cairo draws, the text smoothed in greys as for any screen.
class CairoBitmaps final : public Bitmaps {
 public:
  std::unique_ptr<Bitmap> make(double width, double height, double scale) override;
};

}  // namespace tavelle
