#!/usr/bin/python3
"""What the whole program costs: time to start, processor time while it plays, while it rests, for a command-line task.

usage: bench/whole_process.py [PROGRAM]

Every figure stands beside a yardstick that is measured in the same run, since machines differ and are shared.
Processor time counts the program and all its children.
"""

import os
import pathlib
import statistics
import subprocess
import sys
import time

from Xlib import Xatom, display

ROOT = pathlib.Path(__file__).resolve().parent.parent
sys.path.insert(0, str(ROOT / "tools"))
from virtual_desktop import VirtualDesktop, descendants, end, wait_until  # noqa: E402

SECONDS = 20
PAGE = """<!doctype html>
<meta charset="utf-8">
<title>Video</title>
<style>html,body{margin:0;height:100%;background:#000;overflow:hidden}\
video,img{width:100%;height:100%;object-fit:cover;display:block}</style>
<video src="video.mp4" autoplay muted loop playsinline disablepictureinpicture></video>"""


def cpu_seconds(pid):
    """Processor time that the process and each below it have used so far, by process id."""
    seconds = {}
    for each in descendants(pid):
        try:
            fields = pathlib.Path(f"/proc/{each}/stat").read_text().rpartition(")")[2].split()
        except OSError:
            continue
        seconds[each] = (int(fields[11]) + int(fields[12])) / os.sysconf("SC_CLK_TCK")
    return seconds


def load_of(pid, seconds=SECONDS):
    """Per cent of one core over the next seconds. What a process used that ends meanwhile is not counted."""
    before, start = cpu_seconds(pid), time.monotonic()
    time.sleep(seconds)
    used = sum(after - before.get(each, 0) for each, after in cpu_seconds(pid).items())
    return 100 * used / (time.monotonic() - start)


def memory_of(pid, kind="Pss"):
    """The process's memory and that of all below it, in MB; its proportional set size, or another kind that the kernel
    tells."""
    total = 0
    for each in descendants(pid):
        try:
            lines = pathlib.Path(f"/proc/{each}/smaps_rollup").read_text().splitlines()
        except OSError:
            continue
        total += sum(int(line.split()[1]) for line in lines if line.startswith(f"{kind}:"))
    return total / 1024


class Player:
    """The program on a virtual desktop, with a home folder of its own."""

    def __init__(self, desktop, program, home):
        self.log = home / "Library/Logs/Tavelle.log"
        self.log.unlink(missing_ok=True)
        desktop.environment["HOME"] = str(home)
        self._desktop = desktop
        self._start = time.monotonic()
        self._process = desktop.start([program])
        self.pid = self._process.pid

    def __enter__(self):
        return self

    def __exit__(self, *_):
        end(self._process)

    def wait_for(self, text):
        wait_until(lambda: self.log.exists() and text in self.log.read_text(), 60, text, interval=0.005)
        return time.monotonic() - self._start

    def act(self, *action):
        self._desktop.run("gapplication", "action", "org.tavelle.Tavelle", *action)


def make_video_wallpaper(home):
    folder = home / "Pictures/Wallpapers/Video"
    folder.mkdir(parents=True)
    (folder / "index.html").write_text(PAGE)
    video = folder / "video.mp4"
    subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i",
                    "testsrc2=size=1920x1080:rate=30:duration=10", "-c:v", "libx264", "-pix_fmt", "yuv420p",
                    str(video)], check=True)
    return video


def choose(home, name, fps=60):
    settings = home / ".config/tavelle/defaults.plist"
    settings.parent.mkdir(parents=True, exist_ok=True)
    settings.write_text(f'<plist version="1.0"><dict><key>wallpaper</key><string>{name}</string><key>fps</key>'
                        f'<integer>{fps}</integer><key>guideShown</key><true/></dict></plist>')


def milliseconds(command, environment, runs=30):
    times = []
    for _ in range(runs):
        start = time.perf_counter()
        subprocess.run(command, env=environment, stdout=subprocess.DEVNULL, check=True)
        times.append(1000 * (time.perf_counter() - start))
    return statistics.median(times)


def report(what, figure, yardstick=""):
    print(f"{what:<58}{figure:>12}   {yardstick}", flush=True)


def measure_command_line(program):
    bare = {k: v for k, v in os.environ.items() if k not in ("DISPLAY", "WAYLAND_DISPLAY")}
    ours = milliseconds([program, "--set-still", "x.jpg"], bare)
    report("a command-line task without a display", f"{ours:.1f} ms",
           f"/bin/true takes {milliseconds(['/bin/true'], bare):.1f} ms; aim: 30 ms")


def measure_start(desktop, program, home):
    choose(home, "Starship Liftoff")
    times = []
    for _ in range(6):
        with Player(desktop, program, home) as player:
            times.append(player.wait_for("loaded:"))
    # The first start warms the machine up, and fills the library.
    report("start until the first page has loaded, warm", f"{statistics.median(times[1:]):.2f} s",
           f"cold: {times[0]:.2f} s; aim: 1.5 s")


def measure_video(desktop, program, home, video):
    yardstick = desktop.start(["mpv", "--no-config", "--loop", "--no-audio", "--fs", "--vo=x11", str(video)])
    time.sleep(3)
    mpv = load_of(yardstick.pid)
    end(yardstick)
    choose(home, "Video")
    with Player(desktop, program, home) as player:
        player.wait_for("measured")
        playing = load_of(player.pid)
        report("a 1080p30 video plays", f"{playing:.1f} %",
               f"mpv: {mpv:.1f} %, ratio {playing / mpv:.2f}; aim: 2.3")
        report("memory meanwhile, all processes", f"{memory_of(player.pid):.0f} MB")
        player.act("toggle-pause")
        player.wait_for("paused")
        time.sleep(1)
        report("the same, paused", f"{load_of(player.pid):.2f} %", "aim: 1 %")


def measure_canvas(desktop, program, home):
    choose(home, "Starship Liftoff")
    with Player(desktop, program, home) as player:
        player.wait_for("measured")
        report("Starship Liftoff at 60 FPS", f"{load_of(player.pid):.1f} %")
        player.act("frame-rate", "int64 30")
        player.wait_for("frame rate 30")
        report("Starship Liftoff at 30 FPS", f"{load_of(player.pid):.1f} %")
        player.act("resolution", "0.35")
        player.wait_for("resolution 35%")
        report("Starship Liftoff at 30 FPS, resolution 35 %", f"{load_of(player.pid):.1f} %")
        player.act("toggle-pause")
        player.wait_for("paused")
        time.sleep(1)
        report("the same, paused", f"{load_of(player.pid):.2f} %", "aim: 1 %")


def open_windows(view, count):
    screen = view.screen()
    for number in range(count):
        window = screen.root.create_window(10 + 7 * number, 10, 300, 300, 0, screen.root_depth)
        window.map()
    wanted = view.intern_atom("_NET_CLIENT_LIST")
    wait_until(lambda: len(screen.root.get_full_property(wanted, Xatom.WINDOW).value) >= count, 30, "the windows")


def measure_watch(desktop, program, home):
    choose(home, "Starship Liftoff")
    for count in (10, 100):
        view = display.Display(desktop.environment["DISPLAY"])
        open_windows(view, count)
        with Player(desktop, program, home) as player:
            player.wait_for("measured")
            player.act("toggle-pause")
            player.wait_for("paused")
            time.sleep(1)
            report(f"paused, a minute with {count} windows open", f"{load_of(player.pid, 60):.2f} %",
                   "the watch's aim: 0.3 %")
        view.close()
    view = display.Display(desktop.environment["DISPLAY"])
    open_windows(view, 100)
    bench = pathlib.Path(program).parent.parent / "bench/tavelle_bench"
    print(desktop.run(bench, "--benchmark_filter=lookAtTheDesktop|askForEachSize", "--benchmark_format=console"))
    view.close()


def main():
    program = str(pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else ROOT / "build/release/bin/tavelle").resolve())
    measure_command_line(program)
    with VirtualDesktop(size="1920x1080") as desktop:
        home = desktop.folder / "home"
        video = make_video_wallpaper(home)
        measure_start(desktop, program, home)
        measure_video(desktop, program, home, video)
        measure_canvas(desktop, program, home)
        measure_watch(desktop, program, home)


if __name__ == "__main__":
    main()
