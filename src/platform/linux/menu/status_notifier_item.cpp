#include "platform/linux/menu/status_notifier_item.h"

#include <giomm/dbusintrospection.h>
#include <giomm/dbusmethodinvocation.h>
#include <giomm/dbuswatchname.h>
#include <giomm/error.h>
#include <glibmm/main.h>
#include <unistd.h>

#include <array>
#include <string_view>
#include <utility>

#include "platform/linux/handles.h"
#include "platform/linux/menu/program_icon.h"

namespace tavelle {
namespace {

constexpr auto watcher = "org.kde.StatusNotifierWatcher";
constexpr auto watcherPath = "/StatusNotifierWatcher";
constexpr auto itemPath = "/StatusNotifierItem";

/// What a panel may ask. ProvideXdgActivationToken and Scroll are there since panels call them on every item.
constexpr auto introspection = R"xml(<node><interface name="org.kde.StatusNotifierItem">
<property name="Category" type="s" access="read"/>
<property name="Id" type="s" access="read"/>
<property name="Title" type="s" access="read"/>
<property name="Status" type="s" access="read"/>
<property name="WindowId" type="i" access="read"/>
<property name="IconThemePath" type="s" access="read"/>
<property name="IconName" type="s" access="read"/>
<property name="IconPixmap" type="a(iiay)" access="read"/>
<property name="IconAccessibleDesc" type="s" access="read"/>
<property name="OverlayIconName" type="s" access="read"/>
<property name="AttentionIconName" type="s" access="read"/>
<property name="ToolTip" type="(sa(iiay)ss)" access="read"/>
<property name="ItemIsMenu" type="b" access="read"/>
<method name="Activate"><arg type="i" direction="in"/><arg type="i" direction="in"/></method>
<method name="ContextMenu"><arg type="i" direction="in"/><arg type="i" direction="in"/></method>
<method name="SecondaryActivate"><arg type="i" direction="in"/><arg type="i" direction="in"/></method>
<method name="Scroll"><arg type="i" direction="in"/><arg type="s" direction="in"/></method>
<method name="ProvideXdgActivationToken"><arg type="s" direction="in"/></method>
</interface></node>)xml";

Glib::VariantContainerBase arguments(GVariant* tuple) { return Glib::VariantContainerBase(tuple); }

bool wasCancelled(const Glib::Error& error) { return error.matches(G_IO_ERROR, G_IO_ERROR_CANCELLED); }

}  // namespace

StatusNotifierItem::StatusNotifierItem(std::filesystem::path icons, std::function<void(int, int)> clicked,
                                       std::function<void(bool)> shown)
    : icons_(std::move(icons)),
      clicked_(std::move(clicked)),
      shownChanged_(std::move(shown)),
      name_("org.kde.StatusNotifierItem-" + std::to_string(getpid()) + "-1"),
      methods_(
          [this](const auto&, const auto&, const auto&, const auto&, const Glib::ustring& method,
                 const Glib::VariantContainerBase& given, const Glib::RefPtr<Gio::DBus::MethodInvocation>& invocation) {
            invocation->return_value({});
            methodCalled(method.raw(), given);
          },
          [this](Glib::VariantBase& value, const auto&, const auto&, const auto&, const auto&,
                 const Glib::ustring& asked) { value = Glib::VariantBase(property(asked.raw())); }) {
  Gio::DBus::Connection::get(Gio::DBus::BUS_TYPE_SESSION, sigc::mem_fun(*this, &StatusNotifierItem::connected));
}

StatusNotifierItem::~StatusNotifierItem() {
  if (questions_) questions_->cancel();
  if (watch_ != 0) Gio::DBus::unwatch_name(watch_);
  if (signals_ != 0) bus_->signal_unsubscribe(signals_);
  if (ownedName_ != 0) g_bus_unown_name(ownedName_);
  if (object_ != 0) bus_->unregister_object(object_);
}

void StatusNotifierItem::connected(const Answer& answer) {
  try {
    bus_ = Gio::DBus::Connection::get_finish(answer);
    publish();
  } catch (const Glib::Error&) {
    // No session bus, or an item of this process is on it already: the icon is shown in another way.
    return;
  }
  signals_ = bus_->signal_subscribe([this](const auto&...) { askForHost(); }, watcher, watcher, {}, watcherPath);
  watch_ = Gio::DBus::watch_name(
      bus_, watcher, [this](const auto&...) { watcherAppeared(); }, [this](const auto&...) { watcherVanished(); });
}

void StatusNotifierItem::publish() {
  const auto description = Gio::DBus::NodeInfo::create_for_xml(introspection);
  object_ = bus_->register_object(itemPath, description->lookup_interface("org.kde.StatusNotifierItem"), methods_);
  ownedName_ = g_bus_own_name_on_connection(bus_->gobj(), name_.c_str(), G_BUS_NAME_OWNER_FLAGS_NONE, nullptr, nullptr,
                                            nullptr, nullptr);
}

void StatusNotifierItem::watcherAppeared() {
  watcherVanished();
  callWatcher(watcher, "RegisterStatusNotifierItem", arguments(g_variant_new("(s)", name_.c_str())),
              &StatusNotifierItem::registered);
}

void StatusNotifierItem::watcherVanished() {
  if (questions_) questions_->cancel();
  questions_ = Gio::Cancellable::create();
  registered_ = false;
  setShown(false);
}

void StatusNotifierItem::callWatcher(const char* interface, const char* method, const Glib::VariantContainerBase& given,
                                     Call done) {
  bus_->call(watcherPath, interface, method, given, sigc::mem_fun(*this, done), questions_, watcher, -1,
             Gio::DBus::CALL_FLAGS_NO_AUTO_START);
}

void StatusNotifierItem::registered(const Answer& answer) {
  try {
    bus_->call_finish(answer);
  } catch (const Glib::Error&) {
    return;
  }
  registered_ = true;
  askForHost();
}

/// The watcher only keeps the list: icons are shown by hosts, of which there may be none.
void StatusNotifierItem::askForHost() {
  if (!registered_) return;
  callWatcher("org.freedesktop.DBus.Properties", "Get",
              arguments(g_variant_new("(ss)", watcher, "IsStatusNotifierHostRegistered")),
              &StatusNotifierItem::toldOfHost);
}

void StatusNotifierItem::toldOfHost(const Answer& answer) {
  try {
    const auto reply = bus_->call_finish(answer);
    gboolean there = TRUE;
    // Whoever answers something else has taken the icon all the same.
    if (reply.get_type_string() == "(v)") {
      const GVariantPtr tuple(reply.gobj_copy());
      const GVariantPtr boxed(g_variant_get_child_value(tuple.get(), 0));
      const GVariantPtr plain(g_variant_get_variant(boxed.get()));
      if (g_variant_is_of_type(plain.get(), G_VARIANT_TYPE_BOOLEAN)) there = g_variant_get_boolean(plain.get());
    }
    setShown(there != FALSE);
  } catch (const Glib::Error& error) {
    if (!wasCancelled(error)) setShown(true);
  }
}

void StatusNotifierItem::setShown(bool shown) {
  if (std::exchange(shown_, shown) != shown) shownChanged_(shown);
}

void StatusNotifierItem::methodCalled(const std::string& method, const Glib::VariantContainerBase& given) {
  if (method != "Activate" && method != "ContextMenu") return;
  int x = 0;
  int y = 0;
  const GVariantPtr point(given.gobj_copy());
  g_variant_get(point.get(), "(ii)", &x, &y);
  // Not in the middle of the bus's own work, since the item may be destroyed.
  Glib::signal_idle().connect_once(sigc::bind(sigc::mem_fun(*this, &StatusNotifierItem::click), x, y));
}

void StatusNotifierItem::click(int x, int y) {
  const auto clicked = clicked_;
  clicked(x, y);
}

GVariant* StatusNotifierItem::property(const std::string& name) const {
  const std::array<std::pair<std::string_view, std::string>, 9> texts{{{"Category", "ApplicationStatus"},
                                                                       {"Id", "tavelle"},
                                                                       {"Title", "Tavelle"},
                                                                       {"Status", "Active"},
                                                                       {"IconThemePath", icons_.native()},
                                                                       {"IconName", symbolicIconName},
                                                                       {"IconAccessibleDesc", "Tavelle"},
                                                                       {"OverlayIconName", ""},
                                                                       {"AttentionIconName", ""}}};
  for (const auto& [each, text] : texts) {
    if (each == name) return g_variant_new_string(text.c_str());
  }
  if (name == "IconPixmap") return iconPixmaps();
  if (name == "ToolTip") return g_variant_new_parsed("('', @a(iiay) [], 'Tavelle', '')");
  if (name == "ItemIsMenu") return g_variant_new_boolean(FALSE);
  return g_variant_new_int32(0);
}

}  // namespace tavelle
