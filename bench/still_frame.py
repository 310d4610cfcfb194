#!/usr/bin/python3
"""What the still of a 4K video costs: time and memory, beside the ffmpeg command that makes the same frame a JPEG file.

usage: bench/still_frame.py [HELPER]
"""

import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import time

ROOT = pathlib.Path(__file__).resolve().parent.parent
RUNS = 9


def run(command):
    """Runs the command; seconds until its end, and the most memory it held, in MB."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL)
    _, status, usage = os.wait4(process.pid, 0)
    if status != 0:
        sys.exit(f"{command[0]} failed")
    return time.perf_counter() - start, usage.ru_maxrss / 1024


def make_video(path):
    subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", "testsrc2=size=3840x2160:rate=30:duration=2",
                    "-f", "lavfi", "-i", "sine=duration=2", "-c:v", "libx264", "-preset", "fast",
                    "-pix_fmt", "yuv420p", str(path)], check=True)


def main():
    helper = sys.argv[1] if len(sys.argv) > 1 else str(ROOT / "build/release/lib/tavelle/video-frame")
    with tempfile.TemporaryDirectory() as folder:
        video = pathlib.Path(folder, "video.mp4")
        make_video(video)
        ours = [helper, str(video), "500000000"]
        yardstick = ["ffmpeg", "-loglevel", "error", "-y", "-ss", "0.5", "-i", str(video), "-frames:v", "1", "-q:v", "2",
                     str(pathlib.Path(folder, "still.jpg"))]
        # By turns, so that a busy moment of the machine's meets both; the first turn warms up.
        turns = [(run(ours), run(yardstick)) for _ in range(RUNS + 1)][1:]
        our_time, their_time = (statistics.median(turn[who][0] for turn in turns) for who in (0, 1))
        our_memory, their_memory = (max(turn[who][1] for turn in turns) for who in (0, 1))
        print(f"still of a 4K H.264 video   {1000 * our_time:5.0f} ms   ffmpeg: {1000 * their_time:.0f} ms, "
              f"ratio {our_time / their_time:.2f}; aim: 1.2")
        print(f"memory meanwhile, at most   {our_memory:5.0f} MB   ffmpeg: {their_memory:.0f} MB; aim: 400 MB")


main()
