#include "playback/screen_signature.h"

#include "app/text.h"
#include "platform/screens.h"

namespace tavelle {

std::string screenSignature(const std::vector<Screen>& screens) {
  std::string signature;
  for (const Screen& screen : screens) {
    if (!signature.empty()) signature += '|';
    const Rect& frame = screen.frame;
    signature += "(" + shortestDecimal(frame.x) + ", " + shortestDecimal(frame.y) + ", " +
                 shortestDecimal(frame.width) + ", " + shortestDecimal(frame.height) + ")";
  }
  return signature;
}

}  // namespace tavelle
