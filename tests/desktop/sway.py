"""A Wayland desktop of its own that nobody sees: the compositor sway."""

import json
import os

from session import Session, XView, wait_until
from Xlib.protocol import event

CONFIGURATION = """
default_border none
output {0}-1 resolution 1280x720 position 0 0
output {0}-2 resolution 1280x720 position 1280 0
workspace 1 output {0}-1
workspace 2 output {0}-2
bar panel {{
  output {0}-1
  position top
  height 30
  swaybar_command true
}}
"""
NOBODY = 65534


class SwayDesktop(Session):
    """Two outputs side by side, in memory; with an X server they are windows of it, each where sway has the output, and
    its pointer and keyboard are sway's."""

    picture_taker = ("grim",)

    def __init__(self, x_server=None):
        super().__init__()
        self._view = None
        self._backend = {"WLR_BACKENDS": "headless", "WLR_HEADLESS_OUTPUTS": "2", "WLR_LIBINPUT_NO_DEVICES": "1"}
        if x_server:
            display = x_server.environment["DISPLAY"]
            self._view = XView(display)
            self._backend = {"WLR_BACKENDS": "x11", "WLR_X11_OUTPUTS": "2", "DISPLAY": display}
            for name in ("_NET_WM_NAME", "UTF8_STRING", "WM_PROTOCOLS", "WM_DELETE_WINDOW"):
                self._view.atom(name)  # sway uses those that somebody has used before, as a window manager does

    def _start(self):
        runtime = self.folder / "runtime"
        configuration = self.folder / "sway.conf"
        configuration.write_text(CONFIGURATION.format("X11" if self._view else "HEADLESS"))
        self.environment |= {"SWAYSOCK": str(runtime / "sway.sock"), "XDG_CURRENT_DESKTOP": "sway"}
        where = self._backend
        command = ["env", *(f"{name}={value}" for name, value in where.items()), "WLR_RENDERER=pixman", "sway", "-c",
                   str(configuration)]
        if os.getuid() == 0:
            # It does not run as root; root reaches its sockets all the same.
            for each in (self.folder, configuration, runtime):
                os.chown(each, NOBODY, NOBODY)
            command = ["setpriv", f"--reuid={NOBODY}", f"--regid={NOBODY}", "--clear-groups", *command]
        with open(self.folder / "sway.log", "wb") as log:
            compositor = self.start(command, stderr=log)
        sockets = wait_until(lambda: compositor.poll() is not None or
                             [each for each in runtime.glob("wayland-*") if each.is_socket()], 20, "the compositor")
        if compositor.poll() is not None:
            raise RuntimeError("sway did not start:\n" + (self.folder / "sway.log").read_text()[-2000:])
        self.environment["WAYLAND_DISPLAY"] = sockets[0].name
        self._start_bus()
        wait_until(lambda: len(self.outputs()) == 2, 20, "both outputs")
        self._place_outputs()

    def ask(self, *message, kind="command"):
        """What sway answers, as an object."""
        return json.loads(self.run("swaymsg", "--raw", "--type", kind, "--", *message))

    def do(self, command):
        """Carries out a command of sway's configuration language."""
        answers = self.ask(command)
        assert all(each["success"] for each in answers), (command, answers)

    def outputs(self):
        """The outputs' rectangles as (x, y, width, height), by name."""
        return {each["name"]: tuple(each["rect"][side] for side in ("x", "y", "width", "height"))
                for each in self.ask(kind="get_outputs") if each["active"]}

    def windows(self):
        """All windows as sway describes them, by the application's name."""
        found, trees = {}, [self.ask(kind="get_tree")]
        for tree in trees:
            trees += tree["nodes"] + tree["floating_nodes"]
            if tree.get("app_id"):
                found[tree["app_id"]] = tree
        return found

    def open(self, name):
        """Opens a red window, and gives its process."""
        process = self.start(["foot", "--app-id", name, "--override", "colors.background=ff0000", "sleep", "600"])
        wait_until(lambda: name in self.windows(), 20, name)
        return process

    def plug(self):
        """Adds an output, and gives its name."""
        before = set(self.outputs())
        self.do("create_output")
        output = wait_until(lambda: set(self.outputs()) - before, 10, "the new output").pop()
        self._place_outputs()
        return output

    def unplug(self, output):
        """Only on an X server."""
        window, atom = self._window_of(output), self._view.atom
        window.send_event(event.ClientMessage(window=window, client_type=atom("WM_PROTOCOLS"),
                                              data=(32, [atom("WM_DELETE_WINDOW"), 0, 0, 0, 0])))
        self._view.display.sync()
        wait_until(lambda: output not in self.outputs(), 10, f"{output} to go")

    def _window_of(self, output):
        return self._view.named(f"wlroots - {output}")[0]

    def _place_outputs(self):
        for output, (x, y, *_) in self.outputs().items() if self._view else ():
            self._window_of(output).configure(x=x, y=y)
            self._view.display.sync()
