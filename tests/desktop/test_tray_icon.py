"""The icon in the panel: on the bus, in the X server's tray, and nowhere."""

import signal

import pytest
from gi.repository import GLib
from session import PATIENCE, end, wait_until
from tray import Watcher, embedded, in_sight

MONITORS = 1
NO_BUS = {"DBUS_SESSION_BUS_ADDRESS": "unix:path=/nonexistent"}


@pytest.fixture(name="trayer")
def fixture_trayer(desktop):
    process = desktop.start(["trayer", "--edge", "bottom", "--align", "left", "--widthtype", "request"])
    yield process
    end(process)


@pytest.mark.parametrize("on_bus", [True, False], ids=["bus", "X tray"])
def test_a_panel_shows_it_and_its_clicks_open_the_menu(panel, tavelle, menu, view, on_bus):
    tavelle.store()
    tavelle.start(**{} if on_bus else NO_BUS)
    for _ in range(2):
        x, y, width, height = wait_until(lambda: in_sight(view), PATIENCE, "the icon")
        assert len(embedded(view)) == (0 if on_bus else 1)
        # Over the bus this panel keeps the second button for a menu of its own.
        for button in (1,) if on_bus else (1, 3):
            view.click((x + width // 2, y + height // 2), button)
            place = menu.close()
            assert place[0] <= x + width and y < place[1] <= 32
            view.point((640, 360))  # off the panel, which lights up what is under the pointer
        panel.stop()
        wait_until(lambda: not in_sight(view), PATIENCE, "the panel to go")
        panel.start()
    wait_until(lambda: in_sight(view), PATIENCE, "the icon")
    tavelle.stop(signal.SIGTERM if on_bus else signal.SIGKILL)
    wait_until(lambda: not in_sight(view), PATIENCE, "the icon to go")


def test_it_takes_whatever_comes(desktop, tavelle, menu, view, request):
    tavelle.store()
    tavelle.start()
    with Watcher(desktop, host=False) as watcher:
        wait_until(lambda: watcher.calls, PATIENCE, "the registration")
        request.getfixturevalue("trayer")
        [icon] = wait_until(lambda: embedded(view), PATIENCE, "the icon in the X tray, as the bus has none to show it")
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
                                        ("Activate", (90, 20), (90, 21))):
            watcher.call(method, GLib.Variant("(is)" if method == "Scroll" else "(ii)", place))
            assert opens_at is None or menu.close()[:2] == opens_at, method

        properties = watcher.item_properties()
        assert "Menu" not in properties and properties["ItemIsMenu"] is False
        assert (properties["Title"], properties["ToolTip"][2], properties["Status"]) == ("Tavelle", "Tavelle", "Active")
        assert [(w, h) for w, h, _ in properties["IconPixmap"]] == [(s, s) for s in (16, 22, 24, 32, 48)]
        for width, height, pixels in properties["IconPixmap"]:
            assert len(pixels) == 4 * width * height
            middle = (height * 3 // 5 * width + width // 2) * 4
            alpha, red, _, blue = pixels[middle:middle + 4]
            assert alpha == 255 and red > 200 and red > blue, "fire"
    wait_until(lambda: embedded(view), PATIENCE, "the icon in the X tray again")
