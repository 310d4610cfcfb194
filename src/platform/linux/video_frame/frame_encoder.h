#pragma once

#include <string>

#include "platform/linux/video_frame/frame_decoder.h"

namespace tavelle {

/// The frame as the bytes of a JPEG file of quality 92 with square pixels, turned and mirrored as it asks for.
Result<std::string> encodeJpeg(const DecodedFrame& frame);

}  // namespace tavelle
