"""What every test of the desktop runs on. Each ends what it started, also when the test has failed."""

import subprocess

import pytest
from session import DISPLAY_PROBE, Tavelle, VirtualDesktop, XView, wait_until
from tray import Menu
from windows import Windows


@pytest.fixture(scope="module", name="desktop")
def fixture_desktop(request):
    """With as many monitors as the module says."""
    with VirtualDesktop(monitors=getattr(request.module, "MONITORS", 2)) as desktop:
        yield desktop


@pytest.fixture(name="view")
def fixture_view(desktop):
    view = XView(desktop.environment["DISPLAY"])
    yield view
    view.display.close()


@pytest.fixture(name="windows")
def fixture_windows(view):
    """Opens windows, and closes them in the end."""
    opened = Windows(view)
    yield opened
    view.ask_manager("_NET_SHOWING_DESKTOP", view.root, 0)
    view.ask_manager("_NET_CURRENT_DESKTOP", view.root, 0)
    opened.close()


@pytest.fixture(scope="session", name="video")
def fixture_video(tmp_path_factory):
    """A file of a minute, with sound."""
    file = tmp_path_factory.mktemp("video") / "video.mp4"
    subprocess.run(["ffmpeg", "-loglevel", "error", "-f", "lavfi", "-i", "testsrc=size=320x240:rate=30:duration=60",
                    "-f", "lavfi", "-i", "sine=duration=60", "-pix_fmt", "yuv420p", file], check=True)
    return file


@pytest.fixture(name="tavelle")
def fixture_tavelle(desktop, tmp_path):
    tavelle = Tavelle(desktop, tmp_path)
    yield tavelle
    status = tavelle.stop() if tavelle.process else 0
    tavelle.bus.close_sync()
    # Also where the test has passed: a program that fell over on the way has failed.
    assert status == 0


@pytest.fixture(name="menu")
def fixture_menu(tavelle, view):
    return Menu(tavelle, view)


@pytest.fixture(name="told")
def fixture_told(desktop, tmp_path):
    """Has the backend listen to the display server, and gives a function for all lines that were told so far."""
    probes = []

    def start(**environment):
        output = tmp_path / "told"
        with open(output, "w", encoding="utf-8") as lines:
            probes.append(subprocess.Popen([DISPLAY_PROBE], env=desktop.environment | environment, stdin=subprocess.PIPE,
                                           stdout=lines))
        wait_until(lambda: output.read_text().endswith("\n"), 20, "the first look")
        return lambda: output.read_text().splitlines()
    yield start
    for probe in probes:
        probe.stdin.close()
        assert probe.wait(20) == 0
