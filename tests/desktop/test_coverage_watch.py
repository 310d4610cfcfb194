"""The wallpaper rests where nobody sees it."""

import pytest
from session import HEAD, X, wait_until

SIZES = ["1280x720", "1024x768"]
FIRST, SECOND, BOTH = (0, 0, 1280, 720), (1280, 0, 1024, 768), (0, 0, 2304, 768)
PAGE = HEAD + """<body style="margin:0"><video id="v" src="video.mp4" autoplay muted loop></video><script>
let told, stopped;
window.wallpaper = {pause() { told = 'pause'; }, play() { told = 'play'; }};
v.onpause = () => { stopped = true; say(`stopped ${innerWidth}: told to ${told}`); };
v.onplaying = () => { if (stopped) say(`goes on ${innerWidth}: told to ${told}`); };
</script>"""


@pytest.fixture(name="playing")
def fixture_playing(desktop, tavelle, video):
    desktop.plug("DUMMY1", "1280x0", SIZES[1])
    (tavelle.add("Own", "") / "video.mp4").write_bytes(video.read_bytes())
    tavelle.play(PAGE)
    yield tavelle
    desktop.plug("DUMMY1", "1280x0")


class Rest:
    """Follows which screens rest, by the event log and by what the pages say of themselves."""

    def __init__(self, tavelle):
        self._tavelle = tavelle
        self._resting = set()
        self._rests = [0, 0]

    def expect(self, *screens):
        """Waits until exactly these screens rest, and nothing else has happened on the way."""
        for screen in self._resting ^ set(screens):
            self._rests[screen] += screen in screens
            told, page = (("covered on screen {}: paused", "stopped {}: told to pause") if screen in screens else
                          ("visible on screen {}: playing", "goes on {}: told to play"))
            for message in ("desktop " + told.format(screen), "page: " + page.format(SIZES[screen].partition("x")[0])):
                self._tavelle.wait(f"{message}$", count=self._rests[screen])
        self._resting = set(screens)
        assert len(self._tavelle.found("desktop (covered|visible)")) == sum(self._rests) * 2 - len(screens)


def test_pages_rest_while_windows_hide_them(playing, windows, view):
    rest = Rest(playing)
    both = windows.open(*BOTH)
    rest.expect(0, 1)
    windows.close(both)
    rest.expect()

    halves = [windows.open(x, 0, 640, 720) for x in (0, 640)]
    rest.expect(0)
    windows.close(halves[0])
    rest.expect()
    windows.close()

    window = windows.open(*SECOND)
    windows.open(1400, 100, 300, 200)  # one behind another
    rest.expect(1)
    for hide, back in [(lambda: windows.minimise(window), lambda: windows.activate(window)),
                       (lambda: windows.go_to(1), lambda: windows.go_to(0)),
                       (lambda: windows.show_desktop(1), lambda: windows.show_desktop(0)),
                       (lambda: view.set_property(window, "_NET_WM_WINDOW_OPACITY", [0xFFFFFFFF // 25]),
                        lambda: view.set_property(window, "_NET_WM_WINDOW_OPACITY", [0xFFFFFFFF]))]:
        hide()
        rest.expect()
        back()
        rest.expect(1)

    # A file manager's window for the desktop, which a click may raise over the wallpaper. That comes back, until it
    # has a reason to think that somebody else insists on the place.
    files = windows.open(*FIRST, _NET_WM_WINDOW_TYPE=["_NET_WM_WINDOW_TYPE_DESKTOP"])

    def fight():
        files.configure(stack_mode=X.Above)
        view.display.sync()
        return len(playing.found("desktop covered on screen 0")) == 3

    def is_behind():
        order = view.property(view.root, "_NET_CLIENT_LIST_STACKING")
        return all(order.index(files.id) < order.index(each.id) for each in view.wallpapers())
    for _ in range(3):
        fight()
        wait_until(is_behind, 20, "the wallpaper to come back")
    rest.expect(1)
    wait_until(fight, 30, "the wallpaper to give up")
    rest.expect(0, 1)
    playing.wait("desktop: a file manager's window")
    windows.close(files)
    rest.expect(1)

    windows.open(*FIRST, _NET_WM_PID=[playing.process.pid])  # the program's own hide nothing
    windows.open_panel((0, 0, 1280, 30), 0, 0, 30, 0, 0, 0, 0, 0, 0, 1279, 0, 0)
    lower = windows.open(0, 30, 1280, 690)
    rest.expect(0, 1)
    windows.close(lower)
    rest.expect(1)
    windows.close()
    rest.expect()


def test_what_happens_to_windows_is_told(told, windows):
    lines = told()
    front, back = (windows.open(x, 100, 300, 200) for x in (500, 100))

    def check(what, *steps):
        # More than once: something else may still be told of what came before.
        for step in steps * 3:
            seen = len(lines())
            step()
            wait_until(lambda: len(lines()) > seen, 10, what)

    check("activated", lambda: windows.activate(front), lambda: windows.activate(back))
    windows.activate(front)
    check("minimised", lambda: windows.minimise(back), lambda: (windows.activate(back), windows.activate(front)))
    windows.close()
    check("workspace without windows", lambda: windows.go_to(1), lambda: windows.go_to(0))
    check("desktop shown without windows", lambda: windows.show_desktop(1), lambda: windows.show_desktop(0))
