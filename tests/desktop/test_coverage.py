"""What hides the desktop, as the program tells it, against a count of the test's own."""

import contextlib
import time

import pytest
from session import FIRST, SECOND, wait_until
from Xlib.error import BadWindow


def share(area, rects):
    """How many of the sample points of the area lie in one of the rectangles, as a share."""
    left, top, width, height = area
    points = [(left + (column + 0.5) * width / 48, top + (row + 0.5) * height / 30)
              for row in range(30) for column in range(48)]
    return sum(any(x <= px < x + w and y <= py < y + h for x, y, w, h in rects) for px, py in points) / len(points)


def expect(tavelle, rects, areas=(FIRST, SECOND), **environment):
    shares = [share(area, rects) for area in areas]
    report = "".join(f"screen {number}: {100 * each:.1f}% covered by {len(rects)} windows -> "
                     f"{'paused' if each >= 0.985 else 'playing'}\n" for number, each in enumerate(shares, 1))

    def said():
        return tavelle.run("--coverage", "ignored", **environment).stdout
    wait_until(lambda: said() == report, 10, lambda: f"{report!r}; the program says {said()!r}")


def test_windows_count_where_they_are(tavelle, windows):
    expect(tavelle, [])
    rects = [(0, 0, 640, 720), (1240, 100, 300, 333), (1300, 150, 100, 100), (900, 500, 900, 220)]
    for place in rects:
        windows.open(*place)
    expect(tavelle, rects)
    windows.close()
    decorated = windows.open_decorated(100, 100, 700, 500)
    frame = windows.frame(decorated)
    assert frame[2] * frame[3] > 700 * 500
    expect(tavelle, [frame])
    windows.close()
    windows.open(200, 200, 700, 500, _GTK_FRAME_EXTENTS=[40, 30, 20, 50])
    expect(tavelle, [(240, 220, 630, 430)])
    windows.close()
    full = windows.open_decorated(1400, 100, 300, 200, _GTK_FRAME_EXTENTS=[40, 30, 20, 50],
                                  _NET_WM_STATE=["_NET_WM_STATE_FULLSCREEN"])
    wait_until(lambda: windows.view.place(full) == SECOND, 20, "the full screen")
    expect(tavelle, [SECOND])


@pytest.mark.parametrize(("properties", "counts"), [
    *[({"_NET_WM_WINDOW_TYPE": [f"_NET_WM_WINDOW_TYPE_{each}"]}, True) for each in ("NORMAL", "DIALOG", "UTILITY")],
    *[({"_NET_WM_WINDOW_TYPE": [f"_NET_WM_WINDOW_TYPE_{each}"]}, False)
      for each in ("DOCK", "DESKTOP", "NOTIFICATION", "SPLASH", "MENU", "TOOLBAR", "TOOLTIP", "POPUP_MENU")],
    ({"_NET_WM_WINDOW_TYPE": ["_SOMETHING_NEW", "_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_WINDOW_TYPE_NORMAL"]}, False),
    ({"_NET_WM_WINDOW_TYPE": ["_SOMETHING_NEW"]}, True),
    ({"_NET_WM_STATE": ["_NET_WM_STATE_ABOVE"]}, True),
    ({"_NET_WM_WINDOW_OPACITY": [0xFFFFFFFF // 25]}, False),
    ({"_NET_WM_WINDOW_OPACITY": [0xFFFFFFFF // 16]}, True),
])
def test_what_a_window_is_decides_whether_it_counts(tavelle, windows, properties, counts):
    windows.open(300, 200, 400, 300, **properties)
    expect(tavelle, [(300, 200, 400, 300)] if counts else [])


def test_only_windows_in_sight_count(tavelle, windows):
    place = (300, 200, 400, 300)
    window = windows.open(*place)
    expect(tavelle, [place])
    # Where all windows stay mapped, only what the manager says of them tells.
    windows.view.set_property(windows.view.root, "_NET_SHOWING_DESKTOP", [1])
    expect(tavelle, [])
    windows.view.set_property(windows.view.root, "_NET_SHOWING_DESKTOP", [0])
    windows.view.set_property(window, "_NET_WM_DESKTOP", [1])
    expect(tavelle, [])
    rolled_up = windows.open_decorated(500, 100, 700, 500)
    frame = windows.frame(rolled_up)
    expect(tavelle, [frame])
    windows.set_state(rolled_up, True, "SHADED")
    expect(tavelle, [])
    windows.set_state(rolled_up, False, "SHADED")
    expect(tavelle, [frame])


@pytest.mark.parametrize(("panel", "struts", "areas"), [
    ((0, 0, 1280, 30), [0, 0, 30, 0, 0, 0, 0, 0, 0, 1279, 0, 0], [(0, 30, 1280, 690), SECOND]),
    ((1280, 660, 1280, 60), [0, 0, 0, 60, 0, 0, 0, 0, 0, 0, 1280, 2559], [FIRST, (1280, 0, 1280, 660)]),
    ((1280, 0, 90, 720), [1370, 0, 0, 0, 0, 719, 0, 0, 0, 0, 0, 0], [FIRST, (1370, 0, 1190, 720)]),
    ((2460, 0, 100, 720), [0, 100, 0, 0, 0, 0, 0, 719, 0, 0, 0, 0], [FIRST, (1280, 0, 1180, 720)]),
], ids=["top", "bottom of the second", "left of the second", "right of the second"])
def test_a_panel_takes_from_its_own_monitor(tavelle, windows, panel, struts, areas):
    # First, since a window manager may keep later ones away from a panel at an inner edge on both of its sides.
    for area in areas:
        windows.open(*area)
    windows.open_panel(panel, *struts)
    expect(tavelle, areas, areas)


def test_work_areas_that_the_manager_tells(tavelle, windows, view, desktop):
    supported = view.property(view.root, "_NET_SUPPORTED")
    with contextlib.ExitStack() as undo:
        undo.callback(view.root.change_property, view.atom("_NET_SUPPORTED"), view.atom("ATOM"), 32, supported)
        undo.callback(view.root.delete_property, view.atom("_GTK_WORKAREAS_D0"))
        view.root.change_property(view.atom("_NET_SUPPORTED"), view.atom("ATOM"), 32,
                                  [*supported, view.atom("_GTK_WORKAREAS")])
        view.set_property(view.root, "_GTK_WORKAREAS_D0", [0, 40, 1280, 680, *SECOND])
        rect = (0, 40, 1280, 300)
        windows.open(*rect)
        expect(tavelle, [rect], [(0, 40, 1280, 680), SECOND])
    windows.close()
    desktop.unplug("DUMMY1")
    try:
        view.set_property(view.root, "_NET_WORKAREA", [0, 50, 1280, 640] * 4)
        windows.open(*rect)
        expect(tavelle, [rect], [(0, 50, 1280, 640)])
    finally:
        desktop.plug("DUMMY1", "1280x0")


def test_logical_pixels_are_what_counts(tavelle, windows):
    for place in [(1280, 0, 640, 720), (100, 100, 70, 70)]:  # 35 logical pixels are too few
        windows.open(*place)
    expect(tavelle, [(640, 0, 320, 360)], [(0, 0, 640, 360), (640, 0, 640, 360)], GDK_SCALE="2")


def test_windows_that_vanish_meanwhile_do_no_harm(tavelle, view):
    until = time.monotonic() + 4
    runs = []
    while time.monotonic() < until:
        short_lived = [view.open_window(100, 100, 300, 200, 0) for _ in range(20)]
        runs.append(tavelle.run("--coverage"))
        for window in short_lived:
            with contextlib.suppress(BadWindow):
                window.destroy()
        view.display.sync()
    assert {(done.returncode, done.stderr, done.stdout.count("\n")) for done in runs} == {(0, "", 2)}


def test_no_display_is_no_screen(tavelle):
    for number in ("", ":99999"):
        done = tavelle.run("--coverage", DISPLAY=number)
        assert (done.returncode, done.stdout, done.stderr) == (0, "", "")
