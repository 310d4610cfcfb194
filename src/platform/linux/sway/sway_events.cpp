#include "platform/linux/sway/sway_events.h"

#include <glib-unix.h>

#include <algorithm>

#include "platform/linux/sway/sway_tree.h"

namespace tavelle {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 250ms;
constexpr unsigned secondsBetweenTries = 10;

}  // namespace

SwayEvents::SwayEvents(std::filesystem::path socket, std::function<void()> happened)
    : socket_(std::move(socket)), happened_(std::move(happened)) {
  listen();
}

SwayEvents::~SwayEvents() {
  if (source_ != 0) g_source_remove(source_);
  if (timer_ != 0) g_source_remove(timer_);
}

void SwayEvents::listen() {
  connection_ = SwayConnection::open(socket_);
  if (connection_ && !connection_->ask(SwayRequest::subscribe, R"(["window","workspace"])", patience)) {
    connection_.reset();
  }
  // What has come in with the answer would not make the descriptor readable again.
  if (connection_) drain();
  if (!connection_) {
    timer_ = g_timeout_add_seconds(secondsBetweenTries, retry, this);
    return;
  }
  constexpr auto conditions = static_cast<GIOCondition>(G_IO_IN | G_IO_HUP | G_IO_ERR);
  source_ = g_unix_fd_add(connection_->descriptor(), conditions, reinterpret_cast<GUnixFDSourceFunc>(readable), this);
}

int SwayEvents::readable(int /*descriptor*/, unsigned /*condition*/, void* data) {
  auto* const self = static_cast<SwayEvents*>(data);
  const bool mattered = self->drain();
  const bool goesOn = self->connection_.has_value();
  if (!goesOn) {
    self->source_ = 0;
    self->timer_ = g_timeout_add_seconds(secondsBetweenTries, retry, self);
  }
  if (mattered) {
    const auto happened = self->happened_;
    happened();
  }
  return goesOn ? G_SOURCE_CONTINUE : G_SOURCE_REMOVE;
}

int SwayEvents::retry(void* data) {
  auto* const self = static_cast<SwayEvents*>(data);
  self->timer_ = 0;
  self->listen();
  return G_SOURCE_REMOVE;
}

bool SwayEvents::drain() {
  const auto events = connection_->takeEvents();
  if (events) return std::any_of(events->begin(), events->end(), mayMoveWindows);
  connection_.reset();
  return true;
}

}  // namespace tavelle
