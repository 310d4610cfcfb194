#pragma once

#include <chrono>

#include "platform/video_frames.h"

namespace tavelle {

/// Decodes in a process of its own, which ends with each call: a decoder that crashes, hangs or runs out of memory
/// takes nothing else along, and the program itself holds no decoder.
class ChildVideoFrames final : public VideoFrames {
 public:
  /// `helper` is called with the file's path and the time in nanoseconds. It writes the JPEG to its standard output and
  /// ends with status 0, or writes one line that says what is wrong and ends with another. After `limit` it is killed,
  /// with all that it started.
  explicit ChildVideoFrames(std::filesystem::path helper,
                            std::chrono::milliseconds limit = std::chrono::milliseconds(9500))
      : helper_(std::move(helper)), limit_(limit) {}

  Result<std::string> jpegOfFrame(const std::filesystem::path& video, std::chrono::milliseconds time) const override;

 private:
  std::filesystem::path helper_;
  std::chrono::milliseconds limit_;
};

}  // namespace tavelle
