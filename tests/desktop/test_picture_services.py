"""The still picture on desktops that have a service for it: Xfce's settings, Plasma's shell."""

import configparser
import pathlib
import subprocess
import time
import urllib.parse

import pytest
from bus_service import BusService
from gi.repository import GLib
from plasma_stand_in import PlasmaShell
from session import PICTURE_PROBE, end, wait_until

XFCE = {"XDG_CURRENT_DESKTOP": "XFCE"}
PLASMA = {"XDG_CURRENT_DESKTOP": "KDE"}
MISFITS = "it's \"a\" \\ \n \u2028 é 100%20 #1?;').png"


@pytest.fixture(name="image")
def fixture_image(tmp_path):
    file = tmp_path / MISFITS
    file.touch()
    return file


@pytest.fixture(autouse=True)
def fixture_no_activation(tavelle):
    """On the desktop's bus no settings service starts by itself: it would outlive the bus, and mend what tests break."""
    tavelle.serve("org.xfce.Xfconf", "/bin/false")


class Xfconf:
    """Xfce's settings service, with settings of its own."""

    def __init__(self, tavelle):
        service = configparser.RawConfigParser()
        service.read("/usr/share/dbus-1/services/org.xfce.Xfconf.service")
        folders = {name: str(tavelle.home / ".config") for name in ("XDG_CONFIG_HOME", "XDG_CONFIG_DIRS")}
        self.process = subprocess.Popen(service["D-BUS Service"]["Exec"].split(), stdin=subprocess.DEVNULL,
                                        env=tavelle.environment | folders)
        self.bus = tavelle.bus
        wait_until(lambda: tavelle.ask_bus("NameHasOwner", "(s)", "org.xfce.Xfconf")[0], 30, "the settings service")

    def call(self, method, signature, *arguments):
        return self.bus.call_sync("org.xfce.Xfconf", "/org/xfce/Xfconf", "org.xfce.Xfconf", method,
                                  GLib.Variant(signature, ("xfce4-desktop", *arguments)), None, 0, -1, None).unpack()

    def set(self, name, kind, value):
        self.call("SetProperty", "(ssv)", name, GLib.Variant(kind, value))

    def all(self):
        return self.call("GetAllProperties", "(ss)", "/")[0]


@pytest.fixture(name="xfconf")
def fixture_xfconf(tavelle):
    xfconf = Xfconf(tavelle)
    yield xfconf
    end(xfconf.process)


def test_xfce_shows_it_on_every_monitor_and_workspace(tavelle, view, xfconf, image):
    kept = {"/backdrop/screen0/monitorDUMMY1/workspace9/color-style": ("i", 2),
            "/backdrop/screen0/monitorDUMMY10/workspace0/last-image": ("s", "/other monitor.png"),
            "/desktop-icons/style": ("i", 0)}
    left = {"/backdrop/screen0/monitor0/workspace0/last-image": ("s", "/older kind.png"),
            "/backdrop/screen0/monitorDUMMY0/workspace0/image-style": ("i", 1)}
    for name, (kind, value) in (kept | left).items():
        xfconf.set(name, kind, value)
    done = tavelle.run("--set-still", str(image), **XFCE)
    assert (done.returncode, done.stdout) == (0, "desktop picture set\n"), done.stderr

    workspaces = range(view.property(view.root, "_NET_NUMBER_OF_DESKTOPS")[0])
    assert len(workspaces) > 1
    places = [(monitor, number) for monitor in ("DUMMY0", "DUMMY1", "0") for number in workspaces] + [("DUMMY1", 9)]
    expected = {name: value for name, (_, value) in kept.items()}
    for monitor, number in places:
        base = f"/backdrop/screen0/monitor{monitor}/workspace{number}"
        expected |= {f"{base}/last-image": str(image), f"{base}/image-style": 5}
    assert xfconf.all() == expected


def test_xfce_tells_the_picture_in_sight(tavelle, windows, xfconf, image):
    names = tavelle.pictures("DUMMY1", image, **XFCE)
    assert names["DUMMY0"] is None and names["DUMMY1"]
    base = "/backdrop/screen0/monitorDUMMY1"
    windows.go_to(2)
    seen = [names["DUMMY1"]]
    for name, kind, value, changes in (
            (f"{base}/workspace2/last-image", "s", "/another.png", False),
            ("/backdrop/single-workspace-mode", "b", False, True),
            (f"{base}/workspace0/last-image", "s", "/another.png", False),
            (f"{base}/workspace2/image-style", "i", 0, True)):
        xfconf.set(name, kind, value)
        shown = tavelle.pictures(**XFCE)["DUMMY1"]
        assert (shown != seen[-1], shown is None) == (changes, False), name
        seen.append(shown)
    assert tavelle.pictures("DUMMY1", image, **XFCE) == names


class FileManager(BusService):
    """LXQt's."""

    def __init__(self, tavelle):
        super().__init__(tavelle.desktop, "org.pcmanfm.PCManFM", """<interface name="org.pcmanfm.Application">
            <method name="setWallpaper"><arg type="s" direction="in"/><arg type="s" direction="in"/></method>
            </interface>""", "/Application")
        self.settings = tavelle.home / ".config/pcmanfm-qt/lxqt/settings.conf"

    def called(self, arguments, call):
        self.settings.parent.mkdir(parents=True, exist_ok=True)
        self.settings.write_text(f"[Desktop]\nWallpaper={arguments[0]}\n")
        super().called(arguments, call)


def test_lxqt_shows_the_pixels_of_the_root_window(tavelle, desktop, tmp_path):
    lxqt = {"XDG_CURRENT_DESKTOP": "LXQt"}
    red, blue = (tmp_path / f"{color}.png" for color in ("red", "blue"))
    for image in (red, blue):
        subprocess.run(["convert", "-size", "64x64", f"xc:{image.stem}", image], check=True)
    assert tavelle.run("--set-still", red, **lxqt).returncode == 1
    with FileManager(tavelle) as file_manager:
        names = tavelle.pictures("DUMMY0", red, **lxqt)
        tavelle.pictures("DUMMY1", blue, **lxqt)
        shown, layout = file_manager.calls[-1]
        seen = subprocess.run(["convert", shown, "-format", "%wx%h %[pixel:p{9,9}] %[pixel:p{1300,9}]", "info:"],
                              capture_output=True, text=True, check=True).stdout
        assert (layout, seen) == ("stretch", "2560x720 srgb(255,0,0) srgb(0,0,255)")
        assert [str(each) for each in pathlib.Path(shown).parent.iterdir()] == [shown]
        assert tavelle.pictures(**lxqt)["DUMMY0"] == names["DUMMY0"]
        file_manager.settings.write_text("[Desktop]\nWallpaper=/the user's own.png\n")
        assert tavelle.pictures(**lxqt)["DUMMY0"] == "/the user's own.png"


def plasma_state(screens):
    """Two activities on two screens, numbered from the right, and what is left of a screen that has gone."""
    def containment(screen, last, plugin="org.kde.color"):
        return {"screen": screen, "plugin": plugin,
                "config": {"": {"lastScreen": last}, "Wallpaper/org.kde.image/General": {"Image": "file:///old.png"}}}
    return {"screens": screens, "desktops": [containment(0, 0), containment(1, 0, "org.kde.image"), containment(-1, 0),
                                             containment(-1, 1), containment(-1, 5)]}


@pytest.mark.parametrize("screens", [
    {"0": [1280, 0, 1280, 720], "1": [0, 0, 1280, 720]},
    {"0": [640, 0, 640, 360], "1": [0, 0, 640, 360]},
    {"0": [1280, 0, 640, 360], "1": [0, 0, 640, 360]},
    {"0": [5120, 900, 1280, 720], "1": [3840, 900, 1280, 720]},
], ids=["pixels", "scaled", "scaled in place", "displaced"])
def test_plasma_shows_it_on_the_screen(tavelle, desktop, image, screens):
    with PlasmaShell(desktop, plasma_state(screens)) as shell:
        before = tavelle.pictures(**PLASMA)
        names = tavelle.pictures("DUMMY1", image, **PLASMA)
        assert names["DUMMY0"] == before["DUMMY0"] and None not in before.values()
        assert names["DUMMY1"] not in before.values()
        untouched = plasma_state(screens)["desktops"]
        shown = [each for each, old in zip(shell.state["desktops"], untouched) if each != old]
        assert [(each["screen"], each["config"][""]["lastScreen"]) for each in shown] == [(0, 0), (-1, 0)]
        for each in shown:
            written = each["config"]["Wallpaper/org.kde.image/General"]
            address = urllib.parse.urlsplit(written["Image"])
            assert (each["plugin"], written["FillMode"], address.scheme) == ("org.kde.image", 2, "file")
            assert (urllib.parse.unquote(address.path), address.query, address.fragment) == (str(image), "", "")
        assert tavelle.pictures("DUMMY0", image, **PLASMA) == dict.fromkeys(names, names["DUMMY1"])


def test_plasma_refuses(tavelle, desktop, image):
    done = tavelle.run("--set-still", image, **PLASMA)
    assert (done.returncode, done.stdout) == (1, "desktop picture failed\n")
    assert done.stderr.count(
        'failed: org.kde.plasmashell evaluateScript: Name "org.kde.plasmashell" does not exist\n') == 2
    assert tavelle.pictures(**PLASMA) == {"DUMMY0": None, "DUMMY1": None}

    state = plasma_state({"0": [1280, 0, 1280, 720], "1": [0, 0, 1280, 720]})
    for world, answer, error in (
            (state, lambda call, _: call.return_dbus_error("org.freedesktop.DBus.Error.Failed", "Widgets are locked."),
             "org.kde.plasmashell evaluateScript: Widgets are locked\n"),
            (state, lambda call, _: call.return_value(GLib.Variant("(s)", ("Error: no\nat line 3",))),
             "the Plasma shell says: Error: no at line 3\n"),
            (state, lambda call, _: call.return_value(GLib.Variant("(s)", ("",))),
             "the Plasma shell did not finish the script\n"),
            (state | {"desktops": state["desktops"][1:2]}, None, "the Plasma shell says: there is no such screen\n"),
            (state, lambda *_: None, "org.kde.plasmashell evaluateScript: Timeout was reached\n")):
        with PlasmaShell(desktop, world, answer):
            start = time.monotonic()
            done = tavelle.run("DUMMY1", image, program=PICTURE_PROBE, **PLASMA)
            assert (done.returncode, error in done.stderr) == (1, True), done.stderr
            assert time.monotonic() - start < 15
