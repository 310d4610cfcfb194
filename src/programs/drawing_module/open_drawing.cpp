#include "platform/linux/drawing/cairo_canvas.h"
#include "platform/linux/modules.h"

extern "C" [[gnu::visibility("default")]] std::unique_ptr<tavelle::Bitmaps> tavelleOpenDrawing();

std::unique_ptr<tavelle::Bitmaps> tavelleOpenDrawing() { return std::make_unique<tavelle::CairoBitmaps>(); }
