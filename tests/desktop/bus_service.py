"""Services of the session bus that a test stands in for."""

import threading

from gi.repository import Gio, GLib
from session import connect


class BusService:
    """A name on the session bus, with the same object at each path. Use as a context manager, in which a thread answers
    calls by `called`, and questions for properties by `properties`."""

    properties = {}
    answer = None

    def __init__(self, desktop, name, interface, *paths):
        self._name = name
        self.calls = []
        self.bus = connect(desktop.environment["DBUS_SESSION_BUS_ADDRESS"])
        self._context = GLib.MainContext.new()
        self._loop = GLib.MainLoop.new(self._context, False)
        self._thread = threading.Thread(target=self._loop.run)
        description = Gio.DBusNodeInfo.new_for_xml(f"<node>{interface}</node>").interfaces[0]
        self._context.push_thread_default()  # it gets what is for the objects registered meanwhile
        for path in paths:
            self.bus.register_object(path, description, self._called, self._asked)
        self._context.pop_thread_default()

    def __enter__(self):
        self._thread.start()
        self.bus.call_sync("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "RequestName",
                           GLib.Variant("(su)", (self._name, 0)), None, Gio.DBusCallFlags.NONE, -1)
        return self

    def __exit__(self, *_):
        quit_loop = GLib.idle_source_new()  # a loop that does not run yet cannot be told to end
        quit_loop.set_callback(lambda *_: self._loop.quit())
        quit_loop.attach(self._context)
        self._thread.join()
        self.bus.close_sync()

    def called(self, arguments, call):
        """Answers a call of the only method; in the service's thread."""
        self.calls.append(arguments)
        call.return_value(self.answer)

    def _called(self, _bus, _sender, _path, _interface, _method, arguments, call):
        self.called(arguments.unpack(), call)

    def _asked(self, _bus, _sender, _path, _interface, name):
        return self.properties[name]
