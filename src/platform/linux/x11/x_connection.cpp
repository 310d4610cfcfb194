#include "platform/linux/x11/x_connection.h"

#include <gdk/gdkx.h>

namespace tavelle {
namespace {

/// More windows than any desktop has.
constexpr std::uint32_t longestProperty = 1 << 16;

/// The desktop of a window that is on all of them.
constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

}  // namespace

XConnection::XConnection(GdkDisplay* display)
    : display_(display),
      connection_(xcb_connect(gdk_display_get_name(display), nullptr)),
      root_(static_cast<xcb_window_t>(
          GDK_WINDOW_XID(gdk_screen_get_root_window(gdk_display_get_default_screen(display))))) {}

std::vector<xcb_atom_t> internAtoms(const XConnection& connection, std::span<const std::string_view> names) {
  using Request = XRequest<xcb_intern_atom_reply_t, xcb_intern_atom_cookie_t, xcb_intern_atom_reply>;
  std::vector<Request> requests;
  requests.reserve(names.size());
  for (const auto name : names) {
    const auto length = static_cast<std::uint16_t>(name.size());
    requests.emplace_back(connection, xcb_intern_atom(connection.get(), 0, length, name.data()));
  }
  std::vector<xcb_atom_t> atoms;
  atoms.reserve(names.size());
  for (auto& request : requests) {
    const auto reply = request.read();
    atoms.push_back(reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE});
  }
  return atoms;
}

bool isOnDesktop(std::optional<std::uint32_t> window, std::optional<std::uint32_t> current) {
  return !window || !current || *window == allDesktops || *window == *current;
}

PropertyRequest::PropertyRequest(const XConnection& connection, xcb_window_t window, xcb_atom_t property)
    : request_(connection,
               xcb_get_property(connection.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty)) {
}

std::vector<std::uint32_t> PropertyRequest::read() {
  const auto reply = request_.read();
  if (!reply || reply->format != 32) return {};
  const auto* const values = static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get()));
  return {values, values + reply->value_len};
}

std::optional<std::uint32_t> PropertyRequest::readFirst() {
  const auto values = read();
  return values.empty() ? std::nullopt : std::optional(values.front());
}

}  // namespace tavelle
