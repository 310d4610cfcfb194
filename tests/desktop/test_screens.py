"""Monitors that come, go and change while the program runs."""

import os

import pytest
from session import FIRST, SECOND, color_page, wait_until


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
