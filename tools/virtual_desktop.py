"""A desktop session of its own on a screen that nobody sees: X server, session bus, window manager.

The X server is Xorg with the dummy driver, whose second monitor can be plugged in and out while it runs.
"""

import os
import pathlib
import shutil
import signal
import subprocess
import tempfile
import time

XORG_CONFIGURATION = """
Section "ServerFlags"
  Option "AutoAddDevices" "false"
  Option "AutoAddGPU" "false"
  Option "DontVTSwitch" "true"
EndSection
Section "Device"
  Identifier "dummy"
  Driver "dummy"
  VideoRam 262144
EndSection
Section "Monitor"
  Identifier "monitor"
  HorizSync 5.0-1000.0
  VertRefresh 5.0-200.0
EndSection
Section "Screen"
  Identifier "screen"
  Device "dummy"
  Monitor "monitor"
  DefaultDepth 24
  SubSection "Display"
    Depth 24
    Modes "1920x1080" "1280x720"
    Virtual 3840 2160
  EndSubSection
EndSection
"""


def wait_until(condition, seconds, what, interval=0.05):
    """Waits for `condition` to give something true, and gives it back. Fails after `seconds`."""
    deadline = time.monotonic() + seconds
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > deadline:
            raise TimeoutError(f"waited {seconds} s for {what() if callable(what) else what}")
        time.sleep(interval)


def descendants(pid):
    """The process and all below it, as far as they can be told now."""
    children = {}
    for stat in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            fields = stat.read_text().rpartition(")")[2].split()
        except OSError:
            continue
        children.setdefault(int(fields[1]), []).append(int(stat.parent.name))
    found = [pid]
    for each in found:
        found.extend(children.get(each, []))
    return found


def end(process, seconds=10):
    """Ends a process that this one started, and gives its exit status."""
    if process.poll() is None:
        process.terminate()
        try:
            process.wait(seconds)
        except subprocess.TimeoutExpired:
            process.kill()
            process.wait()
    return process.returncode


class Session:
    """A session of processes with a bus and folders of their own. Use as a context manager; all that it starts ends
    with it."""

    def __init__(self):
        self._processes = []
        self.folder = None
        self.environment = None

    def __enter__(self):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="tavelle-desktop-"))
        try:
            self._prepare()
            self._start()
        except BaseException:
            self.__exit__()
            raise
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            end(process)
        shutil.rmtree(self.folder, ignore_errors=True)

    def _prepare(self):
        foreign = ("DBUS_", "WAYLAND_", "XDG_", "GDK_", "GTK_", "SWAY", "DISPLAY")
        base = {k: v for k, v in os.environ.items() if not k.startswith(foreign)}
        runtime = self.folder / "runtime"
        runtime.mkdir(mode=0o700)
        self.environment = base | {"XDG_RUNTIME_DIR": str(runtime), "NO_AT_BRIDGE": "1"}

    def _start(self):
        """Starts what shows the screen, and then the bus: what that activates has to find the screen."""
        raise NotImplementedError

    def _start_bus(self):
        bus = self.start(["dbus-daemon", "--session", "--nofork", "--print-address=1"], stdout=subprocess.PIPE)
        self.environment["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()

    def start(self, command, **options):
        """Starts a program of this session that ends with it at the latest."""
        options.setdefault("stdout", subprocess.DEVNULL)
        options.setdefault("stderr", subprocess.DEVNULL)
        process = subprocess.Popen(command, env=self.environment, stdin=subprocess.DEVNULL, **options)
        self._processes.append(process)
        return process

    def run(self, *command):
        """Runs a program to its end and gives what it printed."""
        done = subprocess.run(command, env=self.environment, stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, timeout=30, check=False)
        return done.stdout.decode(errors="replace")

    def screenshot(self, file):
        """Saves what is on the screen; an older file of that name is never taken for it."""
        file = pathlib.Path(file)
        file.unlink(missing_ok=True)
        said = self.run(*self.picture_taker, str(file))
        if not file.exists():
            raise RuntimeError(f"couldn't take a screenshot: {said}")
        return file


class VirtualDesktop(Session):
    """An X server with a window manager."""

    picture_taker = ("import", "-window", "root")

    def __init__(self, monitors=1, window_manager=True, size="1280x720"):
        super().__init__()
        self._monitors = monitors
        self._window_manager = window_manager
        self._size = size

    def _start(self):
        self._start_server()
        self._start_bus()
        if self._monitors > 1:
            self.plug("DUMMY1", "1280x0")
        if self._window_manager:
            self._start_window_manager()

    def _start_server(self):
        configuration = self.folder / "xorg.conf"
        configuration.write_text(XORG_CONFIGURATION)
        read, write = os.pipe()
        command = ["Xorg", "-displayfd", str(write), "-config", str(configuration), "-configdir", str(self.folder),
                   "-logfile", str(self.folder / "xorg.log"), "-noreset", "-novtswitch", "-sharevts", "-nolisten",
                   "tcp", "-ac", "vt7"]
        self.start(command, pass_fds=[write])
        os.close(write)
        with os.fdopen(read) as numbers:
            number = numbers.readline().strip()
        if not number:
            raise RuntimeError("the X server did not start:\n" + (self.folder / "xorg.log").read_text()[-2000:])
        self.environment["DISPLAY"] = f":{number}"
        self.run("xrandr", "--output", "DUMMY0", "--primary", "--mode", self._size, "--pos", "0x0")
        self.run("xrandr", "--fb", self._size)

    def _start_window_manager(self):
        self.start(["openbox", "--sm-disable"])
        wait_until(lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), 10,
                   "the window manager")

    def plug(self, monitor, position, size="1280x720"):
        self.run("xrandr", "--addmode", monitor, size)
        self.run("xrandr", "--output", monitor, "--mode", size, "--pos", position)
        # A client can miss a monitor of the dummy driver until somebody asks the server for its outputs.
        self.run("xrandr", "--query")

    def unplug(self, monitor):
        self.run("xrandr", "--output", monitor, "--off")
        self.run("xrandr", "--query")
