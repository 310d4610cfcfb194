"""Opening at login, asked for over the session bus."""

import configparser

from session import BINARY, color_page


def test_the_session_starts_the_program(tavelle):
    entry = tavelle.home / ".config/autostart/tavelle.desktop"
    tavelle.play(color_page("#008000"))
    tavelle.act("toggle-login")
    tavelle.wait("open at login: true")
    written = configparser.RawConfigParser()
    written.optionxform = str
    written.read(entry)
    assert written["Desktop Entry"]["Exec"] == f'"{BINARY}"'
    tavelle.act("toggle-login")
    tavelle.wait("open at login: false")
    assert not entry.exists()
