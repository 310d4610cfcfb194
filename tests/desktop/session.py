"""The program as its surroundings see it: a user, the X server, the session bus, the kernel."""

import os
import pathlib
import plistlib
import re
import signal
import subprocess
import sys

from gi.repository import Gio, GLib
from Xlib import X, Xatom, display, error
from Xlib.ext import xtest
from Xlib.protocol import event

REPOSITORY = pathlib.Path(__file__).resolve().parents[2]
BINARY = pathlib.Path(os.environ.get("TAVELLE_BINARY", REPOSITORY / "build/release/bin/tavelle")).resolve()
PICTURE_PROBE, DISPLAY_PROBE = (BINARY.parent.parent / "tests" / name for name in
                                ("desktop_picture_probe", "display_probe"))
SAMPLES = sorted(each.name for each in (BINARY.parent.parent / "share/tavelle/Wallpapers").iterdir())

sys.path.insert(0, str(REPOSITORY / "tools"))
from virtual_desktop import Session, VirtualDesktop, descendants, end, wait_until  # noqa: E402, F401  (handed on)

# Far more than anything takes, even on a busy machine: only a failing test waits so long.
PATIENCE = 60
FIRST, SECOND = (0, 0, 1280, 720), (1280, 0, 1280, 720)  # the monitors
STAMP = re.compile(r"^\d{4}-\d\d-\d\d \d\d:\d\d:\d\d \+0000 ", re.MULTILINE)
HEAD = """<!doctype html><meta charset="utf-8"><title>page</title><script>
const say = text => window.webkit.messageHandlers.log.postMessage(String(text));
</script>"""
TALKING = HEAD + """<script>
say('new page');
window.wallpaper = {play() { say('play'); }, pause() { say('pause'); }};
</script>"""


def color_page(color, rest=""):
    return HEAD + f'<body style="margin:0;background:{color}">{rest}'


def proc(pid, file):
    try:
        return pathlib.Path(f"/proc/{pid}/{file}").read_text()
    except OSError:
        return ""


def lives(pid):
    return proc(pid, "stat").rpartition(")")[2][:2] not in ("", " Z")


def connect(address):
    """A connection to a bus of the test's own, to be closed by it."""
    flags = Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION
    return Gio.DBusConnection.new_for_address_sync(address, flags, None, None)


class XView:
    """What is on the X server."""

    def __init__(self, name):
        self.display = display.Display(name)
        self.root = self.display.screen().root

    def atom(self, name):
        return self.display.intern_atom(name)

    def pixels(self, *place):
        """The colours on the screen, as 0xRRGGBB, row by row."""
        data = self.root.get_image(*place, X.ZPixmap, 0xFFFFFFFF).data
        return [pixel & 0xFFFFFF for pixel in memoryview(data).cast("I")]

    def colors(self, *place):
        return set(self.pixels(*place))

    def wait_for(self, color, *places):
        """Waits until nothing but the colour is seen at the places."""
        for place in places:
            wait_until(lambda: self.colors(*place) == {color}, 30,
                       lambda: f"{color:06x} on {place}; there is {[f'{each:06x}' for each in self.colors(*place)][:9]}")

    def windows(self, parent=None):
        """All windows there are, from the lowest to the highest, children after their parents."""
        for window in (parent or self.root).query_tree().children:
            yield window
            try:
                yield from self.windows(window)
            except error.BadWindow:
                pass

    def named(self, name, in_sight=True, wider_than=0):
        """The windows of that title."""
        found = []
        for window in self.windows():
            try:
                if (bytes(self.property(window, "_NET_WM_NAME")) == name.encode()
                        and window.get_geometry().width > wider_than
                        and (not in_sight or window.get_attributes().map_state == X.IsViewable)):
                    found.append(window)
            except (error.BadWindow, error.BadDrawable):
                pass
        return found

    def wallpapers(self):
        return self.named("Tavelle wallpaper", in_sight=False)

    def wait_for_focus(self, name):
        window = wait_until(lambda: self.named(name), 30, name)[0]
        wait_until(lambda: self.property(self.root, "_NET_ACTIVE_WINDOW") == [window.id], 20, f"{name} to have the focus")
        return window

    def press(self, *keys):
        """Keys that are held down together."""
        codes = [self.display.keysym_to_keycode(key) for key in keys]
        for happening, order in [(X.KeyPress, codes), (X.KeyRelease, codes[::-1])]:
            for code in order:
                xtest.fake_input(self.display, happening, code)
        self.display.sync()

    def type(self, *keys):
        """Keys one after another."""
        for key in keys:
            self.press(key)

    def point(self, place, *happenings, button=1):
        """Moves the pointer, then presses or releases a button."""
        xtest.fake_input(self.display, X.MotionNotify, x=place[0], y=place[1])
        for happening in happenings:
            xtest.fake_input(self.display, happening, button)
        self.display.sync()

    def click(self, place, button=1):
        self.point(place, X.ButtonPress, X.ButtonRelease, button=button)

    def place(self, window):
        size = window.get_geometry()
        corner = window.translate_coords(self.root, 0, 0)
        return -corner.x, -corner.y, size.width, size.height

    def places_in_sight(self):
        """The rectangles of the wallpaper windows that can be seen."""
        try:
            return sorted(self.place(each) for each in self.wallpapers()
                          if each.get_attributes().map_state == X.IsViewable)
        except (error.BadWindow, error.BadDrawable):
            return []

    def property(self, window, name):
        value = window.get_full_property(self.atom(name), X.AnyPropertyType)
        return list(value.value) if value else []

    def set_property(self, window, name, values):
        """Numbers, or names that stand for atoms."""
        if isinstance(values[0], str):
            kind, values = Xatom.ATOM, [self.atom(each) for each in values]
        else:
            kind = self.atom(name) if name == "_MOTIF_WM_HINTS" else Xatom.CARDINAL
        window.change_property(self.atom(name), kind, 32, values)
        self.display.sync()

    def ask_manager(self, request, window, *data):
        """Asks the window manager for something, as a pager or a task bar does."""
        self.root.send_event(event.ClientMessage(window=window, client_type=self.atom(request),
                                                 data=(32, [*data, *[0] * (5 - len(data))])),
                             event_mask=X.SubstructureRedirectMask)
        self.display.sync()

    def open_window(self, x, y, width, height, color, properties=None, **attributes):
        window = self.root.create_window(x, y, width, height, 0, X.CopyFromParent, background_pixel=color,
                                         event_mask=X.ButtonPressMask, **attributes)
        window.set_wm_normal_hints(flags=1, x=x, y=y)  # the user's own choice of a place
        for name, value in (properties or {}).items():
            self.set_property(window, name, value)
        window.map()
        self.display.sync()
        return window


class Tavelle:
    """The program, with a home folder of its own."""

    def __init__(self, desktop, home):
        self.desktop = desktop
        self.home = home
        self.library = home / "Pictures/Wallpapers"
        self.log_file = home / "Library/Logs/Tavelle.log"
        self.settings_file = home / ".config/tavelle/defaults.plist"
        self.store_file = home / "Library/Application Support/com.apple.wallpaper/Store/Index.plist"
        self.environment = desktop.environment | {"HOME": str(home)}
        self.process = None
        self.program = BINARY
        self.bus = connect(desktop.environment["DBUS_SESSION_BUS_ADDRESS"])

    def add(self, name, page):
        folder = self.library / name
        folder.mkdir(parents=True, exist_ok=True)
        (folder / "index.html").write_text(page)
        return folder

    def store(self, **values):
        """Settings as an earlier run left them, with the bundled wallpapers long since added (and deleted)."""
        values = {"seededWallpapers": SAMPLES, "guideShown": True} | values
        self.settings_file.parent.mkdir(parents=True, exist_ok=True)
        self.settings_file.write_bytes(plistlib.dumps(values))

    def stored(self):
        return plistlib.loads(self.settings_file.read_bytes())

    def start(self, *arguments, cwd=None, **environment):
        """A program that finds no settings at all has shown its tutorial before, unless their folder is there."""
        if not self.settings_file.parent.exists():
            self.settings_file.parent.mkdir(parents=True)
            self.settings_file.write_bytes(plistlib.dumps({"guideShown": True}))
        # The engine's libraries fill it with complaints about the machine, but a sanitizer's report is here too.
        with open(self.home / "stderr.txt", "ab") as complaints:
            self.process = subprocess.Popen([self.program, *arguments], env=self.environment | environment, cwd=cwd,
                                            stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL, stderr=complaints)

    def play(self, page, cwd=None, **values):
        """Starts with this page as the wallpaper, and waits until it is on every screen."""
        folder = self.add("Own", page)
        self.store(wallpaper="Own", **values)
        self.start(cwd=cwd)
        self.wait("loaded: ", count=int(self.wait(r"showing on (\d+) display")[1]))
        return folder

    def run(self, *arguments, cwd=None, program=BINARY, **environment):
        """Runs the program to its end."""
        return subprocess.run([program, *arguments], env=self.environment | environment, stdin=subprocess.DEVNULL,
                              cwd=cwd, capture_output=True, text=True, timeout=PATIENCE, check=False)

    def pictures(self, *screen_and_image, **environment):
        """What the desktop says it shows, by screen; set before, when a screen and an image are given."""
        done = self.run(*map(str, screen_and_image), program=PICTURE_PROBE, **environment)
        assert done.returncode == 0, done.stderr
        pairs = [each.split("\t") for each in done.stdout.split("\0")[:-1]]
        return {screen: None if name == "-" else name for screen, name in pairs}

    def ask_bus(self, method, signature="()", *arguments):
        return self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
                                  GLib.Variant(signature, arguments), None, Gio.DBusCallFlags.NONE, -1, None).unpack()

    def serve(self, name, command):
        """Has the bus start the command for the name."""
        services = pathlib.Path(self.environment["XDG_RUNTIME_DIR"], "dbus-1/services")
        services.mkdir(parents=True, exist_ok=True)
        (services / f"{name}.service").write_text(f"[D-BUS Service]\nName={name}\nExec={command}\n")
        self.ask_bus("ReloadConfig")

    def act(self, action, *parameter):
        self.bus.call_sync("org.tavelle.Tavelle", "/org/tavelle/Tavelle", "org.gtk.Actions", "Activate",
                           GLib.Variant("(sava{sv})", (action, parameter, {})), None, Gio.DBusCallFlags.NONE, -1, None)

    def show(self, name):
        self.act("show", GLib.Variant("s", name))

    def messages(self):
        try:
            return [line.rstrip("\n") for line in STAMP.split(self.log_file.read_text())[1:]]
        except FileNotFoundError:
            return []

    def found(self, pattern):
        return [match for match in (re.match(pattern, message) for message in self.messages()) if match]

    def wait(self, pattern, count=1, seconds=PATIENCE):
        """Waits until the log has `count` messages that start so, and gives the match of the last."""
        return wait_until(lambda: self.found(pattern)[count - 1:], seconds,
                          lambda: f"{count} × {pattern!r} in the log:\n" + "\n".join(self.messages()))[0]

    def page_processes(self):
        return [pid for pid in descendants(self.process.pid) if proc(pid, "comm").startswith("WebKitWebProces")]

    def stop(self, number=signal.SIGTERM, seconds=PATIENCE):
        """Ends the program by a signal and gives its exit status. Nothing that it started may stay."""
        process, self.process = self.process, None
        family = descendants(process.pid)
        try:
            process.send_signal(number)
            status = process.wait(seconds)
            wait_until(lambda: not any(map(lives, family)), 5, "the program's children to go")
            return status
        finally:
            for pid in filter(lives, family):
                os.kill(pid, signal.SIGKILL)
            process.wait()
