#include "platform/linux/x11/property_watch.h"

#include <glib-unix.h>

#include <algorithm>
#include <array>

namespace tavelle {
namespace {

constexpr std::array<std::string_view, 1> clientListName{"_NET_CLIENT_LIST"};

/// The bit that marks an event as sent by another program rather than by the server (X11 protocol, "SendEvent").
constexpr std::uint8_t sentEvent = 0x80;

}  // namespace

PropertyWatch::PropertyWatch(const XConnection& server, Names ofRoot, Names ofClients, std::function<void()> happened)
    : happened_(std::move(happened)),
      connection_(server.another()),
      clientList_(internAtoms(connection_, clientListName).front()),
      ofRoot_(internAtoms(connection_, ofRoot)),
      ofClients_(internAtoms(connection_, ofClients)) {
  listen();
}

PropertyWatch::~PropertyWatch() {
  if (source_ != 0) g_source_remove(source_);
}

void PropertyWatch::listen() {
  listenTo(connection_.root());
  listenToClients();
  // What has come in while the clients were asked for would not make the descriptor readable again.
  drain();
  source_ = g_unix_fd_add(xcb_get_file_descriptor(connection_.get()), G_IO_IN,
                          reinterpret_cast<GUnixFDSourceFunc>(readable), this);
}

int PropertyWatch::readable(int /*descriptor*/, unsigned /*condition*/, void* data) {
  auto* const self = static_cast<PropertyWatch*>(data);
  const bool mattered = self->drain();
  const bool alive = self->connection_.isAlive();
  if (!alive) self->source_ = 0;
  if (mattered) {
    const auto happened = self->happened_;
    happened();
  }
  return alive ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
}

void PropertyWatch::listenTo(xcb_window_t window) const {
  constexpr std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &mask);
}

void PropertyWatch::listenToClients() const {
  if (!ofClients_.empty()) {
    for (const xcb_window_t window : PropertyRequest(connection_, connection_.root(), clientList_).read()) {
      listenTo(window);
    }
  }
  xcb_flush(connection_.get());
}

/// Takes all events there are. Whether any was worth telling.
bool PropertyWatch::drain() const {
  bool mattered = false;
  while (const AllocatedPtr<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    // Errors, about windows that have gone since, come the same way.
    if ((event->response_type & ~sentEvent) != XCB_PROPERTY_NOTIFY) continue;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(*event);
    if (change.atom == clientList_) listenToClients();
    mattered = mattered || matters(change);
  }
  return mattered;
}

bool PropertyWatch::matters(const xcb_property_notify_event_t& event) const {
  const auto& wanted = event.window == connection_.root() ? ofRoot_ : ofClients_;
  return std::find(wanted.begin(), wanted.end(), event.atom) != wanted.end();
}

}  // namespace tavelle
