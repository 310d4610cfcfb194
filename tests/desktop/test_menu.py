"""The status menu: clicks, the keyboard and assistive technology reach what is in it."""

import subprocess
import sys

from session import PATIENCE, TALKING, X, wait_until
from Xlib import XK

MONITORS = 1
ROW = 22
PADDING = 6  # the menu's own, with its frame
NAMES = [f"Wallpaper {number}" for number in range(1, 13)]


def start(tavelle, current="Wallpaper 9", **environment):
    for name in NAMES:
        tavelle.add(name, TALKING)
    tavelle.store(wallpaper=current, recentWallpapers=[current, "Wallpaper 2"])
    tavelle.start(**environment)
    tavelle.wait("loaded")


def row_at(place, index):
    """A point in a row of the list, the heading being the first."""
    return place[0] + 100, place[1] + PADDING + ROW * index + ROW // 2


def test_a_click_chooses(tavelle, menu, view):
    start(tavelle)
    view.point((300, 100))
    place = menu.open()
    # A press that ends elsewhere chooses nothing; neither does a click on the row that makes all appear.
    view.point(row_at(place, 2), X.ButtonPress)
    view.point(row_at(place, 1))
    view.point(row_at(place, 4), X.ButtonRelease)
    view.click(row_at(place, 4))
    wait_until(lambda: menu.wait_until_open()[3] == place[3] + 187 - 3 * ROW, 20, "all wallpapers")
    # In sight are those around the one that plays. Back to the top with the wheel, and the second one.
    for _ in range(10):
        view.click(row_at(place, 3), button=4)
    view.click(row_at(place, 2))
    tavelle.wait("showing Wallpaper 2")
    menu.wait_until_closed()
    assert len(tavelle.found("showing Wallpaper")) == 1


def test_items_below_the_list_do_their_work(tavelle, menu, view):
    start(tavelle)
    menu.open()
    view.type(*[XK.XK_Up] * 4, XK.XK_Right)
    menu.wait_until_open(2)
    view.type(XK.XK_Down, XK.XK_Down, XK.XK_Return)
    tavelle.wait("frame rate 60 FPS, resolution 50%")
    menu.wait_until_closed()
    menu.open()
    view.type(XK.XK_Up, XK.XK_Return)
    process, tavelle.process = tavelle.process, None
    assert process.wait(PATIENCE) == 0


def test_the_keyboard_walks_through_the_rows_and_the_menu_stays_on_the_screen(tavelle, menu, view):
    start(tavelle)
    view.point((1270, 710))
    collapsed = menu.open()
    view.type(*[XK.XK_Down] * 4, XK.XK_Return)
    expanded = wait_until(lambda: next((p for p in [menu.wait_until_open()] if p[3] > collapsed[3]), None), 20, "growth")
    assert expanded[0] + expanded[2] <= 1280 and expanded[1] + expanded[3] <= 720
    view.press(XK.XK_Return)
    wait_until(lambda: menu.wait_until_open() == collapsed, 20, "the menu as it was")
    view.press(XK.XK_Return)
    wait_until(lambda: menu.wait_until_open() == expanded, 20, "all wallpapers again")
    # From Show Less up to the first row, which comes into sight, and one down again.
    def color_at(y):
        return view.pixels(expanded[0] + 12, expanded[1] + PADDING + y, 1, 1)[0]
    # Show Less has the keyboard; it is drawn a little after the menu has grown.
    plain = color_at(3)
    highlight = wait_until(lambda: {color_at(ROW + 187 + ROW // 2)} - {plain}, 20, "the last row").pop()
    view.type(*[XK.XK_Up] * 12)
    wait_until(lambda: color_at(ROW + ROW // 2) == highlight, 20, "the first row")
    view.type(XK.XK_Down, XK.XK_space)
    tavelle.wait("showing Wallpaper 2")
    menu.wait_until_closed()


ACCESSIBLE = """
import sys, gi
gi.require_version("Atspi", "2.0")
from gi.repository import Atspi
def walk(node):
    yield node
    for i in range(node.get_child_count()):
        child = node.get_child_at_index(i)
        if child:
            yield from walk(child)
desktop = Atspi.get_desktop(0)
program = next(each for each in (desktop.get_child_at_index(i) for i in range(desktop.get_child_count()))
               if each and each.get_name() == "tavelle")
for node in walk(program):
    if node.get_role() == Atspi.Role.MENU_ITEM and node.get_parent().get_name() == "Wallpapers":
        checked = node.get_state_set().contains(Atspi.StateType.CHECKED)
        print(f"{node.get_name()}|{checked}|{node.get_action_iface() and node.get_action_name(0)}", flush=True)
        if sys.argv[1:] == [node.get_name()]:
            node.do_action(0)
            break
"""


def test_assistive_technology_finds_and_presses_every_row(tavelle, menu):
    environment = tavelle.environment | {"NO_AT_BRIDGE": "0"}
    start(tavelle, NO_AT_BRIDGE="0", GTK_MODULES="gail:atk-bridge")

    def rows(*press):
        done = subprocess.run([sys.executable, "-c", ACCESSIBLE, *press], env=environment, capture_output=True, text=True,
                              timeout=PATIENCE, check=False)
        return [line.split("|") for line in done.stdout.splitlines()]
    menu.open()
    quick = [["Wallpaper 9", "True", "press"], ["Wallpaper 2", "False", "press"], ["Wallpaper 12", "False", "press"]]
    wait_until(lambda: rows()[:3] == quick, 30, lambda: f"the quick list: {rows()}")
    rows("Show All (12)")
    every = [[name, str(name == "Wallpaper 9"), "press"] for name in NAMES] + [["Show Less", "False", "press"]]
    wait_until(lambda: rows() == every, 30, lambda: f"all rows: {rows()}")
    rows("Wallpaper 1")
    tavelle.wait("showing Wallpaper 1$")
    menu.wait_until_closed()
