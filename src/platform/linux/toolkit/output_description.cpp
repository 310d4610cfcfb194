#include "platform/linux/toolkit/output_description.h"

namespace tavelle {
namespace {

/// Where a monitor's description hangs on GDK's object.
constexpr const char* key = "tavelle-output";

}  // namespace

void describe(GdkMonitor* monitor, OutputDescription* description) {
  g_object_set_data(G_OBJECT(monitor), key, description);
}

const OutputDescription* toldOf(GdkMonitor* monitor) {
  return static_cast<const OutputDescription*>(g_object_get_data(G_OBJECT(monitor), key));
}

}  // namespace tavelle
