"""The icon in the panel and its menu: clicks, the keyboard and assistive technology reach what is in it."""

import contextlib
import subprocess
import sys

from gi.repository import GLib
from session import PATIENCE, TALKING, X, end, wait_until
from tray import Watcher
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
    view.point(row_at(place, 2), X.ButtonPress)
    view.point(row_at(place, 0), X.ButtonRelease)
    # Nor does another button.
    for button in (2, 3, 8):
        view.click(row_at(place, 1), button)
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
    if node.get_role() == Atspi.Role.MENU:
        print(f"{node.get_name()}|{node.get_child_count()}", flush=True)
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

    def seen(*press):
        done = subprocess.run([sys.executable, "-c", ACCESSIBLE, *press], env=environment, capture_output=True, text=True,
                              timeout=PATIENCE, check=False)
        return [line.split("|") for line in done.stdout.splitlines()]

    def rows(*press):
        return [each for each in seen(*press) if len(each) == 3]
    menu.open()
    menus = [["Tavelle", "14"], ["Delete Wallpaper", "12"], ["Frame Rate", "7"], ["Resolution", "6"]]
    wait_until(lambda: [each for each in seen() if len(each) == 2] == menus, 30, lambda: f"the menus: {seen()}")
    quick = [["Wallpaper 9", "True", "press"], ["Wallpaper 2", "False", "press"], ["Wallpaper 12", "False", "press"]]
    wait_until(lambda: rows()[:3] == quick, 30, lambda: f"the quick list: {rows()}")
    rows("Show All (12)")
    every = [[name, str(name == "Wallpaper 9"), "press"] for name in NAMES] + [["Show Less", "False", "press"]]
    wait_until(lambda: rows() == every, 30, lambda: f"all rows: {rows()}")
    rows("Wallpaper 1")
    tavelle.wait("showing Wallpaper 1$")
    menu.wait_until_closed()


@contextlib.contextmanager
def x_tray(desktop):
    process = desktop.start(["trayer", "--edge", "bottom", "--align", "left", "--widthtype", "request"])
    try:
        yield
    finally:
        end(process)


def embedded(view):
    """The icons that an X tray shows. One that changes its parent meanwhile comes twice; a window of one pixel's width is
    one that the toolkit replaces when it has learnt how the tray wants it."""
    return list({window.id: window for window in view.named("Tavelle", wider_than=1)}.values())


def test_the_icon_needs_no_bus_and_outlives_its_tray(desktop, tavelle, menu, view):
    tavelle.store()
    tavelle.start(DBUS_SESSION_BUS_ADDRESS="unix:path=/nonexistent")
    for button in (1, 3):
        with x_tray(desktop):
            [icon] = wait_until(lambda: embedded(view), PATIENCE, "the icon")
            x, y, width, height = view.place(icon)
            view.click((x + width // 2, y + height // 2), button)
            place = menu.close()
            assert place[0] <= x + width and place[1] + place[3] <= y
        wait_until(lambda: not embedded(view), PATIENCE, "the icon to go")


def test_the_icon_takes_whatever_comes(desktop, tavelle, menu, view):
    tavelle.store()
    tavelle.start()
    with x_tray(desktop):
        with Watcher(desktop, host=False) as watcher:
            wait_until(lambda: watcher.calls, PATIENCE, "the registration")
            [icon] = wait_until(lambda: embedded(view), PATIENCE, "the icon where somebody shows it")
            assert icon.get_full_property(view.atom("_NET_WM_NAME"), 0).value == b"Tavelle"
            menu.open()
            x, y, _, height = menu.close()
            assert (x, y + height) == view.place(icon)[:2]

            watcher.set_host(True)
            wait_until(lambda: not embedded(view), PATIENCE, "the icon to move to the bus")
            assert len(watcher.calls) == 1
            # A menu that opened too often would be closed by the next that should open it.
            for method, place, opens_at in (("ContextMenu", (70, 80), (70, 81)), ("SecondaryActivate", (9, 9), None),
                                            ("Scroll", (1, "vertical"), None), ("Activate", (0, 0), (70, 81)),
                                            ("Activate", (0, 26), (70, 81)), ("Activate", (90, 20), (90, 21))):
                watcher.call(method, GLib.Variant("(is)" if method == "Scroll" else "(ii)", place))
                assert opens_at is None or menu.close()[:2] == opens_at, method

            properties = watcher.item_properties()
            assert "Menu" not in properties and properties["ItemIsMenu"] is False
            assert properties["Title"] == properties["ToolTip"][2] == "Tavelle" and properties["Status"] == "Active"
            assert [(w, h) for w, h, _ in properties["IconPixmap"]] == [(s, s) for s in (16, 22, 24, 32, 48)]
            for width, height, pixels in properties["IconPixmap"]:
                assert len(pixels) == 4 * width * height
                middle = (height * 3 // 5 * width + width // 2) * 4
                alpha, red, _, blue = pixels[middle:middle + 4]
                assert alpha == 255 and red > 200 and red > blue, "fire"
        wait_until(lambda: embedded(view), PATIENCE, "the icon in the X tray again")
