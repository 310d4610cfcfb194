"""What hides the desktop of a Wayland compositor, as the program tells it, on each way of asking the compositor."""

import pytest
from session import FIRST, SECOND, Tavelle, wait_until
from sway import SwayDesktop
from test_coverage import expect

MONITORS = "HEADLESS-1 0 0 1280 720 HEADLESS-2 1280 0 1280 720"


@pytest.fixture(name="desktop")
def fixture_desktop():
    with SwayDesktop() as desktop:
        desktop.do("focus output HEADLESS-1")
        yield desktop


@pytest.fixture(name="tavelle")
def fixture_tavelle(desktop, tmp_path):
    tavelle = Tavelle(desktop, tmp_path)
    yield tavelle
    tavelle.bus.close_sync()


def test_sway_tells_where_windows_are(tavelle, desktop):
    expect(tavelle, [])
    desktop.open("a")
    desktop.open("b")
    left, right, floating = (0, 0, 640, 720), (640, 0, 640, 720), (1200, 100, 400, 300)
    for command, rects in (
            ("[app_id=b] border normal", [left, right]),
            ("[app_id=b] border none, floating enable, resize set 400 300, move absolute position 1200 100",
             [floating, FIRST]),
            ("[app_id=b] move scratchpad", [FIRST]),
            ("focus output HEADLESS-1; workspace 7", []),
            ("workspace 1; [app_id=b] scratchpad show; [app_id=b] floating disable; layout tabbed", [FIRST]),
            ("[app_id=a] fullscreen enable", [FIRST]),
            ("[app_id=a] fullscreen disable; [app_id=b] move container to workspace 2", [FIRST, SECOND])):
        desktop.do(command)
        expect(tavelle, rects)


def test_what_a_panel_leaves_is_what_counts(tavelle, desktop):
    desktop.start(["swaybar", "-b", "panel"])
    areas = [(0, 30, 1280, 690), SECOND]
    wait_until(lambda: any(each["rect"]["y"] == 30 for each in desktop.ask(kind="get_workspaces")), 20, "the panel")
    desktop.open("a")
    expect(tavelle, areas[:1], areas)
    desktop.do("gaps outer all set 60")
    expect(tavelle, [(60, 90, 1160, 570)], areas)


def test_other_compositors_tell_of_windows_that_fill_the_screen(tavelle, desktop):
    # Without its socket sway is one of them.
    for source in ({"SWAYSOCK": ""}, {"SWAYSOCK": "/nowhere"}):
        desktop.open("a")
        expect(tavelle, [], **source)
        desktop.do("fullscreen enable")
        expect(tavelle, [FIRST], **source)
        # One at a time: a window that is moved while it fills the screen sway 1.10 goes on telling on its old output.
        for command, rects in (("fullscreen disable", []), ("move container to output HEADLESS-2", []),
                               ("fullscreen enable", [SECOND])):
            desktop.do(f"[app_id=a] {command}")
            expect(tavelle, rects, **source)
        desktop.do("focus output HEADLESS-1; [app_id=a] kill")
        expect(tavelle, [], **source)


def test_a_socket_of_another_sway_says_nothing_of_this_one(tavelle, desktop):
    with SwayDesktop() as other:
        other.open("a")
        expect(tavelle, [], SWAYSOCK=other.environment["SWAYSOCK"])


@pytest.mark.parametrize("source", [{}, {"SWAYSOCK": ""}], ids=["sway's socket", "the common protocol"])
def test_changes_of_windows_are_told(desktop, told, source):
    desktop.open("a")
    lines = told(**source)
    before = 0 if source else 1
    assert lines()[-1] == f"{MONITORS} {before}"
    desktop.open("b")
    for command, number in [("[app_id=b] fullscreen enable", 1), ("[app_id=b] kill", before)]:
        seen = len(lines())
        desktop.do(command)
        wait_until(lambda seen=seen, number=number: lines()[seen:][-1:] == [f"{MONITORS} {number}"], 20,
                   f"{number} after {command}")


def test_monitors_are_where_the_compositor_has_them(desktop, told):
    # By the common protocol nothing is told of windows while monitors change.
    lines = told(SWAYSOCK="")
    seen = len(lines())
    # Describes the monitors again, all but their places.
    desktop.do("reload")
    wait_until(lambda: lines()[seen:], 20, "the monitors")
    desktop.open("a")
    desktop.do("fullscreen enable")
    wait_until(lambda: lines()[-1] == f"{MONITORS} 1", 20, lambda: f"the window; it says {lines()}")
    assert set(lines()) == {f"{MONITORS} 0", f"{MONITORS} 1"}
    # Beside a higher one all of them together take the same room, wherever it is.
    for command, place in (("scale 2", "1280 0 640 360"), ("position 1280 100", "1280 100 640 360")):
        desktop.do(f"output HEADLESS-2 {command}")
        wait_until(lambda: lines()[-1] == f"HEADLESS-1 0 0 1280 720 HEADLESS-2 {place} 1", 20,
                   lambda: f"{place}; it says {lines()}")
