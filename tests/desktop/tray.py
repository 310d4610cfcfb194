"""The program's icon: panels that show it, the bus where it is registered, the menu that it opens."""

import configparser
import subprocess

from bus_service import BusService
from gi.repository import GLib
from session import end, wait_until
from Xlib import XK

XFCONF_SERVICE = "/usr/share/dbus-1/services/org.xfce.Xfconf.service"
WATCHER = "org.kde.StatusNotifierWatcher"
WATCHER_XML = f"""<interface name="{WATCHER}">
<method name="RegisterStatusNotifierItem"><arg type="s" direction="in"/></method>
<property name="IsStatusNotifierHostRegistered" type="b" access="read"/></interface>"""
SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0"><property name="configver" type="int" value="2"/>
<property name="panels" type="array"><value type="int" value="1"/>
<property name="dark-mode" type="bool" value="false"/>
<property name="panel-1" type="empty"><property name="position" type="string" value="p=6;x=0;y=0"/>
<property name="length" type="uint" value="100"/><property name="position-locked" type="bool" value="true"/>
<property name="size" type="uint" value="30"/>
<property name="plugin-ids" type="array"><value type="int" value="1"/></property></property></property>
<property name="plugins" type="empty"><property name="plugin-1" type="string" value="systray">
<property name="square-icons" type="bool" value="true"/></property></property></channel>"""


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


def start_xfconf(environment):
    """Xfce's settings service."""
    service = configparser.RawConfigParser()
    service.read(XFCONF_SERVICE)
    return subprocess.Popen(service["D-BUS Service"]["Exec"].split(), env=environment, stdin=subprocess.DEVNULL)


class Panel:
    """Xfce's panel, with nothing but its tray, at the top of the screen; it takes icons both from the bus and from the X
    server."""

    def __init__(self, desktop, home):
        settings = home / ".config/xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml"
        settings.parent.mkdir(parents=True)
        settings.write_text(SETTINGS)
        self.environment = desktop.environment | {"HOME": str(home), "XDG_CONFIG_HOME": str(home / ".config")}
        self.started = [start_xfconf(self.environment)]
        desktop.run("gdbus", "wait", "--session", "--timeout", "30", "org.xfce.Xfconf")
        self.start()

    def start(self):
        self.started.append(subprocess.Popen(["xfce4-panel", "--disable-wm-check"], env=self.environment,
                                             stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                                             stderr=subprocess.DEVNULL))

    def stop(self):
        end(self.started.pop())

    def close(self):
        for process in reversed(self.started):
            end(process)


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


def in_sight(view):
    """The rectangle of the one icon in the panel at the top of the screen; none while it shows anything else."""
    width = 100
    pixels = view.pixels(0, 0, width, 28)
    own = pixels[-1]
    found = [(i % width, i // width) for i, pixel in enumerate(pixels) if pixel != own]
    if own == 0 or not found:  # the bare screen is black
        return None
    left, top, right, bottom = (pick(each[i] for each in found) for pick in (min, max) for i in (0, 1))
    width, height = right - left + 1, bottom - top + 1
    return (left, top, width, height) if 16 <= height <= 24 and width <= height else None


def embedded(view):
    """The icons that an X tray shows. One that changes its parent meanwhile comes twice; a window of one pixel's width is
    one that the toolkit replaces when it has learnt how the tray wants it."""
    return list({window.id: window for window in view.named("Tavelle", wider_than=1)}.values())
