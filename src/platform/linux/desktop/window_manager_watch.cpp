#include "platform/linux/desktop/window_manager_watch.h"

#include <glib-unix.h>

#include <array>

namespace tavelle {
namespace {

/// The atoms' places among `atomNames`.
enum AtomIndex : std::size_t { clientList, activeWindow, currentDesktop, showingDesktop, clientState };

constexpr std::array<std::string_view, 5> atomNames{"_NET_CLIENT_LIST", "_NET_ACTIVE_WINDOW", "_NET_CURRENT_DESKTOP",
                                                    "_NET_SHOWING_DESKTOP", "WM_STATE"};

/// The bit that marks an event as sent by another program rather than by the server (X11 protocol, "SendEvent").
constexpr std::uint8_t sentEvent = 0x80;

}  // namespace

WindowManagerWatch::WindowManagerWatch(std::function<void()> happened)
    : happened_(std::move(happened)), atoms_(internAtoms(connection_, atomNames)) {
  listenTo(connection_.root());
  listenToClients();
  // What has come in while the clients were asked for would not make the descriptor readable again.
  drain();
  source_ = g_unix_fd_add(xcb_get_file_descriptor(connection_.get()), G_IO_IN,
                          reinterpret_cast<GUnixFDSourceFunc>(readable), this);
}

WindowManagerWatch::~WindowManagerWatch() {
  if (source_ != 0) g_source_remove(source_);
}

int WindowManagerWatch::readable(int, unsigned, void* data) {
  auto* const self = static_cast<WindowManagerWatch*>(data);
  const bool mattered = self->drain();
  const bool alive = self->connection_.isAlive();
  if (!alive) self->source_ = 0;
  if (mattered) {
    const auto happened = self->happened_;
    happened();
  }
  return alive ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
}

void WindowManagerWatch::listenTo(xcb_window_t window) const {
  constexpr std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &mask);
}

void WindowManagerWatch::listenToClients() const {
  for (const xcb_window_t window : PropertyRequest(connection_, connection_.root(), atoms_[clientList]).read()) {
    listenTo(window);
  }
  xcb_flush(connection_.get());
}

/// Takes all events there are. Whether any was worth telling.
bool WindowManagerWatch::drain() const {
  bool mattered = false;
  while (const XReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    // Errors, about windows that have gone since, come the same way.
    if ((event->response_type & ~sentEvent) != XCB_PROPERTY_NOTIFY) continue;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
    if (change.atom == atoms_[clientList]) listenToClients();
    mattered = mattered || matters(change);
  }
  return mattered;
}

bool WindowManagerWatch::matters(const xcb_property_notify_event_t& event) const {
  if (event.window != connection_.root()) return event.atom == atoms_[clientState];
  return event.atom == atoms_[activeWindow] || event.atom == atoms_[currentDesktop] ||
         event.atom == atoms_[showingDesktop];
}

}  // namespace tavelle
