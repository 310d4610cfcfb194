"""Taking wallpapers out: the question, the trash, and the way back."""

import os
import subprocess
import urllib.parse

from session import FIRST, SECOND, color_page, wait_until
from gi.repository import GLib
from Xlib import XK


def trashed(tavelle):
    """What lies in the trash, with the place that it came from."""
    found = {}
    for note in (tavelle.home / ".local/share/Trash/info").glob("*.trashinfo"):
        path = next(line[5:] for line in note.read_text().splitlines() if line.startswith("Path="))
        found[urllib.parse.unquote(path, errors="surrogateescape")] = tavelle.home / ".local/share/Trash/files" / note.stem
    return found


def test_the_question_is_answered_by_keyboard(tavelle, view, desktop):
    still = tavelle.play(color_page("#008000")) / "still.png"
    subprocess.run(["convert", "-size", "320x180", "xc:red", still], check=True)
    tavelle.add("Next", color_page("#000080"))
    tavelle.act("delete", GLib.Variant("s", "Own"))
    window = view.wait_for_focus("Tavelle")
    place = view.place(window)
    # The still is the icon, 64 by 36, above the wallpaper.
    wait_until(lambda: view.pixels(*place).count(0xFF0000) == 64 * 36, 20, "the icon")
    view.press(XK.XK_Escape)
    wait_until(lambda: not view.named("Tavelle"), 20, "the dialog to go")
    assert (tavelle.library / "Own").exists() and not trashed(tavelle)

    tavelle.act("delete", GLib.Variant("s", "Own"))
    view.wait_for_focus("Tavelle")
    view.press(XK.XK_Return)
    tavelle.wait("deleted Own")
    tavelle.wait("showing Next")
    stored = tavelle.stored()
    assert (stored["wallpaper"], stored["recentWallpapers"]) == ("Next", ["Next"])
    view.wait_for(0x000080, FIRST, SECOND)
    # And back again.
    trashed(tavelle)[str(tavelle.library / "Own")].rename(tavelle.library / "Own")
    tavelle.show("Own")
    tavelle.wait("showing Own")
    tavelle.act("delete", GLib.Variant("s", "Own"))
    view.wait_for_focus("Tavelle")
    assert tavelle.stop() == 0 and (tavelle.library / "Own").exists(), "a question keeps no program, and deletes nothing"


def test_by_name_from_the_command_line(tavelle):
    names = ("Waves", "Dunes", os.fsdecode(b"no text \xff"))
    for name in names:
        tavelle.add(name, color_page("#000"))
    tavelle.store(wallpaper="Waves", recentWallpapers=["Waves"])
    for name, status, out in [("waves", 1, "no wallpaper named waves\n"), ("Waves", 0, "deleted Waves\n"),
                              ("Waves", 1, "no wallpaper named Waves\n"), ("Dunes", 0, "deleted Dunes\n"), (names[2], 0, "deleted no text \\xFF\n")]:
        done = tavelle.run("--delete-wallpaper", name, DISPLAY="")
        assert (done.returncode, done.stdout) == (status, out)
    assert set(trashed(tavelle)) == {str(tavelle.library / name) for name in names}
    assert tavelle.stored()["recentWallpapers"] == [] and "wallpaper" not in tavelle.stored()


def test_what_cannot_be_moved_stays(tavelle, view):
    trash = tavelle.home / ".local/share/Trash"
    trash.parent.mkdir(parents=True)
    trash.write_text("in the way")
    tavelle.play(color_page("#000"))
    done = tavelle.run("--delete-wallpaper", "Own", DISPLAY="")
    assert (done.returncode, done.stdout) == (0, "failed\n")
    tavelle.act("delete", GLib.Variant("s", "Own"))
    view.wait_for_focus("Tavelle")
    view.press(XK.XK_Return)
    tavelle.wait("couldn't delete Own: .+", count=2)
    view.wait_for_focus("Tavelle")
    view.press(XK.XK_Return)
    wait_until(lambda: not view.named("Tavelle"), 20, "the alert to go")
    assert (tavelle.library / "Own/index.html").exists()
