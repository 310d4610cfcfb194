"""The still picture that the desktop shows where no wallpaper plays."""

import configparser
import subprocess

import pytest
from session import color_page, wait_until

RED, BLUE = 0xFF0000, 0x0000FF


@pytest.fixture(name="picture")
def fixture_picture(tmp_path):
    """Twice as high as wide; red and blue side by side in the middle, with green where a wide screen cuts it off."""
    file = tmp_path / "a picture#1%20é.png"
    subprocess.run(["convert", "-size", "200x400", "xc:lime", "-fill", "red", "-draw", "rectangle 0,120 99,279",
                    "-fill", "blue", "-draw", "rectangle 100,120 199,279", file], check=True)
    return file


@pytest.fixture(autouse=True)
def fixture_plain_root(view):
    view.root.change_attributes(background_pixel=0x808080)
    view.root.clear_area()
    view.display.sync()


def fills_both_screens(view):
    # The scaling may blend the two where they meet.
    return all(view.colors(x, 0, 620, 720) == {RED} and view.colors(x + 660, 0, 620, 720) == {BLUE} for x in (0, 1280))


def test_command_paints_every_screen(tavelle, view, picture):
    for _ in range(2):
        done = tavelle.run("--set-still", picture.name, cwd=picture.parent)
        assert (done.returncode, done.stdout) == (0, "desktop picture set\n")
        assert fills_both_screens(view)
        view.root.clear_area()
        assert fills_both_screens(view)
    pictures = [view.property(view.root, name) for name in ("_XROOTPMAP_ID", "ESETROOT_PMAP_ID")]
    assert len(pictures[0]) == 1 and pictures[0] == pictures[1]


def test_wallpaper_brings_its_own_picture(tavelle, view, picture):
    tavelle.play(color_page("#008000"))
    folder = tavelle.add("Pictured", color_page("#000"))
    subprocess.run(["convert", picture, folder / "still.png"], check=True)
    subprocess.run(["convert", "-size", "8x8", "xc:white", folder / "another.jpg"], check=True)
    tavelle.show("Pictured")
    tavelle.wait("showing Pictured")
    assert not fills_both_screens(view)
    tavelle.stop()
    wait_until(lambda: fills_both_screens(view), 10, "the picture")


@pytest.mark.parametrize(("environment", "status", "out", "errors"), [
    ({}, 1, "desktop picture failed\n", 2),
    ({"XDG_CURRENT_DESKTOP": "GNOME", "GSETTINGS_BACKEND": "memory"}, 1, "desktop picture failed\n", 2),
    ({"DISPLAY": ":99999"}, 1, "desktop picture failed\n", 1),
    ({"DISPLAY": ""}, 0, "desktop picture set\n", 0),
])
def test_missing_picture(tavelle, environment, status, out, errors):
    done = tavelle.run("--set-still", "/missing/picture.png", **environment)
    failures = [line for line in done.stderr.splitlines() if line.startswith("failed: ")]
    assert (done.returncode, done.stdout, len(failures)) == (status, out, errors)


def test_damaged_picture(tavelle, view, picture):
    picture.write_bytes(picture.read_bytes()[:60])
    done = tavelle.run("--set-still", str(picture))
    assert (done.returncode, done.stdout, done.stderr.count("failed: ")) == (1, "desktop picture failed\n", 2)
    assert view.colors(0, 0, 2560, 720) == {0x808080}


def test_desktop_with_settings_of_its_own(tavelle, view, picture):
    done = tavelle.run("--set-still", str(picture), XDG_CURRENT_DESKTOP="ubuntu:GNOME", GSETTINGS_BACKEND="keyfile")
    assert (done.returncode, done.stdout) == (0, "desktop picture set\n")
    written = configparser.RawConfigParser()
    written.read(tavelle.home / ".config/glib-2.0/settings/keyfile")
    assert dict(written["org/gnome/desktop/background"]) == {
        "picture-uri": f"'{picture.as_uri()}'", "picture-uri-dark": f"'{picture.as_uri()}'",
        "picture-options": "'zoom'"}
    assert view.colors(0, 0, 2560, 720) == {0x808080}
