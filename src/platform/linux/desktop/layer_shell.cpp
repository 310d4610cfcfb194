#include "platform/linux/desktop/layer_shell.h"

#include <gdk/gdkwayland.h>
#include <poll.h>
#include <wayland-client.h>

#include <chrono>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "platform/linux/handles.h"

namespace tavelle {
namespace {

using Milliseconds = std::chrono::duration<int, std::milli>;

constexpr std::chrono::seconds patience{1};

struct Answer {
  bool layers = false;
  bool complete = false;
};

void announced(void* answer, wl_registry* /*registry*/, std::uint32_t /*name*/, const char* interface,
               std::uint32_t /*version*/) {
  if (std::strcmp(interface, "zwlr_layer_shell_v1") == 0) static_cast<Answer*>(answer)->layers = true;
}

void withdrawn(void* /*answer*/, wl_registry* /*registry*/, std::uint32_t /*name*/) {}

void complete(void* answer, wl_callback* /*callback*/, std::uint32_t /*data*/) {
  static_cast<Answer*>(answer)->complete = true;
}

/// Waits for something from the compositor and handles it; false when nothing came in time, or nothing can come.
bool handleEvents(wl_display* display, std::chrono::steady_clock::time_point deadline) {
  while (wl_display_prepare_read(display) != 0) {
    if (wl_display_dispatch_pending(display) < 0) return false;
  }
  wl_display_flush(display);
  const auto left = std::chrono::ceil<Milliseconds>(deadline - std::chrono::steady_clock::now());
  pollfd waiting{.fd = wl_display_get_fd(display), .events = POLLIN, .revents = 0};
  if (left.count() <= 0 || poll(&waiting, 1, left.count()) <= 0) {
    wl_display_cancel_read(display);
    return false;
  }
  return wl_display_read_events(display) == 0 && wl_display_dispatch_pending(display) >= 0;
}

}  // namespace

bool compositorHasLayers() {
  const char* const name = std::getenv("WAYLAND_DISPLAY");
  if (!name || !*name) return false;
  const std::unique_ptr<wl_display, FreeWith<wl_display_disconnect>> display(wl_display_connect(name));
  if (!display) return false;
  Answer answer;
  constexpr wl_registry_listener registryListener{.global = announced, .global_remove = withdrawn};
  constexpr wl_callback_listener callbackListener{.done = complete};
  const std::unique_ptr<wl_registry, FreeWith<wl_registry_destroy>> registry(wl_display_get_registry(display.get()));
  wl_registry_add_listener(registry.get(), &registryListener, &answer);
  const std::unique_ptr<wl_callback, FreeWith<wl_callback_destroy>> end(wl_display_sync(display.get()));
  wl_callback_add_listener(end.get(), &callbackListener, &answer);
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (!answer.complete && handleEvents(display.get(), deadline)) continue;
  return answer.layers;
}

bool isLayerDisplay(GdkDisplay* display) { return GDK_IS_WAYLAND_DISPLAY(display); }

}  // namespace tavelle
