#include "platform/linux/x11/x11_server.h"

#include <array>
#include <memory>
#include <string_view>

#include "platform/linux/x11/property_watch.h"

namespace tavelle {

Registration X11Server::onWindowEvent(std::function<void()> happened) {
  constexpr std::array<std::string_view, 3> ofRoot{"_NET_ACTIVE_WINDOW", "_NET_CURRENT_DESKTOP",
                                                   "_NET_SHOWING_DESKTOP"};
  // Minimised or not.
  constexpr std::array<std::string_view, 1> ofClients{"WM_STATE"};
  return Registration(
      [manager = std::make_shared<PropertyWatch>(connection_, ofRoot, ofClients, std::move(happened))] {});
}

}  // namespace tavelle
