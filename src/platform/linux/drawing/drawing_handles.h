#pragma once

#include <cairo.h>
#include <pango/pango.h>

#include <memory>

#include "platform/linux/handles.h"

namespace tavelle {

using CairoSurfacePtr = std::unique_ptr<cairo_surface_t, FreeWith<cairo_surface_destroy>>;
using CairoPtr = std::unique_ptr<cairo_t, FreeWith<cairo_destroy>>;
using CairoFontOptionsPtr = std::unique_ptr<cairo_font_options_t, FreeWith<cairo_font_options_destroy>>;
using PangoFontDescriptionPtr = std::unique_ptr<PangoFontDescription, FreeWith<pango_font_description_free>>;
using PangoFontMetricsPtr = std::unique_ptr<PangoFontMetrics, FreeWith<pango_font_metrics_unref>>;

}  // namespace tavelle
