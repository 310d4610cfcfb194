"""Dialogs, and the keyboard that answers them."""

from session import X, wait_until
from Xlib.error import BadWindow
from Xlib.ext import xtest


def press(view, key, holding=()):
    codes = [view.display.keysym_to_keycode(each) for each in (*holding, key)]
    for code in codes:
        xtest.fake_input(view.display, X.KeyPress, code)
    for code in reversed(codes):
        xtest.fake_input(view.display, X.KeyRelease, code)
    view.display.sync()


def dialog(view, title="Tavelle"):
    for window in view.windows():
        try:
            if window.get_wm_name() == title and window.get_attributes().map_state == X.IsViewable:
                return window
        except BadWindow:
            pass
    return None


def wait_for_dialog(view, title="Tavelle"):
    window = wait_until(lambda: dialog(view, title), 20, "the dialog")
    wait_until(lambda: view.property(view.root, "_NET_ACTIVE_WINDOW") == [window.id], 20, "the dialog to have the focus")
    return window
