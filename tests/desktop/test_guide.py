"""The tutorial: when it opens, what its buttons do, how it closes."""

import shutil
import time

import pytest
from session import BINARY, X, color_page, wait_until
from Xlib import XK

MONITORS = 1
TITLE = "How to Use Tavelle"
# Places in the window, seen from the corner of its content.
ADD, FOLDER, MENU, SWITCH, NEXT, CLOSE = (273, 475), (466, 475), (379, 477), (434, 483), (676, 558), (742, 14)
PAGE = color_page("#204060")
STRIP, BACKGROUND = (300, 10), (20, 400)


class Guide:
    """The guide's window, as somebody in front of the screen finds it."""

    def __init__(self, tavelle, view):
        self.tavelle = tavelle
        self.view = view

    def open(self):
        """Waits until the page is there and has the keyboard."""
        self.tavelle.act("how-to-use")
        window = self.view.wait_for_focus(TITLE)
        self.heading()
        return window

    def wait_until_closed(self):
        wait_until(lambda: not self.view.named(TITLE), 20, "the guide to be gone")

    def at(self, place):
        """A place of the window's on the screen."""
        x, y, width, height = self.view.place(self.view.named(TITLE)[0])
        border = (width - 760) // 2
        assert (width, height) == (760 + 2 * border, 600 + 2 * border)
        return x + border + place[0], y + border + place[1]

    def heading(self, other_than=None):
        """The page's heading as it looks once it has come to rest."""
        seen = [None]

        def at_rest():
            seen.append(self.view.pixels(*self.at((100, 350)), 560, 40))
            return seen[-1] == seen[-2] != other_than and len(set(seen[-1])) > 5
        wait_until(at_rest, 20, "the page to come to rest", interval=0.15)
        return seen[-1]

    def wait_for_switch(self, on):
        """Left of its knob it has the colour of the button below when it is on."""
        def colors():
            return [self.view.colors(*self.at((x - left, y)), 1, 1) for (x, y), left in ((SWITCH, 12), (NEXT, 40))]
        wait_until(lambda: (colors()[0] == colors()[1]) == on, 20, f"the switch to be {'on' if on else 'off'}")

    def click(self, place):
        self.view.click(self.at(place))

    def turn_to(self, number):
        for _ in range(number):
            before = self.heading()
            self.click(NEXT)
            self.heading(other_than=before)


@pytest.fixture(name="guide")
def fixture_guide(tavelle, view):
    return Guide(tavelle, view)


def open_with(tavelle, kind):
    """Has the desktop open things of a kind by a program that only writes down what it got."""
    entry = tavelle.home / ".local/share/applications/opener.desktop"
    entry.parent.mkdir(parents=True)
    entry.write_text(f"[Desktop Entry]\nType=Application\nName=Opener\nMimeType={kind};\n"
                     f"Exec=sh -c 'echo \"$1\" >>{tavelle.home}/opened' opener %u\n")
    choice = tavelle.home / ".config/mimeapps.list"
    choice.parent.mkdir()
    choice.write_text(f"[Default Applications]\n{kind}=opener.desktop\n")
    return tavelle.home / "opened"


def test_opens_by_itself_in_the_middle_at_the_first_launch(tavelle, view, windows):
    windows.open(0, 0, 640, 720)  # a window manager that has the choice would place another beside it
    tavelle.settings_file.parent.mkdir(parents=True)
    tavelle.start()
    x, _, width, _ = view.place(view.wait_for_focus(TITLE))
    assert x == (1280 - width) // 2
    assert tavelle.stored()["guideShown"] is True


def test_its_buttons_and_switch_do_what_they_say(tavelle, guide, view):
    opened = open_with(tavelle, "inode/directory")
    tavelle.play(PAGE)
    guide.open()
    guide.turn_to(1)
    guide.click(ADD)
    view.wait_for_focus("Add Wallpaper")
    view.press(XK.XK_Escape)
    view.wait_for_focus(TITLE)
    guide.click(FOLDER)
    wait_until(lambda: opened.exists() and opened.read_text() == f"{tavelle.library}\n", 20, "the folder")
    guide.turn_to(1)
    guide.click(MENU)
    wait_until(lambda: view.named("Tavelle", wider_than=100), 20, "the menu")
    view.press(XK.XK_Escape)
    view.wait_for_focus(TITLE)
    guide.turn_to(2)
    for on in (True, False, True):
        guide.wait_for_switch(not on)
        guide.click(SWITCH)
        guide.wait_for_switch(on)
    assert tavelle.messages()[-1] == "open at login: true"
    # The state comes from the session, also for a page that has just been loaded.
    view.press(XK.XK_Escape)
    guide.wait_until_closed()
    guide.open()
    view.press(XK.XK_End)
    guide.wait_for_switch(True)
    guide.click(NEXT)
    guide.wait_until_closed()


def test_closed_it_is_gone_with_its_page_and_comes_back_afresh(tavelle, guide, view):
    tavelle.play(PAGE)
    others = set(tavelle.page_processes())
    headings, pages = [], []
    for close in (lambda _: guide.click(CLOSE), lambda _: view.press(XK.XK_Escape),
                  lambda _: view.press(XK.XK_Control_L, XK.XK_w),
                  lambda window: view.ask_manager("_NET_CLOSE_WINDOW", window)):
        window = guide.open()
        headings.append(guide.heading())
        pages += set(tavelle.page_processes()) - others
        for keys in [(XK.XK_Control_L, XK.XK_Shift_L, XK.XK_w), (XK.XK_w,), (XK.XK_Alt_L, XK.XK_w)]:
            view.press(*keys)
        guide.turn_to(1)
        close(window)
        guide.wait_until_closed()
        wait_until(lambda: set(tavelle.page_processes()) == others, 20, "the page's process to go")
    assert headings == [headings[0]] * 4 and len(set(pages)) == len(pages) == 4


def test_is_dragged_by_the_strip_and_the_background_but_not_by_a_button(tavelle, guide, view):
    tavelle.play(PAGE)
    guide.open()
    for held, step, moves in ((STRIP, 10, 1), (BACKGROUND, -10, 1), (NEXT, 10, 0)):
        (x, y), (from_x, from_y) = guide.at((0, 0)), guide.at(held)
        view.point((from_x, from_y), X.ButtonPress)
        for count in (1, 2, 3, 4, 5, 6):
            time.sleep(0.05)  # a hand's speed
            view.point((from_x + step * count, from_y + step * count // 2))
        there = x + 6 * step * moves, y + 3 * step * moves
        wait_until(lambda: guide.at((0, 0)) == there, 20, "the window to be where it was dragged to")
        view.point((from_x + 6 * step, from_y + 3 * step), X.ButtonRelease)
        guide.heading()
    assert guide.at((0, 0)) == there


@pytest.mark.parametrize("dots_per_inch", [97, 120])
def test_the_size_of_the_desktops_text_is_none_of_a_pages(desktop, tavelle, guide, dots_per_inch):
    desktop.run("sh", "-c", f"echo Xft.dpi: {dots_per_inch} | xrdb -merge")
    try:
        tavelle.play(PAGE)
        assert len(tavelle.found(r'loaded: .*"size":\[1280,720,1\]')) == 1
        guide.open()
        guide.turn_to(4)
        guide.click(SWITCH)
        guide.wait_for_switch(True)
    finally:
        desktop.run("xrdb", "-remove")


def test_the_page_cannot_be_left_and_links_open_in_the_browser(tavelle, guide, view):
    opened = open_with(tavelle, "x-scheme-handler/https")
    # A copy of the program that has another page in place of the tutorial.
    copy = tavelle.home / "copy"
    (copy / "bin").mkdir(parents=True)
    (copy / "share/tavelle").mkdir(parents=True)
    tavelle.program = shutil.copy(BINARY, copy / "bin")
    (copy / "lib").symlink_to(BINARY.parents[1] / "lib")
    (copy / "share/tavelle/tutorial.html").write_text("""<body style="margin:0;background:#080">
        <style>a{display:block;height:100px}</style>
        <a href="https://example.org/a"></a><a href="tutorial.html?again"></a><a href="https://example.org/b" target="b">
        </a><script>setTimeout(() => { location = 'https://example.org/c'; })</script>""")
    tavelle.play(PAGE)
    tavelle.act("how-to-use")
    view.wait_for_focus(TITLE)
    page = (*guide.at((0, 100)), 700, 500)
    view.wait_for(0x008800, page)
    for number, lines in enumerate([1, 1, 2]):
        guide.click((300, 50 + 100 * number))
        wait_until(lambda: opened.exists() and opened.read_text().count("\n") == lines, 20, "the browser")
    assert opened.read_text() == "https://example.org/a\nhttps://example.org/b\n"
    assert view.colors(*page) == {0x008800}
