#include "platform/linux/wayland/wayland_globals.h"

#include <plasma-virtual-desktop-client-protocol.h>
#include <plasma-window-management-client-protocol.h>
#include <poll.h>
#include <wlr-foreign-toplevel-management-unstable-v1-client-protocol.h>
#include <xdg-output-unstable-v1-client-protocol.h>

#include <algorithm>
#include <cerrno>
#include <chrono>

#include "base/filled.h"

namespace tavelle {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience{1};

/// Waits for something from the compositor, or a signal, and handles it. False when nothing came in time, or nothing
/// can come.
bool handleEvents(wl_display* display, Clock::time_point deadline) {
  while (wl_display_prepare_read(display) != 0) {
    if (wl_display_dispatch_pending(display) < 0) return false;
  }
  // What does not fit now is sent when the compositor has read the rest, and it answers nothing before.
  const bool allSent = wl_display_flush(display) >= 0;
  const auto left = std::chrono::ceil<std::chrono::duration<int, std::milli>>(deadline - Clock::now()).count();
  const auto events = static_cast<short>(allSent ? POLLIN : POLLIN | POLLOUT);
  pollfd waiting{};
  waiting.fd = wl_display_get_fd(display);
  waiting.events = events;
  const int ready = left > 0 ? poll(&waiting, 1, left) : 0;
  if (ready <= 0) {
    wl_display_cancel_read(display);
    return ready < 0 && errno == EINTR;
  }
  return wl_display_read_events(display) == 0 && wl_display_dispatch_pending(display) >= 0;
}

}  // namespace

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

WaylandGlobals::WaylandGlobals(wl_display* display) : display_(display), registry_(wl_display_get_registry(display)) {
  static constexpr auto listener = filled<wl_registry_listener>([](auto& all) {
    all.global = offered;
    all.global_remove = withdrawn;
  });
  wl_registry_add_listener(registry_.get(), &listener, this);
  settle();
}

bool WaylandGlobals::settle() const {
  bool done = false;
  static constexpr auto listener = filled<wl_callback_listener>([](auto& all) {
    all.done = [](void* flag, wl_callback* /*callback*/, std::uint32_t /*data*/) { *static_cast<bool*>(flag) = true; };
  });
  const WlPtr<wl_callback> callback(wl_display_sync(display_));
  wl_callback_add_listener(callback.get(), &listener, &done);
  const auto deadline = Clock::now() + patience;
  while (!done && handleEvents(display_, deadline)) continue;
  return done;
}

void WaylandGlobals::offered(void* self, wl_registry* /*registry*/, std::uint32_t name, const char* interface,
                             std::uint32_t version) {
  static_cast<WaylandGlobals*>(self)->globals_.insert_or_assign(interface, Global{.name = name, .version = version});
}

void WaylandGlobals::withdrawn(void* self, wl_registry* /*registry*/, std::uint32_t name) {
  std::erase_if(static_cast<WaylandGlobals*>(self)->globals_,
                [=](const auto& each) { return each.second.name == name; });
}

void* WaylandGlobals::bindAny(const wl_interface& interface, std::uint32_t least) const {
  const auto found = globals_.find(interface.name);
  if (found == globals_.end() || found->second.version < least) return nullptr;
  const auto known = static_cast<std::uint32_t>(interface.version);
  return wl_registry_bind(registry_.get(), found->second.name, &interface, std::min(found->second.version, known));
}

}  // namespace tavelle
