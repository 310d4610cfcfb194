#pragma once

#include <gst/gst.h>

#include <memory>

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

}  // namespace tavelle
