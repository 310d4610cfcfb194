#include "model/controller.h"
#include "platform/alerts.h"
#include "platform/login_item.h"

namespace tavelle {

void Controller::toggleLogin() {
  LoginItem& item = platform_.loginItem;
  const bool on = item.status() == LoginItemStatus::enabled;
  if (const auto done = on ? item.unregister() : item.registerApplication(); !done) {
    const std::string& reason = done.error().description;
    log("open at login failed: " + reason);
    platform_.alerts.run(
        {.message = "Couldn't turn on Open at Login",
         .information = "Add Tavelle in System Settings > General > Login Items instead.\n\n" + reason});
    return;
  }
  log(std::string("open at login: ") + (item.status() == LoginItemStatus::enabled ? "true" : "false"));
}

}  // namespace tavelle
