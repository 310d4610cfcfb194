#pragma once

#include <wayland-client.h>

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

struct org_kde_plasma_virtual_desktop;
struct org_kde_plasma_virtual_desktop_management;
struct org_kde_plasma_window;
struct org_kde_plasma_window_management;
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

/// What a compositor offers. On GDK's connection everything bound here gets its events from
/// GDK's own source, on the main loop. Main thread only.
class WaylandGlobals {
 public:
  /// Waits for the compositor's list, a second at most: what it has not told by then counts as not offered.
  explicit WaylandGlobals(wl_display* display);
  WaylandGlobals(const WaylandGlobals&) = delete;
  WaylandGlobals& operator=(const WaylandGlobals&) = delete;
  ~WaylandGlobals() = default;

  wl_display* display() const { return display_; }
  bool offers(std::string_view interface) const { return globals_.contains(interface); }
  /// An object of the caller's at the interface named like `interface`, of the highest version that both sides know.
  /// Null when it is not offered in version `least` or later.
  template <typename T>
  T* bind(const wl_interface& interface, std::uint32_t least) const {
    return static_cast<T*>(bindAny(interface, least));
  }

  /// Waits until the compositor has answered all requests so far, and handles what it says; a second at most. Whether
  /// it has.
  bool settle() const;

 private:
  struct Global {
    std::uint32_t name;
    std::uint32_t version;
  };

  static void offered(void* self, wl_registry* registry, std::uint32_t name, const char* interface,
                      std::uint32_t version);
  static void withdrawn(void* self, wl_registry* registry, std::uint32_t name);
  void* bindAny(const wl_interface& interface, std::uint32_t least) const;

  wl_display* const display_;
  const WlPtr<wl_registry> registry_;
  std::map<std::string, Global, std::less<>> globals_;
};

}  // namespace tavelle
