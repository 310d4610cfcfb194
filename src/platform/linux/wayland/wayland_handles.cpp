#include "platform/linux/wayland/wayland_handles.h"

#include <plasma-virtual-desktop-client-protocol.h>
#include <plasma-window-management-client-protocol.h>
#include <wayland-client.h>
#include <wlr-foreign-toplevel-management-unstable-v1-client-protocol.h>
#include <xdg-output-unstable-v1-client-protocol.h>

namespace tavelle {

void WlDestroy::operator()(org_kde_plasma_virtual_desktop* object) const {
  org_kde_plasma_virtual_desktop_destroy(object);
}
void WlDestroy::operator()(org_kde_plasma_virtual_desktop_management* object) const {
  org_kde_plasma_virtual_desktop_management_destroy(object);
}
void WlDestroy::operator()(org_kde_plasma_window* object) const { org_kde_plasma_window_destroy(object); }
void WlDestroy::operator()(org_kde_plasma_window_management* object) const {
  org_kde_plasma_window_management_destroy(object);
}
void WlDestroy::operator()(wl_callback* object) const { wl_callback_destroy(object); }
void WlDestroy::operator()(wl_registry* object) const { wl_registry_destroy(object); }
void WlDestroy::operator()(zwlr_foreign_toplevel_handle_v1* object) const {
  zwlr_foreign_toplevel_handle_v1_destroy(object);
}
void WlDestroy::operator()(zwlr_foreign_toplevel_manager_v1* object) const {
  zwlr_foreign_toplevel_manager_v1_destroy(object);
}
void WlDestroy::operator()(zxdg_output_manager_v1* object) const { zxdg_output_manager_v1_destroy(object); }
void WlDestroy::operator()(zxdg_output_v1* object) const { zxdg_output_v1_destroy(object); }

}  // namespace tavelle
