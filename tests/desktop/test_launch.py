"""From the start of the program, by a user or the bus, to its end: what it shows first, what it remembers, how it goes."""

import datetime
import os
import signal

import pytest
from session import BINARY, FIRST, SAMPLES, SECOND, STAMP, TALKING, GLib, color_page, descendants, lives, wait_until

BUS_NAME = "org.tavelle.Tavelle"
GREEN = color_page("#008000")
NAMES = ["it's \"so\"", "100%", "a%2e%2Fb", "a#b", "what?", "a\\b:+&", "new\nline", " edge ", "<b>", "Straße é"]


def test_first_launch_adds_the_samples_and_shows_the_first_choice(tavelle):
    before = datetime.datetime.now(datetime.timezone.utc).replace(microsecond=0)
    tavelle.start()
    tavelle.wait("measured ")
    messages = tavelle.messages()
    assert messages[:len(SAMPLES) + 2] == [
        *(f"added the bundled {name} wallpaper" for name in SAMPLES), "launched, showing: Starship Liftoff",
        "showing on 2 display(s)"]
    loaded = [each for each in messages if each.startswith("loaded: ")]
    assert len(loaded) == 2 and all('"size":[1280,720,1]' in each for each in loaded)
    assert len(tavelle.found(r"measured \d+\.\d FPS \(setting 60\), canvas \d+x\d+$")) == 1
    assert sorted(each.name for each in tavelle.library.iterdir()) == SAMPLES
    newest = datetime.datetime.strptime(STAMP.findall(tavelle.log_file.read_text())[-1], "%Y-%m-%d %H:%M:%S %z ")
    assert before <= newest <= datetime.datetime.now(datetime.timezone.utc)


def test_empty_library_shows_nothing_until_something_is_chosen(tavelle, view):
    tavelle.store()
    tavelle.start()
    tavelle.wait("showing on 2 display")
    assert tavelle.messages() == ["launched, showing: nothing", "showing on 2 display(s)"]
    assert len(wait_until(view.wallpapers, 10, "the windows")) == 2
    assert view.places_in_sight() == []

    tavelle.add("New", GREEN)
    tavelle.show("New")
    tavelle.wait("loaded: ", count=2)
    view.wait_for(0x008000, FIRST, SECOND)
    assert list(tavelle.library.iterdir()) == [tavelle.library / "New"]


@pytest.mark.parametrize("in_the_way", [".config/tavelle", "Library", ".cache", ".local"])
def test_plays_where_it_may_write_nothing(tavelle, view, in_the_way):
    """A file in a folder's place stops everybody from writing there, the superuser too."""
    tavelle.add("Own", GREEN)
    (tavelle.home / in_the_way).parent.mkdir(exist_ok=True)
    (tavelle.home / in_the_way).write_text("")
    tavelle.start()
    wait_until(view.places_in_sight, 30, "the windows")
    tavelle.show("Own")
    # Above the tutorial, which comes up at every start where nobody can remember that it has been shown.
    view.wait_for(0x008000, (0, 0, 2560, 50))
    if in_the_way == ".config/tavelle":
        assert tavelle.found("settings: couldn't save")


def test_any_folder_name_plays_and_is_remembered(tavelle):
    tavelle.play(GREEN, fps=30)
    for name in NAMES:
        said = f"page: file of number {NAMES.index(name)}$"
        (tavelle.add(name, TALKING + "<script src='data.js'></script>") / "data.js").write_text(f"say('{said[6:-1]}')")
        tavelle.show(name)
        tavelle.wait(said, count=2)
        assert (tavelle.stored()["wallpaper"], tavelle.stored()["fps"]) == (name, 30)
    # One that is no text the engine itself can't read, which must hurt nothing else.
    tavelle.add(os.fsdecode(b"bad\xff"), TALKING)
    tavelle.show(r"bad\xFF")
    tavelle.wait("load failed: ", count=2)
    tavelle.stop()
    tavelle.start()
    tavelle.wait(r"launched, showing: bad\\xFF")
    tavelle.show(name)
    tavelle.wait(said, count=4)


@pytest.mark.parametrize(("number", "status"), [(signal.SIGINT, 0), (signal.SIGKILL, -signal.SIGKILL)])
def test_children_do_not_outlive_the_program(tavelle, number, status):
    tavelle.play(GREEN)
    assert len(tavelle.page_processes()) == 2 and len(descendants(tavelle.process.pid)) >= 4
    assert tavelle.stop(number, seconds=3) == status


def test_second_start_shows_the_tutorial_of_the_first(tavelle, view, windows):
    tavelle.play(TALKING)
    children = set(descendants(tavelle.process.pid))
    for _ in range(2):
        assert tavelle.run().returncode == 0
        view.wait_for_focus("How to Use Tavelle")
        windows.activate(windows.open(200, 100, 800, 500))
    assert len(tavelle.found("launched")) == 1
    assert set(descendants(tavelle.process.pid)) >= children and all(map(lives, children))
    tavelle.act("quit")
    assert tavelle.process.wait(10) == 0


@pytest.fixture(name="activate")
def fixture_activate(tavelle):
    """Has the bus start the program, or tell it that somebody wants it."""
    tavelle.serve(BUS_NAME, f"{BINARY} --gapplication-service")
    tavelle.ask_bus("UpdateActivationEnvironment", "(a{ss})", {"HOME": str(tavelle.home)})
    yield lambda: tavelle.bus.call_sync(BUS_NAME, "/org/tavelle/Tavelle", "org.freedesktop.Application", "Activate",
                                        GLib.Variant("(a{sv})", ({},)), None, 0, -1, None)
    if tavelle.ask_bus("NameHasOwner", "(s)", BUS_NAME)[0]:
        process = tavelle.ask_bus("GetConnectionUnixProcessID", "(s)", BUS_NAME)[0]
        os.kill(process, signal.SIGTERM)
        wait_until(lambda: not lives(process), 20, "the program to end")


@pytest.mark.parametrize("way", ["an activation", "a command", "nothing"])
def test_a_start_by_the_bus_is_an_ordinary_one(activate, tavelle, view, way):
    tavelle.add("Own", color_page("#204060"))
    tavelle.add("Other", color_page("#604020"))
    tavelle.store(wallpaper="Own")
    # A name can be asked for with nothing to say to it, too.
    {"an activation": activate, "a command": lambda: tavelle.show("Other"),
     "nothing": lambda: tavelle.ask_bus("StartServiceByName", "(su)", BUS_NAME, 0)}[way]()
    color = 0x604020 if way == "a command" else 0x204060
    view.wait_for(color, FIRST, SECOND)
    tavelle.wait("measured")  # nothing else comes after a launch
    assert len(tavelle.found("launched")) == 1 and not view.named("How to Use Tavelle")
    activate()
    view.wait_for_focus("How to Use Tavelle")
