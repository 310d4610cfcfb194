#include "platform/linux/video_frame/frame_encoder.h"

#include <gst/app/gstappsrc.h>
#include <turbojpeg.h>

#include <memory>

#include "platform/linux/video_frame/pipeline.h"

namespace tavelle {
namespace {

/// The picture's size with square pixels: the one side grows, none shrinks.
Result<GstCapsPtr> squarePixels(const GstVideoInfo& info) {
  // The most that the file format's 16 bits and the encoder (libjpeg's JPEG_MAX_DIMENSION) take.
  constexpr guint64 longest = 65500;
  auto width = static_cast<guint64>(info.width);
  auto height = static_cast<guint64>(info.height);
  const auto across = static_cast<guint64>(info.par_n);
  const auto down = static_cast<guint64>(info.par_d);
  if (across > down) {
    width = gst_util_uint64_scale_round(width, across, down);
  } else {
    height = gst_util_uint64_scale_round(height, down, across);
  }
  if (width > longest || height > longest) return Error{"the picture is too large"};
  // 16 bits for each colour on the way: what the converter adds up in 8 bits is off by up to 7 levels of 255.
  return GstCapsPtr(gst_caps_new_simple("video/x-raw", "format", G_TYPE_STRING, "ARGB64", "width", G_TYPE_INT,
                                        static_cast<int>(width), "height", G_TYPE_INT, static_cast<int>(height),
                                        "pixel-aspect-ratio", GST_TYPE_FRACTION, 1, 1, nullptr));
}

/// The frame in RGB, as it is to be seen.
Result<GstSamplePtr> upright(const DecodedFrame& frame) {
  GstVideoInfo info;
  if (!gst_video_info_from_caps(&info, gst_sample_get_caps(frame.sample.get()))) return Error{"not a picture"};
  const auto square = squarePixels(info);
  if (!square) return square.error();
  const auto pipeline = Pipeline::make(
      "appsrc name=in format=time ! videoconvertscale method=lanczos n-threads=4 ! capsfilter name=square "
      "! videoconvert n-threads=4 ! video/x-raw,format=RGB ! videoflip name=flip ! appsink name=out sync=false");
  if (!pipeline) return pipeline.error();
  g_object_set(pipeline->element("square"), "caps", square->get(), nullptr);
  g_object_set(pipeline->element("flip"), "video-direction", frame.orientation, nullptr);
  auto* const entry = GST_APP_SRC(pipeline->element("in"));
  pipeline->start();
  gst_app_src_push_sample(entry, frame.sample.get());
  gst_app_src_end_of_stream(entry);
  auto turned = pipeline->next();
  if (turned && !*turned) return Error{"the picture could not be converted"};
  return turned;
}

Result<std::string> compress(const GstVideoFrame& picture) {
  constexpr int quality = 92;
  // No subsampling: the chroma was subsampled once already, at places other than the file format's.
  constexpr TJSAMP sampling = TJSAMP_444;
  const std::unique_ptr<void, FreeWith<tjDestroy>> compressor(tjInitCompress());
  unsigned char* bytes = nullptr;
  unsigned long size = 0;
  const int failed = tjCompress2(compressor.get(), static_cast<unsigned char*>(GST_VIDEO_FRAME_PLANE_DATA(&picture, 0)),
                                 GST_VIDEO_FRAME_WIDTH(&picture), GST_VIDEO_FRAME_PLANE_STRIDE(&picture, 0),
                                 GST_VIDEO_FRAME_HEIGHT(&picture), TJPF_RGB, &bytes, &size, sampling, quality, 0);
  const std::unique_ptr<unsigned char, FreeWith<tjFree>> owner(bytes);
  if (failed) return Error{tjGetErrorStr2(compressor.get())};
  return std::string(reinterpret_cast<const char*>(bytes), size);
}

}  // namespace

Result<std::string> encodeJpeg(const DecodedFrame& frame) {
  const auto sample = upright(frame);
  if (!sample) return sample.error();
  GstVideoInfo info;
  GstVideoFrame picture;
  if (!gst_video_info_from_caps(&info, gst_sample_get_caps(sample->get())) ||
      !gst_video_frame_map(&picture, &info, gst_sample_get_buffer(sample->get()), GST_MAP_READ)) {
    return Error{"the picture could not be read"};
  }
  auto jpeg = compress(picture);
  gst_video_frame_unmap(&picture);
  return jpeg;
}

}  // namespace tavelle
