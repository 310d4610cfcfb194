"""Bringing wallpapers in: the chooser, and what then plays."""

import subprocess

from session import FIRST, SECOND, color_page, wait_until
from Xlib import XK

CHOOSER = "Add Wallpaper"


def is_red(color):
    return color >> 16 > 0xE0 and color & 0xFFFF < 0x2020


def test_what_is_chosen_by_keyboard_plays(tavelle, view, tmp_path):
    settings = tavelle.home / ".config/glib-2.0/settings/keyfile"
    settings.parent.mkdir(parents=True)
    settings.write_text("[org/gtk/settings/file-chooser]\nstartup-mode='cwd'\n")
    (tmp_path / "in").mkdir()
    tavelle.environment |= {"GSETTINGS_BACKEND": "keyfile"}
    subprocess.run(["ffmpeg", "-v", "error", "-f", "lavfi", "-i", "color=red:s=320x180:d=1", "-pix_fmt", "yuv420p",
                    tmp_path / "in/red.mp4"], check=True, stdin=subprocess.DEVNULL)
    (tmp_path / "in/page.html").write_text(color_page("#000080"))
    (tmp_path / "in/no wallpaper.txt").write_text("Dear diary")
    tavelle.play(color_page("#008000"), cwd=tmp_path / "in")
    tavelle.act("add")
    view.wait_for_focus(CHOOSER)

    def closes():
        if not view.named(CHOOSER):
            return True
        view.press(XK.XK_Control_L, XK.XK_a)
        view.press(XK.XK_Return)
        return False
    # The chooser takes a while to find the files, and to close: no key may reach what comes next.
    wait_until(closes, 20, "the chooser to close", 1)
    tavelle.wait("showing red")
    for place in (FIRST, SECOND):
        wait_until(lambda: all(map(is_red, view.colors(*place))), 30, "the video")
    assert {each.name for each in tavelle.library.iterdir()} == {"Own", "page", "red"}
    assert sorted(each.name for each in (tavelle.library / "red").iterdir()) == ["index.html", "still.jpg", "video.mp4"]
    # A second wish finds the chooser that is open; closing it adds nothing.
    tavelle.act("add")
    view.wait_for_focus(CHOOSER)
    tavelle.act("add")
    tavelle.act("toggle-pause")
    tavelle.wait("paused$")  # what was asked for before has been done by now
    view.press(XK.XK_Escape)
    wait_until(lambda: not view.named(CHOOSER), 20, "the chooser to close")
    assert len(tavelle.found("added ")) == 2
    # Of several messages in a row none keeps the program.
    for file in (tmp_path / "in").iterdir():
        file.unlink()
    for name in "ab":  # too long for the name that it would get
        subprocess.run(["convert", "-size", "9x9", "xc:red", f"png:{tmp_path}/in/{name}.{250 * 'x'}"], check=True)
    tavelle.act("add")
    view.wait_for_focus(CHOOSER)
    wait_until(closes, 20, "the chooser to close", 1)
    view.wait_for_focus("Tavelle")
    assert tavelle.stop() == 0
    assert len(tavelle.found("couldn't add ")) == 2
