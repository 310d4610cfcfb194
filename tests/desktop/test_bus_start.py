"""Starting the program through the session bus, as a menu of programs and `gapplication` do."""

import os
import signal

import pytest
from session import BINARY, GLib, color_page, lives, wait_until

MONITORS = 1
NAME, PATH = "org.tavelle.Tavelle", "/org/tavelle/Tavelle"
# What the bus starts the program for; a name can be asked for with nothing to say to it, too.
WAYS = {"an activation": lambda bus: bus.activate(), "a command": lambda bus: bus.tavelle.show("Other"),
        "nothing": lambda bus: bus.tavelle.ask_bus("StartServiceByName", "(su)", NAME, 0)}


class Bus:
    def __init__(self, tavelle):
        self.tavelle = tavelle
        tavelle.serve(NAME, f"{BINARY} --gapplication-service")
        tavelle.ask_bus("UpdateActivationEnvironment", "(a{ss})", {"HOME": str(tavelle.home)})

    def activate(self):
        self.tavelle.bus.call_sync(NAME, PATH, "org.freedesktop.Application", "Activate",
                                   GLib.Variant("(a{sv})", ({},)), None, 0, -1, None)

    def owner(self):
        """The process that has the program's name; none when nobody has."""
        try:
            return self.tavelle.ask_bus("GetConnectionUnixProcessID", "(s)", NAME)[0]
        except GLib.Error:
            return None


@pytest.fixture(name="bus")
def fixture_bus(tavelle):
    bus = Bus(tavelle)
    yield bus
    process = bus.owner()
    if process:
        os.kill(process, signal.SIGTERM)
        wait_until(lambda: not lives(process), 20, "the program to end")


@pytest.mark.parametrize("way", WAYS)
def test_a_start_by_the_bus_is_an_ordinary_one(bus, tavelle, view, way):
    tavelle.add("Own", color_page("#204060"))
    tavelle.add("Other", color_page("#604020"))
    tavelle.store(wallpaper="Own")
    WAYS[way](bus)
    tavelle.wait("loaded: ")
    color = 0x604020 if way == "a command" else 0x204060
    view.wait_for(color, (100, 100, 50, 50))
    tavelle.wait("measured")  # nothing else comes after a launch
    assert len(tavelle.found("launched")) == 1 and not view.named("How to Use Tavelle")
    bus.activate()
    view.wait_for_focus("How to Use Tavelle")
