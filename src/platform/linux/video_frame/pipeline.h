#pragma once

#include <gst/gst.h>

#include <memory>
#include <string>

#include "base/result.h"
#include "platform/linux/handles.h"

namespace tavelle {

/// Drops a reference to one of the framework's light objects. Their own functions for that are inline ones, different
/// in each source file, which would make the types below so, too.
struct UnrefMiniObject {
  template <typename T>
  void operator()(T* object) const {
    gst_mini_object_unref(GST_MINI_OBJECT_CAST(object));
  }
};

using GstElementPtr = std::unique_ptr<GstElement, FreeWith<gst_object_unref>>;
using GstBusPtr = std::unique_ptr<GstBus, FreeWith<gst_object_unref>>;
using GstPadPtr = std::unique_ptr<GstPad, FreeWith<gst_object_unref>>;
using GstCapsPtr = std::unique_ptr<GstCaps, UnrefMiniObject>;
using GstEventPtr = std::unique_ptr<GstEvent, UnrefMiniObject>;
using GstMessagePtr = std::unique_ptr<GstMessage, UnrefMiniObject>;
using GstSamplePtr = std::unique_ptr<GstSample, UnrefMiniObject>;

/// A running chain of media elements that ends in an application sink called "out".
/// It does not stop by itself when it dies: the process ends right after, and stopping waits for decoders that may
/// hang.
class Pipeline {
 public:
  /// Builds what `description` says, in the form that `gst-launch-1.0` takes.
  static Result<Pipeline> make(const std::string& description);

  /// The element of that name in the description. It lives as long as the pipeline.
  GstElement* element(const char* name) const;
  void start() const { gst_element_set_state(pipeline_, GST_STATE_PLAYING); }
  /// Waits until all elements have let go of their threads and memory; for ever when one hangs.
  void stop() const { gst_element_set_state(pipeline_, GST_STATE_NULL); }

  /// Waits for the next piece of media at the sink. None at the end of the stream; an error when an element failed.
  Result<GstSamplePtr> next() const;

 private:
  explicit Pipeline(GstElement* pipeline) : pipeline_(pipeline) {}

  GstElement* pipeline_;
};

}  // namespace tavelle
