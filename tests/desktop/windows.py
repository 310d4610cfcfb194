"""The windows of other programs, and what a user does with them."""

from session import X, wait_until

UNDECORATED = {"_MOTIF_WM_HINTS": [2, 0, 0, 0, 0]}
ALL_DESKTOPS = 0xFFFFFFFF


class Windows:
    def __init__(self, view):
        self.view = view
        self._open = []

    def open(self, *place, **properties):
        """A window exactly there, without decoration, once the window manager has it on the screen."""
        window = self.open_decorated(*place, **UNDECORATED, **properties)
        assert self.view.place(window) == place
        return window

    def open_decorated(self, *place, **properties):
        window = self.view.open_window(*place, 0x404040, properties)
        self._open.append(window)
        wait_until(lambda: window.id in self.view.property(self.view.root, "_NET_CLIENT_LIST_STACKING")
                   and self.is_seen(window), 20, f"the window at {place}")
        return window

    def is_seen(self, window):
        return window.get_attributes().map_state == X.IsViewable

    def close(self, window=None):
        for each in [window] if window else list(self._open):
            self._open.remove(each)
            each.destroy()
            self.view.display.sync()
            wait_until(lambda: each.id not in self.view.property(self.view.root, "_NET_CLIENT_LIST_STACKING"), 20,
                       "the window manager to forget the window")

    def frame(self, window):
        """The rectangle of the window manager's frame around the window."""
        parent = window
        while parent.query_tree().parent != self.view.root:
            parent = parent.query_tree().parent
        place = parent.get_geometry()
        return place.x, place.y, place.width, place.height

    def set_state(self, window, on, state):
        self.view.ask_manager("_NET_WM_STATE", window, 1 if on else 0, self.view.atom(f"_NET_WM_STATE_{state}"))
        wait_until(lambda: (self.view.atom(f"_NET_WM_STATE_{state}") in self.view.property(window, "_NET_WM_STATE"))
                   == on, 20, f"{state} {on}")

    def minimise(self, window):
        self.view.ask_manager("WM_CHANGE_STATE", window, 3)
        wait_until(lambda: not self.is_seen(window), 20, "the window to be minimised")

    def activate(self, window):
        self.view.ask_manager("_NET_ACTIVE_WINDOW", window, 2)
        wait_until(lambda: self.view.property(self.view.root, "_NET_ACTIVE_WINDOW") == [window.id], 20, "the focus")

    def go_to(self, workspace):
        self.view.ask_manager("_NET_CURRENT_DESKTOP", self.view.root, workspace)
        wait_until(lambda: self.view.property(self.view.root, "_NET_CURRENT_DESKTOP") == [workspace], 20,
                   "the workspace")

    def show_desktop(self, on):
        self.view.ask_manager("_NET_SHOWING_DESKTOP", self.view.root, on)
        wait_until(lambda: self.view.property(self.view.root, "_NET_SHOWING_DESKTOP") == [on], 20, "the desktop")

    def open_panel(self, place, *struts):
        """A dock with the struts that it gives in _NET_WM_STRUT_PARTIAL."""
        self.open(*place, _NET_WM_WINDOW_TYPE=["_NET_WM_WINDOW_TYPE_DOCK"], _NET_WM_STRUT_PARTIAL=list(struts),
                  _NET_WM_DESKTOP=[ALL_DESKTOPS])
