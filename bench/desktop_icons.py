#!/usr/bin/python3
"""What it costs to keep the icons of Xfce's file manager in sight: processor time at rest and while an icon is dragged,
of Tavelle's own process and of the desktop, beside the same desktop without Tavelle.

usage: bench/desktop_icons.py

Needs xfdesktop 4.18, which tells of its picture. The page that plays draws a full frame 60 times a second.
"""

import os
import pathlib
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path[:0] = [str(ROOT / "tests/desktop"), str(ROOT / "bench")]
from session import Tavelle, X, XView, color_page, descendants  # noqa: E402
from test_desktop_icons import ICON, Corner, XfceDesktop  # noqa: E402
from whole_process import cpu_seconds  # noqa: E402

SECONDS = 10
PAGES = {"a page that stands still": color_page("#008000"), "a page that plays": color_page("#008000", """<canvas></canvas>
<script>const canvas = document.querySelector('canvas'), pen = canvas.getContext('2d');
canvas.width = innerWidth; canvas.height = innerHeight;
let hue = 0;
const draw = () => {
  pen.fillStyle = `hsl(${++hue} 60% 40%)`;
  pen.fillRect(0, 0, canvas.width, canvas.height);
  requestAnimationFrame(draw);
};
draw();
</script>""")}


def rest(_view):
    time.sleep(SECONDS)


def drag(view):
    """As a hand does, to and fro."""
    view.point(ICON, X.ButtonPress)
    end = time.monotonic() + SECONDS
    step = 0
    while time.monotonic() < end:
        step += 1
        view.point((ICON[0] + abs(step % 400 - 200) * 2, ICON[1] + abs(step % 160 - 80)))
        time.sleep(1 / 60)
    view.point(ICON, X.ButtonRelease)


def measure(view, program, happening):
    """Per cent of a core: of the program's own process, of its pages, and of the desktop."""
    before, start = cpu_seconds(os.getpid()), time.monotonic()
    happening(view)
    after, seconds = cpu_seconds(os.getpid()), time.monotonic() - start
    pages = set(descendants(program)) - {program} if program else set()
    used = {"own": 0, "pages": 0, "desktop": 0}
    for pid, now in after.items():
        if pid == os.getpid():
            continue
        used["own" if pid == program else "pages" if pid in pages else "desktop"] += now - before.get(pid, 0)
    return {name: 100 * each / seconds for name, each in used.items()}


def report(what, view, program=None):
    for name, happening in (("at rest", rest), ("an icon dragged", drag)):
        used = measure(view, program, happening)
        print(f"  {what + ', ' + name:45} {used['own']:6.1f} % {used['pages']:8.1f} % {used['desktop']:8.1f} %", flush=True)


def main():
    for compositing in ("on", "off"):
        print(f"compositing {compositing:33} own process    pages    desktop")
        with XfceDesktop(compositing) as desktop, tempfile.TemporaryDirectory() as folder:
            view = XView(desktop.environment["DISPLAY"])
            Corner(view)
            report("without Tavelle", view)
            for number, (what, page) in enumerate(PAGES.items()):
                home = pathlib.Path(folder, str(number))
                home.mkdir()
                tavelle = Tavelle(desktop, home)
                tavelle.play(page)
                time.sleep(5)
                report(what, view, tavelle.process.pid)
                tavelle.stop()
                tavelle.bus.close_sync()


main()
