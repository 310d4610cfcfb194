#pragma once

#include <gdk/gdk.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "base/allocated.h"
#include "platform/linux/handles.h"

namespace tavelle {

/// A connection to the X server of the toolkit's display beside the toolkit's own: what goes wrong here, such as a
/// question about a window that has just vanished, never reaches the toolkit's error handling. Main thread only.
class XConnection {
 public:
  explicit XConnection(GdkDisplay* display);

  /// A further connection to the same server.
  XConnection another() const { return XConnection(display_); }

  xcb_connection_t* get() const { return connection_.get(); }
  xcb_window_t root() const { return root_; }
  /// False once the server has gone; every question then has no answer.
  bool isAlive() const { return xcb_connection_has_error(get()) == 0; }

 private:
  GdkDisplay* display_;
  std::unique_ptr<xcb_connection_t, FreeWith<xcb_disconnect>> connection_;
  xcb_window_t root_;
};

/// The atoms of those names, in their order; XCB_ATOM_NONE for one that could not be had. Blocks.
std::vector<xcb_atom_t> internAtoms(const XConnection& connection, std::span<const std::string_view> names);

/// Whether a window belongs to the current desktop, by its _NET_WM_DESKTOP and the root window's _NET_CURRENT_DESKTOP.
/// What nobody has told stands in no window's way.
bool isOnDesktop(std::optional<std::uint32_t> window, std::optional<std::uint32_t> current);

/// A question to the server whose answer is read later, so that many can be under way at once. One that is not read is
/// discarded.
template <typename Reply, typename Cookie, Reply* (*Read)(xcb_connection_t*, Cookie, xcb_generic_error_t**)>
class XRequest {
 public:
  XRequest(const XConnection& connection, Cookie cookie) : connection_(connection.get()), cookie_(cookie) {}
  XRequest(XRequest&& other) noexcept
      : connection_(std::exchange(other.connection_, nullptr)), cookie_(other.cookie_) {}
  XRequest& operator=(XRequest&&) = delete;
  XRequest(const XRequest&) = delete;
  XRequest& operator=(const XRequest&) = delete;
  ~XRequest() {
    if (connection_) xcb_discard_reply(connection_, cookie_.sequence);
  }

  /// The answer, or null when the server refuses. Blocks. Once.
  AllocatedPtr<Reply> read() {
    xcb_generic_error_t* error = nullptr;
    AllocatedPtr<Reply> reply(Read(std::exchange(connection_, nullptr), cookie_, &error));
    const AllocatedPtr<xcb_generic_error_t> unread(error);
    return reply;
  }

 private:
  xcb_connection_t* connection_;
  Cookie cookie_;
};

using AttributesRequest =
    XRequest<xcb_get_window_attributes_reply_t, xcb_get_window_attributes_cookie_t, xcb_get_window_attributes_reply>;
using GeometryRequest = XRequest<xcb_get_geometry_reply_t, xcb_get_geometry_cookie_t, xcb_get_geometry_reply>;
using TranslateRequest =
    XRequest<xcb_translate_coordinates_reply_t, xcb_translate_coordinates_cookie_t, xcb_translate_coordinates_reply>;

/// A question for a window's property, of those that are lists of 32-bit values.
class PropertyRequest {
 public:
  PropertyRequest(const XConnection& connection, xcb_window_t window, xcb_atom_t property);

  /// The values; none when the window has no such property, or has gone. Blocks. Once.
  std::vector<std::uint32_t> read();
  /// The first of them.
  std::optional<std::uint32_t> readFirst();

 private:
  XRequest<xcb_get_property_reply_t, xcb_get_property_cookie_t, xcb_get_property_reply> request_;
};

}  // namespace tavelle
