#pragma once

#include <functional>
#include <span>
#include <string_view>
#include <vector>

#include "platform/linux/x11/x_connection.h"

namespace tavelle {

/// Listens to what the window manager tells in properties of the root window and of the windows that it manages. Main
/// thread only.
class PropertyWatch {
 public:
  using Names = std::span<const std::string_view>;

  /// Calls `happened` on the main loop after one of these properties has changed, once for all that comes in together.
  /// It may end the watch.
  PropertyWatch(const XConnection& server, Names ofRoot, Names ofClients, std::function<void()> happened);
  PropertyWatch(const PropertyWatch&) = delete;
  PropertyWatch& operator=(const PropertyWatch&) = delete;
  ~PropertyWatch();

 private:
  static int readable(int descriptor, unsigned condition, void* data);

  void listen();
  void listenTo(xcb_window_t window) const;
  void listenToClients() const;
  bool drain() const;
  bool matters(const xcb_property_notify_event_t& event) const;

  const std::function<void()> happened_;
  /// Of its own: nobody else may take its events, and none may wait unseen behind an answer that somebody reads.
  const XConnection connection_;
  const xcb_atom_t clientList_;
  const std::vector<xcb_atom_t> ofRoot_;
  const std::vector<xcb_atom_t> ofClients_;
  unsigned source_ = 0;
};

}  // namespace tavelle
