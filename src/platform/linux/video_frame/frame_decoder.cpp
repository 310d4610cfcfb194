#include "platform/linux/video_frame/frame_decoder.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <thread>

#include "platform/linux/video_frame/pipeline.h"

namespace tavelle {
namespace {

/// What "autoplug-select" may answer; the element publishes no header for it.
enum class Autoplug { attempt = 0, expose = 1, skip = 2 };

bool startsWith(const GstCaps* caps, std::initializer_list<std::string_view> prefixes) {
  const std::string_view name = gst_structure_get_name(gst_caps_get_structure(caps, 0));
  return std::any_of(prefixes.begin(), prefixes.end(),
                     [&](std::string_view prefix) { return name.substr(0, prefix.size()) == prefix; });
}

/// Whether to go on decoding a stream of that kind.
gboolean wantsDecoding(GstElement*, GstPad*, GstCaps* caps, gpointer) {
  return !startsWith(caps, {"audio/", "text/", "subpicture/", "closedcaption/", "application/x-ass",
                            "application/x-ssa", "application/x-subtitle"});
}

/// Playlists and session descriptions would have the network asked for the rest.
Autoplug refuseNetwork(GstElement*, GstPad*, GstCaps*, GstElementFactory* factory, gpointer) {
  const std::string_view kind = gst_element_factory_get_metadata(factory, GST_ELEMENT_METADATA_KLASS);
  const bool network =
      kind.find("Adaptive") != std::string_view::npos || kind.find("Network") != std::string_view::npos;
  return network ? Autoplug::skip : Autoplug::attempt;
}

/// Each thread of a decoder holds frames of its own, and a few are enough for half a second of video.
void limitThreads(GstBin*, GstBin*, GstElement* element, gpointer) {
  constexpr unsigned most = 4;
  if (!g_object_class_find_property(G_OBJECT_GET_CLASS(element), "max-threads")) return;
  g_object_set(element, "max-threads", static_cast<int>(std::clamp(std::thread::hardware_concurrency(), 1U, most)),
               nullptr);
}

/// Takes the first video stream there is: what is none, or comes later, can't be linked.
void connectVideo(GstElement*, GstPad* pad, GstElement* sink) {
  const GstPadPtr entry(gst_element_get_static_pad(sink, "sink"));
  gst_pad_link(pad, entry.get());
}

/// With nothing connected no end of the stream would ever come.
void complainWithoutVideo(GstElement* decoder, GstElement* sink) {
  const GstPadPtr entry(gst_element_get_static_pad(sink, "sink"));
  if (gst_pad_is_linked(entry.get())) return;
  GST_ELEMENT_ERROR(decoder, STREAM, WRONG_TYPE, ("no video track"), (nullptr));
}

Result<Pipeline> decoderOf(const char* path) {
  auto made = Pipeline::make(
      "filesrc name=file ! decodebin name=decoder force-sw-decoders=true "
      "appsink name=out sync=false max-buffers=1 caps=video/x-raw");
  if (!made) return made;
  g_object_set(made->element("file"), "location", path, nullptr);
  GstElement* const decoder = made->element("decoder");
  GstElement* const sink = made->element("out");
  g_signal_connect(decoder, "autoplug-continue", G_CALLBACK(wantsDecoding), nullptr);
  g_signal_connect(decoder, "autoplug-select", G_CALLBACK(refuseNetwork), nullptr);
  g_signal_connect(decoder, "deep-element-added", G_CALLBACK(limitThreads), nullptr);
  g_signal_connect(decoder, "pad-added", G_CALLBACK(connectVideo), sink);
  g_signal_connect(decoder, "no-more-pads", G_CALLBACK(complainWithoutVideo), sink);
  return made;
}

GstVideoOrientationMethod orientationAt(GstElement* sink) {
  const GstPadPtr pad(gst_element_get_static_pad(sink, "sink"));
  auto orientation = GST_VIDEO_ORIENTATION_IDENTITY;
  // One event for what the file says as a whole, one for what it says of the stream.
  for (guint index = 0;; ++index) {
    const GstEventPtr event(gst_pad_get_sticky_event(pad.get(), GST_EVENT_TAG, index));
    if (!event) return orientation;
    GstTagList* tags = nullptr;
    gst_event_parse_tag(event.get(), &tags);
    gst_video_orientation_from_tag(tags, &orientation);
  }
}

}  // namespace

Result<DecodedFrame> decodeFrame(const char* path, GstClockTime time) {
  const auto pipeline = decoderOf(path);
  if (!pipeline) return pipeline.error();
  pipeline->start();
  GstSamplePtr shown;
  GstClockTime end = GST_CLOCK_TIME_NONE;
  while (true) {
    auto next = pipeline->next();
    if (!next) return next.error();
    if (!*next) break;
    const GstClockTime start = GST_BUFFER_PTS(gst_sample_get_buffer(next->get()));
    if (shown && start > end) break;
    if (!shown) end = start + time;
    shown = std::move(next).value();
    // Decoding one frame more would not find a better one, nor would it in a stream without times.
    if (start >= end || !GST_CLOCK_TIME_IS_VALID(start)) break;
  }
  if (!shown) return Error{"no frame"};
  const auto orientation = orientationAt(pipeline->element("out"));
  // The decoder would go on with the next frames, and hold its memory, while this one is converted.
  pipeline->stop();
  return DecodedFrame{std::move(shown), orientation};
}

}  // namespace tavelle
