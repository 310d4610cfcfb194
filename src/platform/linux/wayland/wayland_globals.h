#pragma once

#include <wayland-client.h>

#include <cstdint>
#include <map>
#include <string>
#include <string_view>

#include "platform/linux/wayland/wayland_handles.h"

namespace tavelle {

/// What a compositor offers, as it was at the start. On GDK's connection everything bound here gets its events from
/// GDK's own source, on the main loop. Main thread only.
class WaylandGlobals {
 public:
  /// Waits for the compositor's list, a second at most: what it has not told by then counts as not offered.
  explicit WaylandGlobals(wl_display* display);
  WaylandGlobals(const WaylandGlobals&) = delete;
  WaylandGlobals& operator=(const WaylandGlobals&) = delete;
  ~WaylandGlobals() = default;

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
  void* bindAny(const wl_interface& interface, std::uint32_t least) const;

  wl_display* const display_;
  const WlPtr<wl_registry> registry_;
  std::map<std::string, Global, std::less<>> globals_;
};

}  // namespace tavelle
