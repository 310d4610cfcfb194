#pragma once

#include <giomm/cancellable.h>
#include <giomm/dbusconnection.h>
#include <giomm/dbusinterfacevtable.h>
#include <sigc++/trackable.h>

#include <filesystem>
#include <functional>
#include <string>

namespace tavelle {

/// The icon as panels on the session bus show it (freedesktop's StatusNotifierItem draft, under KDE's names, which all
/// panels use). It has no menu of the bus's kind: the panel tells where it was clicked. Without a session bus, or a
/// panel on it, nothing is shown; one that comes later is given the icon then. Main thread only.
class StatusNotifierItem : public sigc::trackable {
 public:
  /// `icons` is the folder of icon themes that panels are pointed to. `clicked` is called on the main loop with the
  /// point that the panel gave, `shown` when a panel shows the icon now, or no longer does. Neither is called before
  /// this has returned; `clicked` may destroy the item.
  StatusNotifierItem(std::filesystem::path icons, std::function<void(int x, int y)> clicked,
                     std::function<void(bool shown)> shown);
  StatusNotifierItem(const StatusNotifierItem&) = delete;
  StatusNotifierItem& operator=(const StatusNotifierItem&) = delete;
  ~StatusNotifierItem();

 private:
  using Bus = Glib::RefPtr<Gio::DBus::Connection>;
  using Answer = Glib::RefPtr<Gio::AsyncResult>;
  using Call = void (StatusNotifierItem::*)(const Answer& answer);

  void connected(const Answer& answer);
  void publish();
  void watcherAppeared();
  void watcherVanished();
  void callWatcher(const char* interface, const char* method, const Glib::VariantContainerBase& given, Call done);
  void registered(const Answer& answer);
  void askForHost();
  void toldOfHost(const Answer& answer);
  void setShown(bool shown);
  void methodCalled(const std::string& method, const Glib::VariantContainerBase& given);
  void click(int x, int y);
  GVariant* property(const std::string& name) const;

  const std::filesystem::path icons_;
  const std::function<void(int, int)> clicked_;
  const std::function<void(bool)> shownChanged_;
  /// Our name on the bus: once it is given up, panels take the icon away.
  const std::string name_;
  const Gio::DBus::InterfaceVTable methods_;
  bool registered_ = false;
  bool shown_ = false;
  Bus bus_;
  /// For what is asked of the watcher that is there now.
  Glib::RefPtr<Gio::Cancellable> questions_;
  unsigned object_ = 0;
  unsigned ownedName_ = 0;
  unsigned watch_ = 0;
  unsigned signals_ = 0;
};

}  // namespace tavelle
