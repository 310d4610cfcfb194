"""The part of Plasma's shell that a script for it meets, on the session bus, with a real JavaScript engine."""

import json

import gi
from bus_service import BusService
from gi.repository import GLib

gi.require_version("JavaScriptCore", "4.1")
from gi.repository import JavaScriptCore  # noqa: E402

INTERFACE = """<interface name="org.kde.PlasmaShell"><method name="evaluateScript">
<arg type="s" direction="in"/><arg type="s" direction="out"/></method></interface>"""

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


class PlasmaShell(BusService):
    """`answer` makes it answer otherwise: it is called with the call and the script."""

    def __init__(self, desktop, state, answer=None):
        super().__init__(desktop, "org.kde.plasmashell", INTERFACE, "/PlasmaShell")
        self.state = state
        self._answer = answer or self._evaluate

    def called(self, arguments, call):
        self._answer(call, arguments[0])

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
