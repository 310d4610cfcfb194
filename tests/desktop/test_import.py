"""Bringing wallpapers in: the chooser, the portal in its place, the alert, and what then plays."""

import subprocess

from bus_service import BusService
from gi.repository import GLib
from session import FIRST, SECOND, color_page, wait_until
from Xlib import XK

CHOOSER = "Add Wallpaper"
PORTAL = """<interface name="org.freedesktop.portal.FileChooser">
<property name="version" type="u" access="read"/>
<method name="OpenFile"><arg type="s" direction="in"/><arg type="s" direction="in"/><arg type="a{sv}" direction="in"/>
<arg type="o" direction="out"/></method></interface>"""


def start_choosing_in(tavelle, folder):
    """Plays, with a chooser that shows this folder when it opens."""
    settings = tavelle.home / ".config/glib-2.0/settings/keyfile"
    settings.parent.mkdir(parents=True)
    settings.write_text("[org/gtk/settings/file-chooser]\nstartup-mode='cwd'\n")
    folder.mkdir()
    tavelle.environment |= {"GSETTINGS_BACKEND": "keyfile"}
    tavelle.play(color_page("#008000"), cwd=folder)


def choose_all(tavelle, view):
    """Adds all files by keyboard alone."""
    tavelle.act("add")
    view.wait_for_focus(CHOOSER)

    def closes():
        if not view.named(CHOOSER):
            return True
        view.press(XK.XK_Control_L, XK.XK_a)
        view.press(XK.XK_Return)
        return False
    # The chooser takes a while to find the files, and to close: no key may reach what comes next.
    wait_until(closes, 20, "the chooser to close", 1)


def is_red(color):
    return color >> 16 > 0xE0 and color & 0xFFFF < 0x2020


def test_what_is_chosen_by_keyboard_plays(tavelle, view, tmp_path):
    start_choosing_in(tavelle, tmp_path / "in")
    subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "color=red:s=320x180:d=1", "-pix_fmt", "yuv420p",
                    tmp_path / "in/red.mp4"], check=True, stdin=subprocess.DEVNULL)
    (tmp_path / "in/page.html").write_text(color_page("#000080"))
    (tmp_path / "in/no wallpaper.txt").write_text("Dear diary")
    choose_all(tavelle, view)
    tavelle.wait("showing red")
    for place in (FIRST, SECOND):
        wait_until(lambda: all(map(is_red, view.colors(*place))), 30, "the video")
    assert {each.name for each in tavelle.library.iterdir()} == {"Own", "page", "red"}
    assert sorted(each.name for each in (tavelle.library / "red").iterdir()) == ["index.html", "still.jpg", "video.mp4"]
    # A second wish finds the chooser that is open; closing it adds nothing.
    tavelle.act("add")
    view.wait_for_focus(CHOOSER)
    tavelle.act("add")
    view.press(XK.XK_Escape)
    wait_until(lambda: not view.named(CHOOSER), 20, "the chooser to close")
    assert len(tavelle.found("added ")) == 2


class Portal(BusService):
    """The desktop's own chooser, for programs that ask for it. Nobody ever answers there."""

    properties = {"version": GLib.Variant("u", 3)}

    def __init__(self, desktop):
        super().__init__(desktop, "org.freedesktop.portal.Desktop", PORTAL, "/org/freedesktop/portal/desktop")

    def called(self, sender, arguments, call):
        caller, token = sender[1:].replace(".", "_"), arguments[2]["handle_token"]
        self.answer = GLib.Variant("(o)", (f"/org/freedesktop/portal/desktop/request/{caller}/{token}",))
        super().called(sender, arguments, call)


def test_the_portal_is_asked_where_it_is_wanted_and_keeps_no_program(desktop, tavelle):
    with Portal(desktop) as portal:
        tavelle.store()
        tavelle.start(GTK_USE_PORTAL="1")
        tavelle.wait("launched")
        tavelle.act("add")
        _parent, title, options = wait_until(lambda: portal.calls, 20, "the portal to be asked")[0]
        assert title == CHOOSER and options["accept_label"] == "Add" and options["multiple"]
        assert {name for _kind, name in options["filters"][0][1]} >= {"video/*", "image/*", "text/html"}
        assert tavelle.stop() == 0
