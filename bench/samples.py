#!/usr/bin/python3
"""What each sample wallpaper costs at 1920x1080: at full resolution and at 35 %, each at 30 and 20 FPS, and paused.

usage: bench/samples.py [--program PROGRAM] [--seconds SECONDS] [--slope MINUTES] [NAME...]

The yardstick is a page that copies one picture over the whole screen in each frame: the least that a full-screen
animation can cost on this machine. Figures are per cent of one core, for the program and all its children, over so many
SECONDS each: 15, or better 60 for a page whose scene comes round once a minute. Beside each stands the frame rate that
was reached: on a busy machine it is lower, and so is the figure.
--slope lets each sample play for so long at full resolution and prints how its memory grew from the first quarter of
that time to the last.
"""

import argparse
import contextlib
import pathlib
import statistics
import sys
import time

from whole_process import ROOT, Player, choose, load_of, memory_of
from virtual_desktop import VirtualDesktop

YARDSTICK = "Yardstick"
COPYING_PAGE = """<!doctype html>
<meta charset="utf-8">
<title>Yardstick</title>
<style>html,body{margin:0;height:100%;overflow:hidden}canvas{display:block;width:100%;height:100%}</style>
<canvas></canvas>
<script>
const canvas = document.querySelector('canvas'), pen = canvas.getContext('2d', {alpha: false});
const picture = document.createElement('canvas');
let playing = true;
function size() {
  for (const each of [canvas, picture]) {
    each.width = Math.round(innerWidth * tavelle.scale);
    each.height = Math.round(innerHeight * tavelle.scale);
  }
  picture.getContext('2d').fillRect(0, 0, canvas.width, canvas.height);
}
function draw() {
  if (!playing) return;
  requestAnimationFrame(draw);
  pen.drawImage(picture, 0, 0);
}
window.wallpaper = {pause() { playing = false; }, play() { if (!playing) { playing = true; draw(); } }};
addEventListener('resize', size);
size();
requestAnimationFrame(draw);
</script>"""


# Says once a second how many frames there were, but rests with the page.
COUNTED = "page: frames "
COUNTER = """<script>
let counted = 0;
setInterval(() => {
  if (tavelle.frames === counted) return;
  counted = tavelle.frames;
  webkit.messageHandlers.log.postMessage(`frames ${counted} ${performance.now()}`);
}, 1000);
</script>"""


def add(home, name):
    """The page as it is in the sources now: the program was perhaps built before."""
    page = home / "Pictures/Wallpapers" / name / "index.html"
    page.parent.mkdir(parents=True, exist_ok=True)
    text = COPYING_PAGE if name == YARDSTICK else (ROOT / "resources/Wallpapers" / name / "index.html").read_text()
    page.write_text(text + COUNTER)


@contextlib.contextmanager
def playing(desktop, program, home, name):
    choose(home, name, fps=30)
    add(home, name)
    with Player(desktop, program, home) as player:
        player.wait_for(f'"title":"{name}"')
        player.wait_for("measured")
        yield player


def load_and_rate_of(player, seconds):
    known = player.log.read_text().count(COUNTED)
    load = load_of(player.pid, seconds)
    counts = [line.split(COUNTED)[1].split() for line in player.log.read_text().splitlines() if COUNTED in line][known:]
    (first, start), *_, (last, end) = [(int(frames), float(when)) for frames, when in counts]
    return load, 1000 * (last - first) / (end - start)


def measure(desktop, program, home, name, seconds):
    with playing(desktop, program, home, name) as player:
        figures = ""
        for resolution in ("1.0", "0.35"):
            player.act("resolution", resolution)
            for fps in (30, 20):
                player.act("frame-rate", f"int64 {fps}")
                time.sleep(1)
                load, rate = load_and_rate_of(player, seconds)
                figures += f"{load:>7.1f} % {rate:>4.1f}"
        player.wait_for("frame rate 20 FPS, resolution 35%")
        player.act("toggle-pause")
        player.wait_for("paused")
        time.sleep(1)
        paused = load_of(player.pid, seconds)
        print(f"{name:<18}{figures}{paused:>7.2f} %{memory_of(player.pid):>6.0f} MB", flush=True)


def measure_slope(desktop, program, home, name, minutes):
    with playing(desktop, program, home, name) as player:
        figures = []
        end_of_time = time.monotonic() + 60 * minutes
        while time.monotonic() < end_of_time:
            # What is shared with others would count for more when the others end.
            figures.append(memory_of(player.pid, "Private_Dirty"))
            time.sleep(5)
        quarter = max(1, len(figures) // 4)
        first, last = statistics.median(figures[:quarter]), statistics.median(figures[-quarter:])
        print(f"{name:<20}{first:>8.0f} MB{last:>8.0f} MB{last - first:>+8.1f} MB", flush=True)


def main():
    reader = argparse.ArgumentParser()
    reader.add_argument("--program", default=ROOT / "build/release/bin/tavelle")
    reader.add_argument("--seconds", type=float, default=15)
    reader.add_argument("--slope", type=float)
    reader.add_argument("names", nargs="*")
    wanted = reader.parse_args()
    program = str(pathlib.Path(wanted.program).resolve())
    names = wanted.names or sorted(each.name for each in (ROOT / "resources/Wallpapers").iterdir())
    with VirtualDesktop(size="1920x1080") as desktop:
        home = desktop.folder / "home"
        if wanted.slope:
            print(f"{'':<20}{'first':>11}{'last':>11}{'grown':>11}")
            for name in names:
                measure_slope(desktop, program, home, name, wanted.slope)
            return
        columns = "".join(f"{column:>14}" for column in ("full, 30 FPS", "20 FPS", "35 %, 30 FPS", "20 FPS"))
        print(f"{'':<18}{columns}{'paused':>9}{'memory':>9}")
        for name in [YARDSTICK, *names]:
            measure(desktop, program, home, name, wanted.seconds)
        print(f"{'aim':<18}{60:>7.1f} %{'':>19}{25:>7.1f} %{'':>19}{1:>7.2f} %")


if __name__ == "__main__":
    sys.exit(main())
