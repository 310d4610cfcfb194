#include "base/text.h"
#include "model/controller.h"
#include "platform/files.h"
#include "platform/video_frames.h"

namespace tavelle {
namespace {

/// Late enough to be past a fade-in's first black frame, early enough for the shortest clip.
constexpr double stillTime = 0.5;

}  // namespace

void Controller::makeStill(const std::filesystem::path& from, const std::filesystem::path& to) {
  const auto jpeg = platform_.videoFrames.jpegOfFrame(from, stillTime);
  if (!jpeg) {
    log("no still frame for " + escapedUtf8(from.filename().native()));
    return;
  }
  // A wallpaper without a still works; whoever looks for one later finds that it is not there.
  static_cast<void>(platform_.files.write(to, *jpeg));
}

}  // namespace tavelle
