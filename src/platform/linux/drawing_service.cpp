#include "platform/linux/drawing_service.h"

#include "platform/bitmaps.h"
#include "platform/linux/private_library.h"

namespace tavelle {

Result<std::unique_ptr<Bitmaps>> openDrawing() {
  const auto open = loadPrivateLibrary("drawing.so", "tavelleOpenDrawing");
  if (!open) return open.error();
  return reinterpret_cast<OpenDrawing*>(*open)();
}

}  // namespace tavelle
