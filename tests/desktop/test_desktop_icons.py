"""The icons of a real file manager, over the page that plays behind them."""

import configparser

import pytest
from session import VirtualDesktop, XView, color_page, end, wait_until

# The corner where the icons are; within it one that is there from the beginning, and the bare desktop.
CORNER, ICON, BARE = (0, 0, 240, 720), (75, 50), (200, 600)
GREEN, YELLOW = 0x008000, 0xFFFF00
# What the pixels of the frame are at most that shows which icon has the keyboard.
FRAME = 400


class FileManagerDesktop(VirtualDesktop):
    """Two monitors, a window manager and a file manager with one icon at least, over a picture of one colour."""

    name = file_manager = None

    def __init__(self):
        super().__init__(monitors=2)
        self._running = None

    def _start_window_manager(self):
        home = self.folder / "home"
        (home / "Desktop/Projects").mkdir(parents=True)
        self.environment |= {"HOME": str(home), "XDG_CURRENT_DESKTOP": self.name, "GSETTINGS_BACKEND": "keyfile"}
        self._start_desktop()
        self.start_file_manager()

    def _start_desktop(self):
        raise NotImplementedError

    def start_file_manager(self):
        self._running = self.start(self.file_manager)

    def restart_file_manager(self):
        end(self._running)
        self.start_file_manager()


class XfceDesktop(FileManagerDesktop):
    name, file_manager = "XFCE", ["xfdesktop", "--disable-wm-check"]

    def __init__(self, compositing):
        super().__init__()
        self._compositing = compositing

    def _start_desktop(self):
        service = configparser.RawConfigParser()
        service.read("/usr/share/dbus-1/services/org.xfce.Xfconf.service")
        self.start(service["D-BUS Service"]["Exec"].split())
        self.run("gdbus", "wait", "--session", "--timeout", "30", "org.xfce.Xfconf")
        for monitor in ("DUMMY0", "DUMMY1"):
            for name in ("color-style", "image-style"):
                self.run("xfconf-query", "--channel", "xfce4-desktop", "--create", "--type", "int", "--set", "0",
                         "--property", f"/backdrop/screen0/monitor{monitor}/workspace0/{name}")
        self.start(["xfwm4", f"--compositor={self._compositing}"])


class MateDesktop(FileManagerDesktop):
    name, file_manager = "MATE", ["caja", "--force-desktop", "--no-default-window"]

    def _start_desktop(self):
        for key, value in (("picture-filename", ""), ("color-shading-type", "solid")):
            self.run("gsettings", "set", "org.mate.background", key, value)
        self.start(["marco", "--no-composite"])


@pytest.fixture(scope="module", name="desktop", ids=["Xfce", "Xfce, not composited", "MATE"],
                params=[lambda: XfceDesktop("on"), lambda: XfceDesktop("off"), MateDesktop])
def fixture_desktop(request):
    with request.param() as desktop:
        yield desktop


class Corner:
    """What is seen in the corner: icons in their colours, and a page around them. The file manager may move them a
    little, as when monitors change."""

    def __init__(self, view):
        self.view = view
        wait_until(lambda: len(self.colors()) > 50 and self.colors() == self.colors(), 60, "the icons", 1)
        before = view.pixels(*CORNER)
        self.plain = view.pixels(*BARE, 1, 1)[0]
        self.drawn = sum(pixel != self.plain for pixel in before)
        # What hardly differs from the picture may be taken for it.
        self.icons = [pixel for pixel in before if self.differs(pixel)]

    def differs(self, pixel):
        return any(abs((pixel >> shift & 255) - (self.plain >> shift & 255)) > 6 for shift in (0, 8, 16))

    def colors(self):
        return self.view.colors(*CORNER)

    def other_than(self, color):
        return [pixel for pixel in self.view.pixels(*CORNER) if pixel != color]

    def wait_for_page(self, color):
        def looks_right():
            seen = self.other_than(color)
            return len(self.icons) <= len(seen) <= self.drawn + FRAME and set(self.icons) <= set(seen)
        wait_until(looks_right, 30, lambda: f"{len(self.icons)} pixels of icons on {color:06x}; "
                                            f"there are {len(self.other_than(color))} that are not the page's")


def test_icons_stay_in_sight_and_in_use(desktop, tavelle, view):
    corner = Corner(view)
    tavelle.play(color_page("#008000"))
    if view.property(view.root, "_XROOTPMAP_ID") == [0]:
        # Since its version 4.20 this file manager keeps the picture to itself.
        tavelle.wait("desktop: the desktop's icons are hidden behind the wallpaper")
        view.wait_for(GREEN, CORNER)
        return
    corner.wait_for_page(GREEN)
    view.wait_for(GREEN, (1280, 0, 1280, 720))
    tavelle.add("Next", color_page("#ffff00"))
    tavelle.show("Next")
    corner.wait_for_page(YELLOW)
    # The wallpaper outlives a click beside the icons; one on an icon selects it, which is seen; another ends that.
    view.click(BARE)
    view.click(ICON)
    wait_until(lambda: len(corner.colors() - set(corner.icons) - {YELLOW}) > 5, 20, "the selection")
    view.click(BARE)
    corner.wait_for_page(YELLOW)
    desktop.restart_file_manager()
    corner.wait_for_page(YELLOW)
    desktop.unplug("DUMMY1")
    tavelle.wait(r"showing on 1 display")
    corner.wait_for_page(YELLOW)
    desktop.plug("DUMMY1", "1280x0")
    tavelle.wait(r"showing on 2 display", count=2)
    corner.wait_for_page(YELLOW)
    # An icon more comes up, and goes.
    (desktop.folder / "home/Desktop/More").mkdir()
    wait_until(lambda: len(corner.other_than(YELLOW)) > corner.drawn + 2 * FRAME, 20, "more icons")
    (desktop.folder / "home/Desktop/More").rmdir()
    corner.wait_for_page(YELLOW)
    tavelle.stop()
    corner.wait_for_page(corner.plain)
