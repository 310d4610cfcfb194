#include "platform/linux/video_frame/pipeline.h"

#include <gst/app/gstappsink.h>

#include <optional>

namespace tavelle {
namespace {

std::optional<Error> failure(GstElement* pipeline) {
  const GstBusPtr bus(gst_element_get_bus(pipeline));
  const GstMessagePtr message(gst_bus_pop_filtered(bus.get(), GST_MESSAGE_ERROR));
  if (!message) return std::nullopt;
  ErrorSlot error;
  gst_message_parse_error(message.get(), error.out(), nullptr);
  return Error{error.message()};
}

}  // namespace

Result<Pipeline> Pipeline::make(const std::string& description) {
  ErrorSlot error;
  GstElement* const pipeline =
      gst_parse_launch_full(description.c_str(), nullptr, GST_PARSE_FLAG_FATAL_ERRORS, error.out());
  if (!pipeline) return Error{error.message()};
  return Pipeline(pipeline);
}

GstElement* Pipeline::element(const char* name) const {
  // The pipeline holds a reference of its own.
  return GstElementPtr(gst_bin_get_by_name(GST_BIN(pipeline_), name)).get();
}

Result<GstSamplePtr> Pipeline::next() const {
  // How late a failure can be noticed; a sample or the end is noticed at once.
  constexpr GstClockTime patience = 20 * GST_MSECOND;
  auto* const sink = GST_APP_SINK(element("out"));
  while (true) {
    if (GstSamplePtr sample{gst_app_sink_try_pull_sample(sink, patience)}) return sample;
    // What fails ends the stream as well.
    if (auto error = failure(pipeline_)) return *std::move(error);
    if (gst_app_sink_is_eos(sink)) return GstSamplePtr();
  }
}

}  // namespace tavelle
