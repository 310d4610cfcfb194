"""The icon in the panel: on the bus, in the X server's tray, and nowhere."""

import pytest
from gi.repository import GLib
from session import PATIENCE, end, wait_until
from tray import NO_BUS, Probe, Watcher, embedded, in_sight


@pytest.fixture(scope="module", name="monitors")
def fixture_monitors():
    return 1


@pytest.fixture(name="probe")
def fixture_probe(desktop, request):
    probe = Probe(desktop, **getattr(request, "param", {}))
    yield probe
    end(probe.process)


@pytest.fixture(name="trayer")
def fixture_trayer(desktop):
    process = desktop.start(["trayer", "--edge", "bottom", "--align", "left", "--widthtype", "request"])
    yield process
    end(process)


@pytest.mark.parametrize("probe, on_bus", [({}, True), (NO_BUS, False)], indirect=["probe"], ids=["bus", "X tray"])
def test_a_panel_shows_it_and_tells_its_clicks(panel, probe, view, on_bus):
    count = 0
    for _ in range(2):
        x, y, width, height = wait_until(lambda: in_sight(view), PATIENCE, "the icon")
        assert len(embedded(view)) == (0 if on_bus else 1)
        # Over the bus this panel keeps the second button for a menu of its own.
        for button in (1,) if on_bus else (1, 3):
            view.click((x + width // 2, y + height // 2), button)
            count += 1
            place = probe.wait(count)
            inside = place[0] <= x + width // 2 < place[0] + place[2] and place[1] <= y + 12 < place[1] + place[3]
            view.point((640, 360))  # off the panel, which lights up what is under the pointer
            assert inside or (on_bus and place[2:] == (1, 1) and place[1] <= 31), place
        probe.tell("click")
        count += 1
        assert probe.wait(count) == place
        panel.stop()
        wait_until(lambda: not in_sight(view), PATIENCE, "the panel to go")
        panel.start()
    wait_until(lambda: in_sight(view), PATIENCE, "the icon")
    if on_bus:
        probe.tell("remove")
    else:
        probe.process.kill()
    wait_until(lambda: not in_sight(view), PATIENCE, "the icon to go")


def test_it_takes_whatever_comes(desktop, probe, view, request):
    probe.tell("click")
    assert probe.wait(1) == ()
    with Watcher(desktop, host=False) as watcher:
        wait_until(lambda: watcher.items, PATIENCE, "the registration")
        request.getfixturevalue("trayer")
        [icon] = wait_until(lambda: embedded(view), PATIENCE, "the icon in the X tray, as the bus has none to show it")
        assert icon.get_full_property(view.atom("_NET_WM_NAME"), 0).value == b"Tavelle"
        probe.tell("click")
        assert probe.wait(2) == view.place(icon)

        watcher.set_host(True)
        wait_until(lambda: not embedded(view), PATIENCE, "the icon to move to the bus")
        assert len(watcher.items) == 1
        for count, (method, place, told) in enumerate((("Activate", (0, 0), ()), ("ContextMenu", (7, 8), (7, 8, 1, 1)),
                                                       ("SecondaryActivate", (9, 9), None), ("Scroll", (1, "vertical"), None),
                                                       ("Activate", (0, 0), (7, 8, 1, 1)))):
            before = len(probe.clicks())
            watcher.call(method, GLib.Variant("(is)" if method == "Scroll" else "(ii)", place))
            if told is not None:
                assert probe.wait(before + 1) == told, (count, method)
        assert len(probe.clicks()) == 5

        properties = watcher.properties()
        assert "Menu" not in properties and properties["ItemIsMenu"] is False
        assert (properties["Title"], properties["ToolTip"][2], properties["Status"]) == ("Tavelle", "Tavelle", "Active")
        assert [(w, h) for w, h, _ in properties["IconPixmap"]] == [(s, s) for s in (16, 22, 24, 32, 48)]
        for width, height, pixels in properties["IconPixmap"]:
            assert len(pixels) == 4 * width * height
            middle = (height * 3 // 5 * width + width // 2) * 4
            alpha, red, _, blue = pixels[middle:middle + 4]
            assert alpha == 255 and red > 200 and red > blue, "fire"
    wait_until(lambda: embedded(view), PATIENCE, "the icon in the X tray again")
