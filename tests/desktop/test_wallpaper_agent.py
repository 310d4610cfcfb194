"""The agent that keeps the wallpaper store, and brings its pictures onto the screens."""

import plistlib
import re
import subprocess

import pytest
from session import FIRST, SECOND, X, color_page, descendants, proc, wait_until
from Xlib.error import XError

RED = 0xFF0000
DONE = r"desktops: every Space now shows still\.png$"


@pytest.fixture(autouse=True)
def fixture_no_picture(view):
    """Otherwise the picture of the test before could pass for one that the agent has just brought."""
    for name in ("_XROOTPMAP_ID", "ESETROOT_PMAP_ID"):
        view.root.delete_property(view.atom(name))
    view.display.sync()


@pytest.fixture(name="store")
def fixture_store(tavelle):
    return tavelle.store_file


def agents(tavelle):
    return [pid for pid in descendants(tavelle.process.pid) if proc(pid, "comm").strip() == "WallpaperAgent"]


def add_wallpaper(tavelle, name, color):
    folder = tavelle.add(name, color_page("#000"))
    subprocess.run(["convert", "-size", "64x36", f"xc:{color}", folder / "still.png"], check=True)
    return folder / "still.png"


def root_colors(view, place):
    """What the root window's picture has there, also where windows hide it."""
    try:
        pixmap = view.display.create_resource_object("pixmap", view.property(view.root, "_XROOTPMAP_ID")[0])
        return {pixel & 0xFFFFFF for pixel in memoryview(pixmap.get_image(*place, X.ZPixmap, 0xFFFFFFFF).data).cast("I")}
    except (IndexError, XError):
        return set()


def wait_for_picture(view, color, *places):
    for place in places:
        wait_until(lambda: root_colors(view, place) == {color}, 20, f"{color:06x} on {place}")


def images(store, of_displays_alone=False):
    """The images that the store's entries show."""
    root = plistlib.loads(store.read_bytes())
    entries = [*root["Displays"].values()]
    if not of_displays_alone:
        entries.append(root["AllSpacesAndDisplays"])
        for space in root["Spaces"].values():
            entries += [space["Default"], *space["Displays"].values()]
    assert {"DUMMY0", "DUMMY1"} <= set(root["Displays"]) and set(root["Spaces"]) == {"0", "1", "2", "3"}
    choices = [choice for entry in entries for choice in entry["Desktop"]["Content"]["Choices"]]
    return {plistlib.loads(choice["Configuration"])["url"]["relative"] for choice in choices}


def test_a_store_from_nothing_follows_what_is_shown(tavelle, view, store):
    tavelle.play(color_page("#008000"))
    wait_until(store.exists, 20, "the store")
    assert not images(store)
    first = wait_until(lambda: agents(tavelle), 20, "the agent")
    red = add_wallpaper(tavelle, "Red", "red")
    tavelle.show("Red")
    tavelle.wait(DONE)
    assert images(store) == {red.as_uri()}
    second = wait_until(lambda: agents(tavelle), 20, "the agent to be back after the sync")
    assert second != first
    wait_for_picture(view, RED, FIRST, SECOND)


def test_the_store_and_the_screens_follow_each_other(tavelle, view, store, desktop):
    tavelle.play(color_page("#008000"))
    wait_until(store.exists, 20, "the store")
    store.chmod(0o640)
    red, blue = add_wallpaper(tavelle, "Red ä%", "red"), add_wallpaper(tavelle, "Blue", "blue")
    synced = tavelle.run("--sync-spaces", f"../{red.parent.name}/still.png", cwd=blue.parent)
    assert synced.stdout == "desktops: every Space now shows still.png\nupdated\n"
    assert images(store) == {red.as_uri()} and store.stat().st_mode & 0o777 == 0o640
    wait_for_picture(view, RED, FIRST, SECOND)
    before = store.stat().st_ino, store.read_bytes()
    assert tavelle.run("--sync-spaces", str(red)).stdout == "already the same everywhere\n"
    # An empty name is that of a script's variable that is not set.
    done = tavelle.run("--sync-spaces", "", DISPLAY="")
    assert (done.returncode, done.stderr) == (0, "")
    assert re.fullmatch("desktops: couldn't tell which image is meant: .+\nalready the same everywhere\n", done.stdout)
    assert (store.stat().st_ino, store.read_bytes()) == before

    assert tavelle.run("--set-still", str(blue)).returncode == 0
    wait_until(lambda: images(store, of_displays_alone=True) == {blue.as_uri()}, 20, "the store to note both screens")
    assert tavelle.run("--sync-spaces", str(red)).stdout.endswith("updated\n")
    wait_for_picture(view, RED, FIRST, SECOND)

    desktop.unplug("DUMMY1")
    tavelle.wait(r"showing on 1 display")
    desktop.plug("DUMMY1", "1280x0", "1920x1080")
    wait_for_picture(view, RED, FIRST, (1280, 0, 1920, 1080))
    desktop.plug("DUMMY1", "1280x0")
