"""Where the wallpaper is: on all of every screen there is, behind everything, and in nobody's way."""

import os

import pytest
from session import FIRST, HEAD, SECOND, Tavelle, VirtualDesktop, X, XView, color_page, wait_until

GREEN, YELLOW, BLUE = 0x008000, 0xFFFF00, 0x000080
RING = HEAD + "<body style='background:#008000;margin:0'><div style='position:fixed;inset:0;border:1px solid #f00'>"
SLOW = HEAD + """<script>const end = performance.now() + 1500; while (performance.now() < end); say('slow')</script>
<body style="background:#008000">"""


def test_both_screens_are_painted_to_the_last_pixel(tavelle, view):
    tavelle.play(RING)
    ring, inside = [0xFF0000], [0x008000]
    expected = ring * 1280 + (ring + inside * 1278 + ring) * 718 + ring * 1280
    for place in (FIRST, SECOND):
        wait_until(lambda: view.pixels(*place) == expected, 20, f"the page on {place}")
    assert view.places_in_sight() == [FIRST, SECOND]
    # What a window manager takes for the desktop.
    for window in view.wallpapers():
        assert view.property(window, "_NET_WM_WINDOW_TYPE") == [view.atom("_NET_WM_WINDOW_TYPE_DESKTOP")]
        assert view.property(window, "_NET_WM_DESKTOP") == [0xFFFFFFFF]


def test_no_white_flash_before_the_first_paint(tavelle, view):
    view.root.change_attributes(background_pixel=BLUE)
    view.root.clear_area()
    tavelle.add("Own", SLOW)
    tavelle.add("Next", SLOW.replace("#008000", "#800000"))
    tavelle.store(wallpaper="Own")
    seen = set()

    def painted(color):
        shot = view.colors(0, 0, 2560, 720)
        seen.update(shot)
        return shot == {color}

    tavelle.start()
    wait_until(lambda: painted(0x008000), 30, "the page", interval=0.01)
    assert seen == {BLUE, 0, 0x008000}  # black: what the windows show while the page has painted nothing
    tavelle.show("Next")
    wait_until(lambda: painted(0x800000), 30, "the next page", interval=0.01)
    assert seen == {BLUE, 0, 0x008000, 0x800000}


def test_stays_below_windows_and_takes_no_focus(tavelle, view):
    before = view.open_window(100, 100, 300, 200, YELLOW)
    wait_until(lambda: view.property(view.root, "_NET_ACTIVE_WINDOW") == [before.id], 20, "the focus")
    tavelle.play(color_page("#008000"))
    view.wait_for(GREEN, (600, 600, 1, 1))
    assert view.property(view.root, "_NET_ACTIVE_WINDOW") == [before.id]
    view.open_window(1400, 100, 300, 200, YELLOW)
    view.wait_for(YELLOW, (1500, 200, 1, 1))
    assert view.colors(200, 200, 1, 1) == {YELLOW}
    wallpapers = {each.id for each in view.wallpapers()}
    assert set(view.property(view.root, "_NET_CLIENT_LIST_STACKING")[:2]) == wallpapers


def next_press(view):
    while view.display.pending_events():
        happened = view.display.next_event()
        if happened.type == X.ButtonPress:
            return happened
    return None


def test_clicks_go_through_to_what_lies_below(tavelle, view):
    below = view.open_window(0, 0, 2560, 720, BLUE, override_redirect=True)
    below.configure(stack_mode=X.Below)
    window = view.open_window(100, 100, 300, 200, YELLOW)
    wait_until(lambda: view.property(view.root, "_NET_ACTIVE_WINDOW") == [window.id], 20, "the focus")
    tavelle.play(color_page("#008000"))
    below.configure(stack_mode=X.Below)
    for x, y in [(700, 500), (1900, 300)]:
        view.wait_for(GREEN, (x, y, 1, 1))
        view.click((x, y))
        press = wait_until(lambda: next_press(view), 10, "the click")
        assert (press.window.id, press.root_x, press.root_y) == (below.id, x, y)
    assert view.property(view.root, "_NET_ACTIVE_WINDOW") == [window.id]


def test_lies_lowest_without_a_window_manager(tmp_path):
    with VirtualDesktop(monitors=1, window_manager=False) as desktop:
        view = XView(desktop.environment["DISPLAY"])
        view.open_window(100, 100, 300, 200, YELLOW)
        tavelle = Tavelle(desktop, tmp_path)
        try:
            tavelle.play(color_page("#008000"))
            view.wait_for(GREEN, (600, 600, 1, 1))
            assert view.places_in_sight() == [FIRST]
            # As the program asked for it: a window manager keeps of these what it knows.
            assert set(view.property(view.wallpapers()[0], "_NET_WM_STATE")) >= {
                view.atom(f"_NET_WM_STATE_{each}") for each in ("STICKY", "BELOW", "SKIP_TASKBAR", "SKIP_PAGER")}
            assert view.colors(200, 200, 1, 1) == {YELLOW}
            assert tavelle.stop() == 0
        finally:
            if tavelle.process:
                tavelle.stop()
            view.display.close()


@pytest.fixture(name="playing")
def fixture_playing(desktop, tavelle):
    tavelle.play(color_page("#008000"))
    yield tavelle
    desktop.plug("DUMMY0", "0x0")
    desktop.plug("DUMMY1", "1280x0")


def test_windows_follow_the_monitors(playing, desktop, view):
    changes = [(lambda: desktop.run("xrandr", "--output", "DUMMY1", "--primary"), [FIRST, SECOND]),
               (lambda: desktop.run("xrandr", "--output", "DUMMY0", "--primary"), [FIRST, SECOND]),
               (lambda: desktop.unplug("DUMMY1"), [FIRST]),
               (lambda: desktop.plug("DUMMY1", "1280x0", "1024x768"), [FIRST, (1280, 0, 1024, 768)]),
               (lambda: desktop.plug("DUMMY1", "0x720"), [FIRST, (0, 720, 1280, 720)]),
               (lambda: desktop.plug("DUMMY0", "0x0", "800x600"), [(0, 0, 800, 600), (0, 720, 1280, 720)])]
    for number, (change, places) in enumerate(changes, 2):
        change()
        assert playing.wait(r"showing on (\d+) display", count=number)[1] == str(len(places))
        wait_until(lambda: view.places_in_sight() == places, 20, f"windows on {places}")
        view.wait_for(0x008000, *places)
    assert len(view.wallpapers()) == 2


def test_rebuilding_leaves_nothing_behind(playing, desktop, view):
    def resources():
        return (len(list(view.windows())), len(playing.page_processes()),
                len(os.listdir(f"/proc/{playing.process.pid}/fd")))

    start, loads = None, 2
    for number in range(15):
        for change, screens in ((lambda: desktop.unplug("DUMMY1"), 1), (lambda: desktop.plug("DUMMY1", "1280x0"), 2)):
            change()
            loads += screens
            playing.wait("loaded: ", count=loads)
        if number == 2:  # what is made once for all has been made by now
            wait_until(lambda: len(playing.page_processes()) == 2 and view.places_in_sight() == [FIRST, SECOND], 20,
                       "the pages")
            start = resources()
    assert len(playing.found("showing on ")) == 31
    # 36 pages have gone since, so that whatever each of them might leave behind would show.
    wait_until(lambda: all(now <= then + slack for now, then, slack in zip(resources(), start, (16, 0, 12))), 30,
               lambda: f"{resources()} windows, page processes and descriptors to come down to {start}")
    assert view.places_in_sight() == [FIRST, SECOND]
