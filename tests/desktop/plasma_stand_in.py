"""The part of Plasma's shell that a script for it meets, on the session bus, with a real JavaScript engine."""

import json
import threading

import gi
from gi.repository import Gio, GLib
from session import connect

gi.require_version("JavaScriptCore", "4.1")
from gi.repository import JavaScriptCore  # noqa: E402

INTERFACE = Gio.DBusNodeInfo.new_for_xml("""<node><interface name="org.kde.PlasmaShell">
  <method name="evaluateScript"><arg name="script" direction="in"/><arg direction="out"/></method>
</interface></node>""".replace("<arg ", '<arg type="s" ')).interfaces[0]

# A desktop's settings are kept in groups, named by their path; a group that was never written reads as empty.
WORLD = """
var output = "";
function print(text) { output += text; }
function screenGeometry(number) {
  var place = state.screens[number];
  return {x: place[0], y: place[1], width: place[2], height: place[3]};
}
function desktops() {
  return state.desktops.map(function (each) {
    return {
      get screen() { return each.screen; },
      get wallpaperPlugin() { return each.plugin; },
      set wallpaperPlugin(name) { each.plugin = name; },
      currentConfigGroup: [],
      group: function () {
        var path = this.currentConfigGroup.join("/");
        return each.config[path] = each.config[path] || {};
      },
      readConfig: function (key, otherwise) { return key in this.group() ? this.group()[key] : otherwise; },
      writeConfig: function (key, value) { this.group()[key] = value; },
    };
  });
}
"""


class PlasmaShell:
    """Use as a context manager. `answer` makes it answer otherwise: it is called with the call and the script."""

    def __init__(self, address, state, answer=None):
        self.state = state
        self._answer = answer or self._evaluate
        self._context = GLib.MainContext.new()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._thread = threading.Thread(target=self._serve, args=(address, started := threading.Event()))
        self._started = started
        self._bus = None

    def __enter__(self):
        self._thread.start()
        assert self._started.wait(30)
        return self

    def __exit__(self, *_):
        self._loop.quit()
        self._thread.join()
        if self._bus:
            self._bus.close_sync()

    def _serve(self, address, started):
        self._context.push_thread_default()
        self._bus = connect(address)
        self._bus.register_object("/PlasmaShell", INTERFACE, self._called, None, None)
        self._bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                            GLib.Variant("(su)", ("org.kde.plasmashell", 0)), None, Gio.DBusCallFlags.NONE, -1)
        started.set()
        self._loop.run()
        self._context.pop_thread_default()

    def _called(self, _bus, _sender, _path, _interface, _method, arguments, call):
        self._answer(call, arguments.unpack()[0])

    def _evaluate(self, call, script):
        """As the shell does: what goes wrong in a script is an error of the call."""
        engine = JavaScriptCore.Context()
        engine.evaluate(f"var state = {json.dumps(self.state)};" + WORLD, -1)
        engine.evaluate(script, -1)
        if engine.get_exception():
            call.return_dbus_error("org.freedesktop.DBus.Error.Failed", engine.get_exception().report())
            return
        self.state = json.loads(engine.evaluate("JSON.stringify(state)", -1).to_string())
        call.return_value(GLib.Variant("(s)", (engine.evaluate("output", -1).to_string(),)))
