"""A Wayland desktop of its own that nobody sees: the compositor sway with outputs in memory."""

import json
import os

from session import Session, wait_until

CONFIGURATION = """
default_border none
output HEADLESS-1 resolution 1280x720 position 0 0
output HEADLESS-2 resolution 1280x720 position 1280 0
"""
NOBODY = 65534


class SwayDesktop(Session):
    """Two outputs side by side; on a `parent` they are windows of its, whose size it chooses and which can be closed."""

    picture_taker = ("grim",)

    def __init__(self, parent=None):
        super().__init__()
        self._parent = parent

    def _start(self):
        runtime = self.folder / "runtime"
        configuration = self.folder / "sway.conf"
        configuration.write_text(CONFIGURATION)
        self.environment |= {"SWAYSOCK": str(runtime / "sway.sock"), "XDG_CURRENT_DESKTOP": "sway"}
        where = {"WLR_BACKENDS": "headless", "WLR_HEADLESS_OUTPUTS": "2", "WLR_LIBINPUT_NO_DEVICES": "1"}
        if self._parent:
            display = self._parent.folder / "runtime" / self._parent.environment["WAYLAND_DISPLAY"]
            where = {"WLR_BACKENDS": "wayland", "WLR_WL_OUTPUTS": "2", "WAYLAND_DISPLAY": str(display)}
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
        return wait_until(lambda: set(self.outputs()) - before, 10, "the new output").pop()

    def unplug(self, output):
        """Only on a parent."""
        self._parent.do(f'[title="wlroots - {output}"] kill')
        wait_until(lambda: output not in self.outputs(), 10, f"{output} to go")
