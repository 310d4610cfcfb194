"""The program's icon: the bus where it is registered, the menu that it opens."""

from bus_service import BusService
from gi.repository import GLib
from session import wait_until
from Xlib import XK

WATCHER = "org.kde.StatusNotifierWatcher"
WATCHER_XML = f"""<interface name="{WATCHER}">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/></interface>"""


class Menu:
    """The menu, as somebody in front of the screen finds it."""

    def __init__(self, tavelle, view):
        self.tavelle = tavelle
        self.view = view

    def windows(self):
        """The menu's window, and those of its submenus."""
        return self.view.named("Tavelle", wider_than=100)

    def open(self):
        self.tavelle.act("menu")
        return self.wait_until_open()

    def wait_until_open(self, count=1):
        return self.view.place(wait_until(lambda: self.windows()[count - 1:], 20, "the menu")[0])

    def wait_until_closed(self):
        wait_until(lambda: not self.windows(), 20, "the menu to be gone")

    def close(self):
        """Closes the open menu, and tells where it was."""
        place = self.wait_until_open()
        self.view.press(XK.XK_Escape)
        self.wait_until_closed()
        return place


class Watcher(BusService):
    """The place on the bus where icons are registered, with or without a panel behind it."""

    def __init__(self, desktop, host):
        super().__init__(desktop, WATCHER, WATCHER_XML, "/StatusNotifierWatcher")
        self.properties = {"IsStatusNotifierHostRegistered": GLib.Variant("b", host)}

    def set_host(self, host):
        self.properties = {"IsStatusNotifierHostRegistered": GLib.Variant("b", host)}
        self.bus.emit_signal(None, "/StatusNotifierWatcher", WATCHER, "StatusNotifierHostRegistered", None)

    def call(self, method, arguments, interface="org.kde.StatusNotifierItem"):
        return self.bus.call_sync(*self.calls[-1], "/StatusNotifierItem", interface, method, arguments, None, 0, -1, None)

    def item_properties(self):
        return self.call("GetAll", GLib.Variant("(s)", ("org.kde.StatusNotifierItem",)),
                         "org.freedesktop.DBus.Properties").unpack()[0]
