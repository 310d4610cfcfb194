#include "platform/linux/sway/sway_events.h"

#include <glib-unix.h>

#include <algorithm>

#include "platform/linux/sway/sway_tree.h"

namespace tavelle {

SwayEvents::SwayEvents(std::filesystem::path socket, std::function<void()> happened, SwayPatience patience)
    : socket_(std::move(socket)), happened_(std::move(happened)), patience_(patience) {
  listen();
}

SwayEvents::~SwayEvents() {
  if (source_ != 0) g_source_remove(source_);
  if (timer_ != 0) g_source_remove(timer_);
}

void SwayEvents::listen() {
  connection_ = SwayConnection::open(socket_);
  if (connection_ && !connection_->ask(SwayRequest::subscribe, R"(["window","workspace"])", patience_.answer)) {
    connection_.reset();
  }
  // What has come in with the answer would not make the descriptor readable again.
  if (connection_) drain();
  if (!connection_) {
    listenLater();
    return;
  }
  constexpr auto conditions = static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR);
  source_ = g_unix_fd_add(connection_->descriptor(), conditions, reinterpret_cast<GUnixFDSourceFunc>(readable), this);
}

void SwayEvents::listenLater() {
  const auto retry = [](gpointer data) -> gboolean {
    auto* const self = static_cast<SwayEvents*>(data);
    self->timer_ = 0;
    self->listen();
    // Nobody knows what has happened meanwhile.
    if (self->connection_) self->tell();
    return G_SOURCE_REMOVE;
  };
  timer_ = g_timeout_add(static_cast<guint>(patience_.rest.count()), retry, this);
}

int SwayEvents::readable(int /*descriptor*/, unsigned /*condition*/, void* data) {
  auto* const self = static_cast<SwayEvents*>(data);
  const bool mattered = self->drain();
  const bool goesOn = self->connection_.has_value();
  if (!goesOn) {
    self->source_ = 0;
    self->listenLater();
  }
  if (mattered) self->tell();
  return goesOn ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
}

void SwayEvents::tell() const {
  // The one who is told may end this.
  const auto happened = happened_;
  happened();
}

bool SwayEvents::drain() {
  const auto events = connection_->takeEvents();
  if (events) return std::any_of(events->begin(), events->end(), mayMoveWindows);
  connection_.reset();
  return true;
}

}  // namespace tavelle
