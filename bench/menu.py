#!/usr/bin/python3
"""How long the status menu takes: from the panel's click until it is on the screen, and from Show All until it has grown.

usage: bench/menu.py [COUNT...]

A library of 3 wallpapers comes first: what its menu takes is the toolkit's own, the yardstick for the larger ones.
"""

import pathlib
import statistics
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parent.parent / "tests/desktop"))
from gi.repository import GLib  # noqa: E402
from session import Tavelle, VirtualDesktop, X, XView, wait_until  # noqa: E402
from tray import Watcher  # noqa: E402
from Xlib import XK  # noqa: E402

RUNS = 7


def next_event(view, kind, condition):
    """Waits for the X server to tell of something, and gives the time of its coming."""
    deadline = time.monotonic() + 20
    while time.monotonic() < deadline:
        while view.display.pending_events():
            event = view.display.next_event()
            if event.type == kind and condition(event):
                return time.monotonic(), event
        time.sleep(0.0005)
    raise TimeoutError("no event")


def open_menu(view, watcher):
    start = time.monotonic()
    watcher.call("Activate", GLib.Variant("(ii)", (300, 20)))
    shown, event = next_event(view, X.MapNotify, lambda each: each.window.get_geometry().width > 100)
    return shown - start, event.window


def expand(view, window):
    height = window.get_geometry().height
    for _ in range(4):
        view.press(XK.XK_Down)
    time.sleep(0.3)
    start = time.monotonic()
    view.press(XK.XK_Return)
    grown, _ = next_event(view, X.ConfigureNotify, lambda each: each.window == window and each.height > height + 50)
    return grown - start


def close(view, window):
    for _ in range(2):
        view.press(XK.XK_Escape)
    wait_until(lambda: window.get_attributes().map_state != X.IsViewable, 20, "the menu to close")


def measure(desktop, count):
    view = XView(desktop.environment["DISPLAY"])
    with tempfile.TemporaryDirectory() as home, Watcher(desktop, True) as watcher:
        tavelle = Tavelle(desktop, pathlib.Path(home))
        for i in range(count):
            tavelle.add(f"Wallpaper {i}", "<!doctype html>")
        tavelle.store(wallpaper=f"Wallpaper {count // 2}")
        tavelle.start()
        try:
            tavelle.wait("loaded")
            wait_until(lambda: watcher.items, 20, "the icon")
            view.root.change_attributes(event_mask=X.SubstructureNotifyMask)
            opening, growing = [], []
            for _ in range(RUNS):
                taken, window = open_menu(view, watcher)
                opening.append(1000 * taken)
                if count > 3:
                    growing.append(1000 * expand(view, window))
                close(view, window)
            return statistics.median(opening), statistics.median(growing) if growing else None
        finally:
            tavelle.stop()


def main():
    counts = [3, *map(int, sys.argv[1:] or ["200", "5000"])]
    with VirtualDesktop(monitors=1) as desktop:
        for count in counts:
            opening, growing = measure(desktop, count)
            print(f"{count:5} wallpapers: open {opening:5.1f} ms" +
                  (f", Show All {growing:5.1f} ms" if growing is not None else "  (yardstick)"), flush=True)


if __name__ == "__main__":
    main()
