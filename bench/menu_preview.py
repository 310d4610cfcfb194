#!/usr/bin/python3
"""What the four pictures of the menu's preview cost, process start to exit, beside the bare start of the program and a
process that draws one picture of the same text with Pango.

usage: bench/menu_preview.py [PROGRAM]
"""

import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
RUNS = 25


def milliseconds(command, environment):
    start = time.perf_counter()
    subprocess.run(command, env=environment, stdout=subprocess.DEVNULL, check=True)
    return 1000 * (time.perf_counter() - start)


def main():
    program = sys.argv[1] if len(sys.argv) > 1 else str(ROOT / "build/release/bin/tavelle")
    with tempfile.TemporaryDirectory() as folder:
        environment = {"HOME": folder, "PATH": os.environ["PATH"]}
        text = "\n".join(f"Sample Wallpaper {number}" for number in range(1, 13))
        commands = {
            "preview": [program, "--preview-menu", folder, "12"],
            "bare": [program, "--coverage"],
            "pango": ["pango-view", "--no-display", "--font=Inter 13px", f"--text={text}", "-o", f"{folder}/text.png"],
        }
        # By turns, so that a busy moment of the machine's meets all; the first turn warms up.
        turns = [{name: milliseconds(command, environment) for name, command in commands.items()}
                 for _ in range(RUNS + 1)][1:]
        median = {name: statistics.median(turn[name] for turn in turns) for name in commands}
        print(f"four pictures of the menu   {median['preview']:5.1f} ms   bare start: {median['bare']:.1f} ms, "
              f"pango-view, one picture: {median['pango']:.1f} ms; aim: 120 ms")


main()
