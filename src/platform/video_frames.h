#pragma once

#include <chrono>
#include <filesystem>
#include <string>

#include "base/result.h"

namespace tavelle {

/// Single frames of videos. Main thread only.
class VideoFrames {
 public:
  virtual ~VideoFrames() = default;

  /// The frame that the file `video` shows `time` after its first one, or one close by; the last one when the
  /// video is shorter. It comes as the bytes of a JPEG file of quality 92 (of 100), with as many pixels as the video
  /// has, turned and mirrored as the video says it is to be seen, stretched where the video's pixels are not square.
  /// What the decoder does not pass on is not seen: an MP4 file's mirror along the rising diagonal, and its own note
  /// that colours take the full range. An error when no frame can be decoded, whatever the reason: no such file, not a
  /// video, only sound, damaged. Blocks, at most ten seconds, however broken or hostile the file is.
  virtual Result<std::string> jpegOfFrame(const std::filesystem::path& video, std::chrono::milliseconds time) const = 0;
};

}  // namespace tavelle
