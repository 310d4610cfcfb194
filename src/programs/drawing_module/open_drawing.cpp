#include "platform/linux/drawing/cairo_bitmaps.h"
#include "platform/linux/modules.h"

extern "C" [[gnu::visibility("default")]] std::unique_ptr<tavelle::Bitmaps> tavelleOpenDrawing();

std::unique_ptr<tavelle::Bitmaps> tavelleOpenDrawing() { return std::make_unique<tavelle::CairoBitmaps>(); }
