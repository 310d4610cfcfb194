"""The still picture that the desktop shows where no wallpaper plays."""

import configparser
import subprocess

import pytest
from Xlib import X, Xatom, display

RED, GREEN, BLUE = 0xFF0000, 0x00FF00, 0x0000FF


@pytest.fixture(name="picture")
def fixture_picture(tmp_path):
    """Twice as high as wide; red and blue side by side in the middle, with green where a wide screen cuts it off."""
    file = tmp_path / "a picture#1%20é.png"
    subprocess.run(["convert", "-size", "200x400", "xc:lime", "-fill", "red", "-draw", "rectangle 0,120 99,279",
                    "-fill", "blue", "-draw", "rectangle 100,120 199,279", file], check=True)
    return file


@pytest.fixture(name="plain")
def fixture_plain(tmp_path):
    """Makes an image of one colour, and gives its file."""
    def make(color):
        file = tmp_path / f"{color:06x}.png"
        subprocess.run(["convert", "-size", "64x36", f"xc:#{color:06x}", file], check=True)
        return file
    return make


@pytest.fixture(autouse=True)
def fixture_plain_root(view):
    view.root.change_attributes(background_pixel=0x808080)
    view.root.clear_area()
    view.display.sync()


def fills_both_screens(view):
    # The scaling may blend the two where they meet.
    return all(view.colors(x, 0, 620, 720) == {RED} and view.colors(x + 660, 0, 620, 720) == {BLUE} for x in (0, 1280))


def test_command_paints_every_screen(tavelle, view, picture, tmp_path):
    damaged = tmp_path / "damaged.png"
    damaged.write_bytes(picture.read_bytes()[:60])
    done = tavelle.run("--set-still", str(damaged))
    assert (done.returncode, done.stdout, done.stderr.count("failed: ")) == (1, "desktop picture failed\n", 2)
    assert view.colors(0, 0, 2560, 720) == {0x808080}
    assert [tavelle.run("--set-still", str(picture), DISPLAY=display).returncode for display in (":99999", "")] == [1, 0]
    for _ in range(2):
        done = tavelle.run("--set-still", picture.name, cwd=picture.parent)
        assert (done.returncode, done.stdout) == (0, "desktop picture set\n")
        assert fills_both_screens(view)
        view.root.clear_area()
        assert fills_both_screens(view)
    pictures = [view.property(view.root, name) for name in ("_XROOTPMAP_ID", "ESETROOT_PMAP_ID")]
    assert len(pictures[0]) == 1 and pictures[0] == pictures[1]


def test_desktop_with_settings_of_its_own(tavelle, view, picture):
    environment = {"XDG_CURRENT_DESKTOP": "ubuntu:GNOME", "GSETTINGS_BACKEND": "keyfile"}
    names = [tavelle.pictures(**environment)]
    assert tavelle.run("--set-still", "/missing/picture.png", **environment).stderr.count("failed: ") == 2
    assert tavelle.pictures(**environment) == names[0]
    done = tavelle.run("--set-still", str(picture), **environment)
    assert (done.returncode, done.stdout) == (0, "desktop picture set\n")
    written = configparser.RawConfigParser()
    written.read(tavelle.home / ".config/glib-2.0/settings/keyfile")
    address = f"'{picture.as_uri()}'"
    assert dict(written["org/gnome/desktop/background"]) == {
        "picture-uri": address, "picture-uri-dark": address, "picture-options": "'zoom'"}
    assert view.colors(0, 0, 2560, 720) == {0x808080}
    names.append(tavelle.pictures(**environment))
    assert names[1] == tavelle.pictures("DUMMY0", picture, **environment)
    for key in ("picture-uri", "picture-uri-dark"):
        tavelle.run("set", "org.gnome.desktop.background", key, "file:///another.png", program="gsettings", **environment)
        names.append(tavelle.pictures(**environment))
    assert all(each["DUMMY0"] == each["DUMMY1"] for each in names)
    assert len({each["DUMMY0"] for each in names} - {None}) == 4


def another_program_paints(view, frees):
    """As programs for the root window do: they leave a pixmap behind, and most free the one before."""
    old = view.display.create_resource_object("pixmap", view.property(view.root, "ESETROOT_PMAP_ID")[0])
    other = display.Display(view.display.get_display_name())
    root = other.screen().root
    pixmap = root.create_pixmap(64, 64, root.get_geometry().depth)
    for name in ("_XROOTPMAP_ID", "ESETROOT_PMAP_ID"):
        root.change_property(other.intern_atom(name), Xatom.PIXMAP, 32, [pixmap.id])
    other.set_close_down_mode(X.RetainPermanent)
    other.sync()
    if frees:
        old.kill_client()
    view.display.sync()
    other.close()


def test_root_window_tells_its_pictures(tavelle, view, plain):
    first = tavelle.pictures("DUMMY0", plain(RED))
    second = tavelle.pictures("DUMMY1", plain(BLUE))
    assert second["DUMMY0"] == first["DUMMY0"] and None not in second.values()
    both = tavelle.pictures("DUMMY0", plain(BLUE))
    assert both == {"DUMMY0": second["DUMMY1"], "DUMMY1": second["DUMMY1"]} and first["DUMMY0"] != both["DUMMY0"]

    names = {None, both["DUMMY0"], first["DUMMY0"]}
    for frees in (False, True):
        another_program_paints(view, frees)
        shown = tavelle.pictures()
        assert shown["DUMMY0"] == shown["DUMMY1"] and shown["DUMMY0"] not in names
        assert tavelle.pictures("DUMMY1", plain(BLUE)) == {"DUMMY0": None, "DUMMY1": both["DUMMY1"]}


def test_monitors_change(desktop, tavelle, view, plain):
    tavelle.pictures("DUMMY0", plain(RED))
    names = tavelle.pictures("DUMMY1", plain(BLUE))
    places = {"DUMMY0": (0, 0, 1280, 720)}
    try:
        for size, corner in (("1280x720", (0, 720)), ("1920x1080", (1280, 0)), ("1280x720", (1280, 360))):
            desktop.plug("DUMMY1", "x".join(map(str, corner)), size)
            places["DUMMY1"] = (*corner, *map(int, size.split("x")))
            assert tavelle.pictures() == names | {"DUMMY1": None}
            before = view.pixels(*places["DUMMY1"])
            assert tavelle.pictures("DUMMY0", plain(GREEN))["DUMMY1"] is None
            assert view.colors(*places["DUMMY0"]) == {GREEN} and view.pixels(*places["DUMMY1"]) == before
            tavelle.pictures("DUMMY1", plain(BLUE))
            assert tavelle.pictures("DUMMY0", plain(RED)) == names
            assert [view.colors(*places[each]) for each in ("DUMMY0", "DUMMY1")] == [{RED}, {BLUE}]
        desktop.unplug("DUMMY1")
        desktop.run("xrandr", "--fb", "1280x1080")
        assert tavelle.pictures("DUMMY0", plain(RED)) == {"DUMMY0": names["DUMMY0"]}
        desktop.plug("DUMMY1", "1280x360")
        assert tavelle.pictures()["DUMMY1"] is None
    finally:
        desktop.plug("DUMMY1", "1280x0")
