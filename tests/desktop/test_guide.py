"""The tutorial: when it opens, what its buttons do, how it closes."""

import os
import shutil
import signal
import time

import pytest
from session import BINARY, X, color_page, wait_until
from Xlib import XK
from Xlib.error import BadDrawable, BadWindow
from Xlib.ext import xtest

# Places in the window, seen from the corner of its content.
ADD, FOLDER, MENU, SWITCH, NEXT, CLOSE = (273, 475), (466, 475), (379, 477), (434, 483), (676, 558), (742, 14)
HEADING, STRIP, BACKGROUND = (100, 350, 560, 40), (300, 10), (20, 400)


@pytest.fixture(scope="module", name="monitors")
def fixture_monitors():
    return 1


class Guide:
    """The guide's window, as somebody in front of the screen finds it."""

    def __init__(self, tavelle, view):
        self.tavelle = tavelle
        self.view = view

    def windows(self):
        found = []
        for window in self.view.windows():
            try:
                if (window.get_wm_name() == "How to Use Tavelle"
                        and window.get_attributes().map_state == X.IsViewable):
                    found.append(window)
            except (BadWindow, BadDrawable):
                pass
        return found

    def wait(self, there=True, seconds=30):
        return wait_until(lambda: bool(self.windows()) == there and (self.windows() or True), seconds,
                          f"the guide to be {'there' if there else 'gone'}")

    def wait_for_focus(self):
        window = self.wait()[0]
        wait_until(lambda: self.view.property(self.view.root, "_NET_ACTIVE_WINDOW") == [window.id], 20, "the focus")
        return window

    def open(self):
        """Waits until the page is there and has the keyboard."""
        window = self.wait_for_focus()
        self.picture()
        return window

    def corner(self):
        x, y, width, height = self.view.place(self.windows()[0])
        assert width - 760 == height - 600
        return x + (width - 760) // 2, y + (height - 600) // 2

    def picture(self, place=HEADING, other_than=None):
        """What is at the place once it has come to rest, which must not be one colour."""
        seen = [None]

        def settled():
            x, y = self.corner()
            seen.append(self.view.pixels(x + place[0], y + place[1], *place[2:]))
            return seen[-1] == seen[-2] != other_than and len(set(seen[-1])) > 5
        wait_until(settled, 20, "the page to come to rest", interval=0.15)
        return seen[-1]

    def wait_for_switch(self, on):
        def is_on():
            x, y = self.corner()
            # Where its knob is not when it is on; on, that is the colour that the button below has.
            return self.view.pixels(x + SWITCH[0] - 12, y + SWITCH[1], 1, 1) == self.view.pixels(
                x + NEXT[0] - 40, y + NEXT[1], 1, 1)
        wait_until(lambda: is_on() == on, 20, f"the switch to be {'on' if on else 'off'}")

    def point(self, place, *buttons):
        x, y = self.corner()
        xtest.fake_input(self.view.display, X.MotionNotify, x=x + place[0], y=y + place[1])
        for happening in buttons:
            xtest.fake_input(self.view.display, happening, 1)
        self.view.display.sync()

    def click(self, place):
        self.point(place, X.ButtonPress, X.ButtonRelease)

    def press(self, *keys):
        codes = [self.view.display.keysym_to_keycode(key) for key in keys]
        for happening, order in [(X.KeyPress, codes), (X.KeyRelease, codes[::-1])]:
            for code in order:
                xtest.fake_input(self.view.display, happening, code)
        self.view.display.sync()

    def turn_to(self, number):
        for _ in range(number):
            before = self.picture()
            self.click(NEXT)
            self.picture(other_than=before)


@pytest.fixture(name="guide")
def fixture_guide(tavelle, view):
    return Guide(tavelle, view)


def start(tavelle):
    tavelle.play(color_page("#204060"))


def own_resources(tavelle, tmp_path):
    """A copy of the program whose resources a test may change."""
    shutil.copytree(BINARY.parents[1] / "bin", tmp_path / "copy/bin", ignore=shutil.ignore_patterns("*_tests"))
    (tmp_path / "copy/lib").symlink_to(BINARY.parents[1] / "lib")
    (tmp_path / "copy/share/tavelle").mkdir(parents=True)
    start(tavelle)
    tavelle.stop()
    tavelle.program = tmp_path / "copy/bin/tavelle"
    return tmp_path / "copy/share/tavelle/tutorial.html"


def test_opens_by_itself_at_the_first_launch_only(tavelle, guide):
    tavelle.settings_file.parent.mkdir(parents=True)
    tavelle.start()
    tavelle.wait("launched")
    launched = time.monotonic()
    guide.open()
    assert time.monotonic() - launched > 0.6
    assert tavelle.stored()["guideShown"] is True
    tavelle.stop()
    tavelle.start()
    # The measurement comes long after the tutorial would.
    tavelle.wait("measured ")
    assert not guide.windows()


def test_a_second_start_shows_it_again_from_the_beginning(tavelle, guide, view, windows):
    start(tavelle)
    assert tavelle.run().returncode == 0
    window = guide.open()
    assert view.place(window)[0] == (1280 - view.place(window)[2]) // 2
    first_page = guide.picture()
    guide.turn_to(1)
    other = windows.open(200, 100, 800, 500)
    windows.activate(other)
    assert tavelle.run().returncode == 0
    assert guide.open().id == window.id
    wait_until(lambda: guide.picture() == first_page, 20, "the first page")


def test_its_buttons_and_switch_do_what_they_say(tavelle, guide, tmp_path):
    viewer = tmp_path / ".local/share/applications/viewer.desktop"
    viewer.parent.mkdir(parents=True)
    viewer.write_text("[Desktop Entry]\nType=Application\nName=Viewer\nMimeType=inode/directory;\n"
                      f"Exec=sh -c 'echo \"$1\" >{tmp_path}/viewed' viewer %f\n")
    (tmp_path / ".config").mkdir()
    (tmp_path / ".config/mimeapps.list").write_text("[Default Applications]\ninode/directory=viewer.desktop\n")
    start(tavelle)
    tavelle.act("how-to-use")
    guide.open()
    guide.turn_to(1)
    guide.click(ADD)
    tavelle.wait("stand-in: addWallpaper")
    guide.click(FOLDER)
    viewed = tmp_path / "viewed"
    wait_until(lambda: viewed.exists() and viewed.read_text() == f"{tavelle.library}\n", 20, "the folder")
    guide.turn_to(1)
    guide.click(MENU)
    tavelle.wait("stand-in: openMenu")
    guide.turn_to(2)
    for on in (True, False, True):
        guide.wait_for_switch(not on)
        guide.click(SWITCH)
        guide.wait_for_switch(on)
    assert tavelle.messages()[-1] == "open at login: true"
    # The state comes from the session, also for a page that has just been loaded.
    guide.press(XK.XK_Escape)
    guide.wait(there=False)
    tavelle.act("how-to-use")
    guide.open()
    guide.press(XK.XK_End)
    guide.wait_for_switch(True)
    guide.click(NEXT)
    guide.wait(there=False)


@pytest.mark.parametrize("close", ["button", "escape", "control", "manager"])
def test_closed_it_is_gone_with_its_page_and_comes_back_afresh(tavelle, guide, close):
    start(tavelle)
    others = set(tavelle.page_processes())
    tavelle.act("how-to-use")
    window = guide.open()
    first_page = guide.picture()
    first_process = set(tavelle.page_processes()) - others
    guide.turn_to(1)
    if close == "button":
        guide.click(CLOSE)
    elif close == "escape":
        guide.press(XK.XK_Escape)
    elif close == "manager":
        guide.view.ask_manager("_NET_CLOSE_WINDOW", window)
    else:
        for keys in [(XK.XK_Control_L, XK.XK_Shift_L, XK.XK_w), (XK.XK_w,), (XK.XK_Alt_L, XK.XK_w)]:
            guide.press(*keys)
        guide.click(NEXT)
        guide.picture()
        guide.press(XK.XK_Control_L, XK.XK_w)
    guide.wait(there=False)
    wait_until(lambda: set(tavelle.page_processes()) == others, 20, "the page's process to go")
    tavelle.act("how-to-use")
    guide.open()
    assert guide.picture() == first_page
    assert len(set(tavelle.page_processes()) - others - first_process) == 1


@pytest.mark.parametrize("place", [STRIP, BACKGROUND])
def test_is_dragged_by_the_strip_and_the_background(tavelle, guide, place):
    start(tavelle)
    tavelle.act("how-to-use")
    guide.open()
    x, y = guide.corner()
    # By a button it is not.
    for start_place, way in [(NEXT, (0, 0)), (place, (60, 40))]:
        guide.point(start_place, X.ButtonPress)
        for step in range(1, 9):
            xtest.fake_input(guide.view.display, X.MotionNotify, x=x + start_place[0] + 10 * step,
                             y=y + start_place[1] + 5 * step)
            guide.view.display.sync()
            time.sleep(0.05)  # a hand's speed
        xtest.fake_input(guide.view.display, X.MotionNotify, x=x + start_place[0] + 60, y=y + start_place[1] + 40)
        guide.view.display.sync()
        wait_until(lambda: guide.corner() == (x + way[0], y + way[1]), 20, lambda: f"to be moved: {guide.corner()}")
        xtest.fake_input(guide.view.display, X.ButtonRelease, 1)
        guide.view.display.sync()


def test_a_page_that_never_finishes_loading_is_shown_all_the_same(tavelle, guide, tmp_path):
    page = own_resources(tavelle, tmp_path)
    page.write_text(color_page("#800000", "<script>for (;;);</script>"))
    tavelle.start()
    tavelle.wait("loaded: ", count=2)
    tavelle.act("how-to-use")
    began = time.monotonic()
    guide.wait_for_focus()
    assert 1.3 < time.monotonic() - began < 20
    # Not the page, which is busy, but the window answers.
    guide.click(CLOSE)
    guide.wait(there=False)


def test_a_missing_page_is_one_line_in_the_log(tavelle, guide, tmp_path):
    own_resources(tavelle, tmp_path)
    tavelle.start()
    tavelle.wait("loaded: ", count=2)
    tavelle.act("how-to-use")
    tavelle.wait("tutorial.html is missing from the app bundle$")
    assert not guide.windows()


def test_a_page_process_that_dies_is_replaced(tavelle, guide):
    start(tavelle)
    others = set(tavelle.page_processes())
    tavelle.act("how-to-use")
    guide.open()
    first_page = guide.picture()
    for line in ["guide: page process ended; reloading", "guide: page process ended again; closing"]:
        wait_until(lambda: guide.picture() == first_page, 20, "the page")
        process, = set(tavelle.page_processes()) - others
        os.kill(process, signal.SIGKILL)
        tavelle.wait(line)
    guide.wait(there=False)
