#pragma once

#include <memory>

struct org_kde_plasma_virtual_desktop;
struct org_kde_plasma_virtual_desktop_management;
struct org_kde_plasma_window;
struct org_kde_plasma_window_management;
struct wl_callback;
struct wl_registry;
struct zwlr_foreign_toplevel_handle_v1;
struct zwlr_foreign_toplevel_manager_v1;
struct zxdg_output_manager_v1;
struct zxdg_output_v1;

namespace tavelle {

/// Ends an object of the compositor's: it is no longer heard of.
struct WlDestroy {
  void operator()(org_kde_plasma_virtual_desktop* object) const;
  void operator()(org_kde_plasma_virtual_desktop_management* object) const;
  void operator()(org_kde_plasma_window* object) const;
  void operator()(org_kde_plasma_window_management* object) const;
  void operator()(wl_callback* object) const;
  void operator()(wl_registry* object) const;
  void operator()(zwlr_foreign_toplevel_handle_v1* object) const;
  void operator()(zwlr_foreign_toplevel_manager_v1* object) const;
  void operator()(zxdg_output_manager_v1* object) const;
  void operator()(zxdg_output_v1* object) const;
};

template <typename T>
using WlPtr = std::unique_ptr<T, WlDestroy>;

/// In a table of listeners: what the program has no use for.
inline constexpr auto ignoreEvent = [](auto...) {};

}  // namespace tavelle
