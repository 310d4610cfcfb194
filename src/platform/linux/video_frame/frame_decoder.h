#pragma once

#include <gst/video/video.h>

#include "base/result.h"
#include "platform/linux/video_frame/pipeline.h"

namespace tavelle {

/// A frame as the decoder gave it.
struct DecodedFrame {
  GstSamplePtr sample;
  /// What is to be done to the picture for it to be seen as it was meant.
  GstVideoOrientationMethod orientation = GST_VIDEO_ORIENTATION_IDENTITY;
};

/// The frame that the video file at `path` shows at `time` after its first one; the last one when it ends before.
/// Decodes no sound, opens no network address and may never return.
Result<DecodedFrame> decodeFrame(const char* path, GstClockTime time);

}  // namespace tavelle
