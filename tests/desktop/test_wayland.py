"""On a Wayland compositor: the wallpaper behind everything, on every output; rest where nobody sees it; the menu."""

import re

import pytest
from gi.repository import GLib
from session import TALKING, VirtualDesktop, XView, color_page, end, wait_until
from sway import SwayDesktop
from tray import Watcher
from Xlib import XK

BLUE, RED, WHITE, BLACK = 0x2060C0, 0xFF0000, 0xFFFFFF, 0
BLUE_PAGE = color_page("#2060c0", """<script>say(`${innerWidth}x${innerHeight}`);
window.wallpaper = {play() { say('play'); }, pause() { say('pause'); }};</script>""")


@pytest.fixture(scope="module", name="screen")
def fixture_screen():
    with VirtualDesktop(monitors=2, window_manager=False) as screen:
        screen.run("setxkbmap", "-rules", "evdev")  # the numbers of keys that sway takes them to have
        yield screen


@pytest.fixture(scope="module", name="desktop")
def fixture_desktop(screen):
    with SwayDesktop(screen) as desktop:
        yield desktop


@pytest.fixture(name="view")
def fixture_view(screen):
    view = XView(screen.environment["DISPLAY"])
    yield view
    view.display.close()


def wait_for(view, *expected):
    """Waits for colours at places, each as (x, y, colour)."""
    for x, y, color in expected:
        view.wait_for(color, (x, y, 1, 1))


@pytest.fixture(name="window")
def fixture_window(desktop):
    """Opens windows, and closes them in the end."""
    opened = []
    yield lambda name: opened.append(desktop.open(name))
    for each in opened:
        end(each)
    wait_until(lambda: not desktop.windows(), 20, "the windows to go")


def test_wallpaper_lies_below_windows_on_both_outputs(desktop, tavelle, view, window):
    tavelle.play(BLUE_PAGE)
    wait_for(view, (0, 0, BLUE), (1279, 719, BLUE), (1280, 0, BLUE), (2559, 719, BLUE))
    desktop.do("focus output X11-1")
    window("red")
    wait_for(view, (1279, 719, RED))  # its first picture would bring the size of its tile back
    desktop.do('[app_id="red"] floating enable, resize set 400 300, move position 100 100')
    wait_for(view, (90, 90, BLUE), (150, 380, RED), (510, 300, BLUE))
    assert "Tavelle wallpaper" not in str(desktop.windows())
    assert "screen 2: 0.0% covered" in tavelle.run("--coverage").stdout


def test_menu(desktop, tavelle, view, window):
    for number in range(12):
        tavelle.add(f"Wallpaper {number}", TALKING)
    tavelle.store(wallpaper="Wallpaper 3")
    desktop.do("focus output X11-1")
    window("red")
    with Watcher(desktop, host=True) as panel:
        tavelle.start()
        tavelle.wait("loaded", count=2)
        wait_until(lambda: panel.calls, 20, "the icon")

        def open_menu(x, y):
            panel.call("Activate", GLib.Variant("(ii)", (x, y)))

        # By keyboard, at the top of the second output: the item before the last but one opens the program at login.
        open_menu(2500, 10)
        wait_for(view, (2400, 20, WHITE))
        view.type(XK.XK_Up, XK.XK_Up, XK.XK_Up, XK.XK_Return)
        tavelle.wait("open at login: true")
        wait_for(view, (2400, 20, BLACK))
        wait_until(lambda: desktop.windows()["red"]["focused"], 20, "the keyboard to go back")
        # By pointer, at the lower edge: the list grows upwards.
        open_menu(1270, 715)
        wait_for(view, (1262, 365, WHITE), (1262, 250, RED))
        view.point((1000, 450))
        view.click((1100, 477))
        wait_for(view, (1262, 250, WHITE), (1262, 712, WHITE))
        view.point((1002, 280))
        view.click((1000, 282))
        tavelle.wait("showing Wallpaper 0")
        wait_for(view, (1262, 712, RED))
        # Let go of without a choice: by key, and by a click elsewhere.
        for let_go in (lambda: view.type(XK.XK_Down, XK.XK_Escape), lambda: view.click((2000, 600))):
            open_menu(1270, 10)
            wait_for(view, (1262, 20, WHITE))
            let_go()
            wait_for(view, (1262, 20, RED))


def test_guide_is_a_window_and_the_picture_is_not_there(desktop, tavelle):
    (tavelle.add("Other", BLUE_PAGE) / "still.jpg").write_bytes(b"a picture")
    tavelle.play(BLUE_PAGE)
    tavelle.act("how-to-use")
    wait_until(lambda: any("How to Use" in each["name"] for each in desktop.windows().values()), 30, "the guide")
    tavelle.show("Other")
    tavelle.wait("showing Other")
    refused = tavelle.found("couldn't set the System Settings wallpaper: this Wayland desktop has no picture")
    assert len(refused) == 2


@pytest.mark.parametrize("environment, said", [
    ({"GDK_BACKEND": "x11"}, "couldn't connect to a Wayland or X11 display"),
    ({"WAYLAND_DISPLAY": "none"}, "couldn't connect to an X11 display")])
def test_says_why_there_is_no_display(tavelle, environment, said):
    done = tavelle.run(**environment)
    assert (done.returncode, done.stderr) == (1, f"tavelle: {said}\n")


def test_outputs_come_and_go(desktop, tavelle, view):
    tavelle.environment["WAYLAND_DEBUG"] = "1"
    tavelle.play(BLUE_PAGE)
    desktop.unplug("X11-2")
    tavelle.wait(r"showing on 1 display\(s\)")
    wait_for(view, (0, 0, BLUE), (1279, 719, BLUE))
    desktop.plug()
    wait_for(view, (0, 0, BLUE), (1279, 719, BLUE), (1280, 0, BLUE), (2303, 719, BLUE))
    # One goes and another comes at once: in the end no screen has changed, but each is another output.
    desktop.unplug("X11-1")
    desktop.plug()
    wait_for(view, (0, 0, BLUE), (2047, 719, BLUE))
    for output in list(desktop.outputs()):
        desktop.unplug(output)
    tavelle.wait(r"showing on 0 display\(s\)")
    desktop.plug()
    wait_for(view, (0, 0, BLUE), (1023, 719, BLUE))
    assert not tavelle.found("page: 0x0")
    # Not for a moment on another output: the compositor is never left the choice.
    outputs = re.findall(r'get_layer_surface\(.*, (\S+), 0, "desktop"',
                         (tavelle.home / "stderr.txt").read_text())
    assert len(outputs) >= 6 and "nil" not in outputs
