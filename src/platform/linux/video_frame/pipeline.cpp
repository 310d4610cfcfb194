#include "platform/linux/video_frame/pipeline.h"

#include <gst/app/gstappsink.h>

#include <memory>
#include <optional>

namespace tavelle {
namespace {

gboolean findWorkAtPad(GstElement*, GstPad* pad, gpointer found) {
  // A thread that is told to rest finishes first what it is at, with the lock held: it may yet start others.
  const bool isLocked = !GST_PAD_STREAM_TRYLOCK(pad);
  if (!isLocked) GST_PAD_STREAM_UNLOCK(pad);
  *static_cast<bool*>(found) |= isLocked || gst_pad_get_task_state(pad) == GST_TASK_STARTED;
  return TRUE;
}

void findWork(const GValue* element, gpointer found) {
  gst_element_foreach_pad(GST_ELEMENT(g_value_get_object(element)), findWorkAtPad, found);
}

/// Whether a thread of any element is still at work.
bool isAtWork(GstElement* pipeline) {
  bool found = false;
  const std::unique_ptr<GstIterator, FreeWith<gst_iterator_free>> elements(gst_bin_iterate_recurse(GST_BIN(pipeline)));
  // Elements that come or go meanwhile are somebody's work.
  return gst_iterator_foreach(elements.get(), findWork, &found) != GST_ITERATOR_DONE || found;
}

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
  // One look may miss work that is handed on: from where it has not been yet to where it has.
  constexpr int enoughLooks = 10;
  int looksWithoutWork = 0;
  while (true) {
    looksWithoutWork = isAtWork(pipeline_) ? 0 : looksWithoutWork + 1;
    if (GstSamplePtr sample{gst_app_sink_try_pull_sample(sink, patience)}) return sample;
    // What fails ends the stream as well.
    if (auto error = failure(pipeline_)) return *std::move(error);
    if (gst_app_sink_is_eos(sink)) return GstSamplePtr();
    // The decoder keeps an element's errors to itself while it connects it, and loses those of one that is quick to
    // fail. Nothing would ever come then.
    if (looksWithoutWork == enoughLooks) return Error{"the decoder gave up"};
  }
}

}  // namespace tavelle
