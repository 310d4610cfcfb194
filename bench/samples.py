#!/usr/bin/python3
"""What each sample wallpaper costs at 1920x1080: at full resolution and at 35 %, each at 30 and 20 FPS, and paused.

usage: bench/samples.py [--program PROGRAM] [--seconds SECONDS] [--slope MINUTES] [NAME...]

The yardstick is a page that copies one picture over the whole screen in each frame: the least that a full-screen
animation can cost on this machine. Figures are per cent of one core, for the program and all its children, over so many
SECONDS each: 15, or better 60 for a page whose scene comes round once a minute.
--slope lets each sample play for so long at full resolution and prints how its memory grew from the first quarter of
that time to the last.
"""

import argparse
import pathlib
import statistics
import sys
import time

from whole_process import ROOT, Player, load_of, memory_of
from virtual_desktop import VirtualDesktop, descendants

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


def choose(home, name):
    settings = home / ".config/tavelle/defaults.plist"
    settings.parent.mkdir(parents=True, exist_ok=True)
    settings.write_text(f'<plist version="1.0"><dict><key>wallpaper</key><string>{name}</string><key>fps</key>'
                        '<integer>30</integer><key>guideShown</key><true/></dict></plist>')


def measured_rate(player, count):
    """The frame rate that the page's `count`th measurement says it reached."""
    lines = [line for line in player.log.read_text().splitlines() if " measured " in line]
    return lines[count].split(" measured ")[1].split()[0] if len(lines) > count else "?"


def measure(desktop, program, home, name, seconds):
    choose(home, name)
    with Player(desktop, program, home) as player:
        player.wait_for(f'"title":"{name}"')
        player.wait_for("measured")
        rate = measured_rate(player, 0)
        loads = []
        for resolution in ("1.0", "0.35"):
            player.act("resolution", resolution)
            for fps in (30, 20):
                player.act("frame-rate", f"int64 {fps}")
                time.sleep(1)
                loads.append(load_of(player.pid, seconds))
        player.wait_for("frame rate 20 FPS, resolution 35%")
        player.act("toggle-pause")
        player.wait_for("paused")
        time.sleep(1)
        figures = "".join(f"{load:>8.1f} %" for load in loads) + f"{load_of(player.pid, seconds):>8.2f} %"
        print(f"{name:<20}{figures}{rate:>8}{memory_of(player.pid):>8.0f} MB", flush=True)


def private_memory_of(pid):
    """Memory that nobody else uses, of the process and all below it, in MB: a share of what is used with others would
    change when the others end."""
    total = 0
    for each in descendants(pid):
        try:
            lines = pathlib.Path(f"/proc/{each}/smaps_rollup").read_text().splitlines()
        except OSError:
            continue
        total += sum(int(line.split()[1]) for line in lines if line.startswith("Private_Dirty:"))
    return total / 1024


def measure_slope(desktop, program, home, name, minutes):
    choose(home, name)
    with Player(desktop, program, home) as player:
        player.wait_for(f'"title":"{name}"')
        player.wait_for("measured")
        figures = []
        end_of_time = time.monotonic() + 60 * minutes
        while time.monotonic() < end_of_time:
            figures.append(private_memory_of(player.pid))
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
        page = home / "Pictures/Wallpapers" / YARDSTICK / "index.html"
        page.parent.mkdir(parents=True)
        page.write_text(COPYING_PAGE)
        if wanted.slope:
            print(f"{'':<20}{'first':>11}{'last':>11}{'grown':>11}")
            for name in names:
                measure_slope(desktop, program, home, name, wanted.slope)
            return
        columns = "".join(f"{column:>10}" for column in ("full", "at 20 FPS", "35 %", "at 20 FPS", "paused"))
        print(f"{'':<20}{columns}{'FPS':>8}{'memory':>11}")
        for name in [YARDSTICK, *names]:
            measure(desktop, program, home, name, wanted.seconds)
        print(f"{'aim':<20}{60:>8.1f} %{'':>10}{25:>8.1f} %{'':>10}{1:>8.2f} %")


if __name__ == "__main__":
    sys.exit(main())
