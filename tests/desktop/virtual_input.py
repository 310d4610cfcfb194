"""A pointer and a keyboard for Wayland compositors that have neither (wlr-virtual-pointer, virtual-keyboard), over the
wire: no tool of Debian's has a pointer, and one that has a keyboard brings another for each key."""

import os
import pathlib
import socket
import struct
import time

DISPLAY, REGISTRY, SYNC, SEAT, POINTERS, KEYBOARDS, POINTER, KEYBOARD = range(1, 9)
BOUND = {"wl_seat": SEAT, "zwlr_virtual_pointer_manager_v1": POINTERS, "zwp_virtual_keyboard_manager_v1": KEYBOARDS}
LEFT_BUTTON = 0x110
ESCAPE, RETURN, UP, LEFT, RIGHT, DOWN = 1, 28, 103, 105, 106, 108
KEYMAP = b"""xkb_keymap { xkb_keycodes { include "evdev" }; xkb_types { include "complete" };
xkb_compatibility { include "complete" }; xkb_symbols { include "pc+us" }; };\0"""


def words(*numbers):
    return struct.pack(f"={len(numbers)}I", *numbers)


def text(value):
    raw = value.encode() + b"\0"
    return words(len(raw)) + raw.ljust(-(-len(raw) // 4) * 4, b"\0")


class VirtualInput:
    """Takes places in the coordinates of the desktop, whose size it is told."""

    def __init__(self, environment, size):
        self._size = size
        self._socket = socket.socket(socket.AF_UNIX)
        self._socket.connect(str(pathlib.Path(environment["XDG_RUNTIME_DIR"], environment["WAYLAND_DISPLAY"])))
        self._send(DISPLAY, 1, words(REGISTRY))
        self._send(DISPLAY, 0, words(SYNC))
        names = self._offered()
        # New numbers have to come in their order.
        for interface, number in BOUND.items():
            self._send(REGISTRY, 0, words(names[interface]) + text(interface) + words(1, number))
        self._send(POINTERS, 0, words(SEAT, POINTER))
        self._send(KEYBOARDS, 0, words(SEAT, KEYBOARD))
        keymap = os.memfd_create("keymap")
        os.write(keymap, KEYMAP)
        self._send(KEYBOARD, 0, words(1, len(KEYMAP)), keymap)
        os.close(keymap)

    def close(self):
        self._socket.close()

    def _send(self, sender, opcode, arguments=b"", *descriptors):
        message = words(sender, (8 + len(arguments)) << 16 | opcode) + arguments
        socket.send_fds(self._socket, [message], descriptors)

    def _receive(self, count):
        data = self._socket.recv(count, socket.MSG_WAITALL)
        assert len(data) == count, "the compositor hung up"
        return data

    def _offered(self):
        """The compositor's names for the interfaces that it offers."""
        names = {}
        while True:
            sender, head = struct.unpack("=II", self._receive(8))
            body = self._receive((head >> 16) - 8)
            if sender == SYNC:
                return names
            if sender == REGISTRY and head & 0xFFFF == 0:
                name, length = struct.unpack("=II", body[:8])
                names[body[8:7 + length].decode()] = name

    def _act(self, sender, opcode, *numbers):
        now = time.monotonic_ns() // 1_000_000 & 0xFFFFFFFF
        self._send(sender, opcode, words(now, *numbers))
        if sender == POINTER:
            self._send(POINTER, 4)  # that was all of it

    def move(self, x, y):
        self._act(POINTER, 1, x, y, *self._size)

    def click(self, x, y):
        self.move(x, y)
        for pressed in (1, 0):
            self._act(POINTER, 2, LEFT_BUTTON, pressed)

    def press(self, *keys):
        for key in keys:
            for pressed in (1, 0):
                self._act(KEYBOARD, 1, key, pressed)
