"""What a page gets from the program, and what the program does when a page goes wrong."""

import os
import re
import shutil
import signal

from bus_service import BusService
from session import HEAD, TALKING, GLib, color_page, lives, wait_until

MONITORS = 1
CANVAS = """<canvas id="c"></canvas><script>
const size = when => {
  c.width = innerWidth * tavelle.scale;
  c.height = innerHeight * tavelle.scale;
  say(`${when} ${tavelle.fps} ${tavelle.scale} ${c.width}`);
};
const draw = () => { id = requestAnimationFrame(draw); };
let id;
window.wallpaper = {play() { cancelAnimationFrame(id); draw(); }, pause() { cancelAnimationFrame(id); }};
addEventListener('resize', () => size('live'));
size('first');
</script>"""


def end_page(tavelle, number=signal.SIGKILL):
    process, = tavelle.page_processes()
    os.kill(process, number)
    return process


def test_frame_settings_reach_the_page(tavelle):
    tavelle.play(HEAD + CANVAS, fps=30, resolutionScale=0.5)
    tavelle.wait("page: first 30 0.5 640$")
    tavelle.wait(r"measured \d+\.\d FPS \(setting 30\), canvas 640x360$")

    tavelle.act("resolution", GLib.Variant("d", 0.25))
    tavelle.wait("page: live 30 0.25 320$")
    tavelle.wait("frame rate 30 FPS, resolution 25%$")
    tavelle.act("frame-rate", GLib.Variant("x", 20))
    tavelle.wait("frame rate 20 FPS, resolution 25%$")
    rates = r"measured (\d+\.\d) FPS \(setting 20\), canvas 320x180$"
    wait_until(lambda: any(float(each[1]) >= 15 for each in tavelle.found(rates)) or
               tavelle.act("frame-rate", GLib.Variant("x", 20)), 60, lambda: f"some 20 FPS: {tavelle.messages()}",
               interval=4)
    assert max(float(each[1]) for each in tavelle.found(rates)) <= 22

    end_page(tavelle)
    tavelle.wait("page: first 20 0.25 320$")
    tavelle.act("toggle-pause")
    tavelle.wait(r"measured 0\.0 FPS \(setting 20, paused\), canvas 320x180$")
    assert (tavelle.stored()["fps"], tavelle.stored()["resolutionScale"]) == (20, 0.25)


def test_page_is_loaded_again_as_it_was_after_a_crash_and_when_it_has_locked_up(tavelle):
    tavelle.play(TALKING)
    tavelle.wait("page: play")
    tavelle.act("toggle-pause")
    tavelle.wait("page: pause")
    for crashes in (1, 2):
        end_page(tavelle)
        tavelle.wait("web content process ended; reloading", count=crashes)
        tavelle.wait("page: new page", count=1 + crashes)
        tavelle.wait("page: pause", count=1 + crashes)
    assert len(tavelle.found("page: play")) == 1
    locked_up = end_page(tavelle, signal.SIGSTOP)
    tavelle.act("toggle-pause")
    tavelle.wait("web content process ended; reloading", count=3, seconds=25)
    tavelle.wait("page: play", count=2)
    wait_until(lambda: not lives(locked_up), 5, "the page process to go")
    assert [each for each in tavelle.messages() if each in ("paused", "resumed")] == ["paused", "resumed"]


def test_page_that_is_busy_is_waited_for(tavelle):
    tavelle.play(TALKING + """<script>window.wallpaper.play = () => setTimeout(() => {
        say('busy');
        const end = performance.now() + 12000;
        while (performance.now() < end);
        say('done');
    }, 100)</script>""")
    process = tavelle.page_processes()
    tavelle.wait("page: busy")
    tavelle.act("toggle-pause")
    tavelle.wait("paused")
    tavelle.wait("page: done")
    tavelle.wait("page: pause")
    assert tavelle.page_processes() == process and not tavelle.found("web content process ended")


def test_errors_are_logged(tavelle, view):
    folder = tavelle.play(HEAD + """<script>
        window.webkit.messageHandlers.log.postMessage('half \\ud83d a pair');
        console.error('a', 1);
        setTimeout(() => { throw new Error('uncaught'); });
        setTimeout(() => say('end'), 100);
    </script><script>missing();</script>""")
    tavelle.wait("page: end")
    for message in ("page: half \ufffd a pair", "page: console.error: a 1", "page: js error: Error: uncaught",
                    "page: js error: ReferenceError: Can't find variable: missing"):
        assert len(tavelle.found(re.escape(message) + "$")) == 1

    (folder / "index.html").unlink()
    end_page(tavelle)
    tavelle.wait("load failed: .")
    assert len(tavelle.found("loaded: ")) == 1
    tavelle.add("Good", color_page("#008000"))
    tavelle.show("Good")
    tavelle.wait("loaded: ", count=2)
    # What can't be loaded leaves nothing of the page before, and does not keep the next from playing.
    (tavelle.library / "Odd/index.html").mkdir(parents=True)
    for color in (0, 0x008000):
        tavelle.show("Good" if color else "Odd")
        view.wait_for(color, (0, 0, 1280, 720))
    assert (len(tavelle.found("loaded: ")), len(tavelle.found("load failed: "))) == (3, 2)


def test_page_cannot_leave_its_window_and_has_no_rights_of_a_user(tavelle, view):
    """A wallpaper has nobody in front of it: what asks or opens something is refused and holds nothing up."""
    tavelle.play(HEAD + """text<script>
        window.wallpaper = {pause() {}, play() {
            getSelection().selectAllChildren(document.body);
            say(`rights ${navigator.userActivation.isActive} ${document.execCommand('copy')}`);
        }};
        alert('a'); say(`confirm ${confirm('b')} prompt ${prompt('c')} open ${open('index.html')}`);
        addEventListener('beforeunload', event => { event.preventDefault(); event.returnValue = 'stay'; });
    </script>""")
    tavelle.wait("page: confirm false prompt null open null")
    tavelle.wait("page: rights false false")
    assert len(view.wallpapers()) == len(view.property(view.root, "_NET_CLIENT_LIST")) == 1
    tavelle.add("Next", TALKING)
    tavelle.show("Next")
    tavelle.wait("page: new page")


SCREEN_SAVER = """<interface name="org.freedesktop.ScreenSaver"><method name="Inhibit"><arg type="s" direction="in"/>
<arg type="s" direction="in"/><arg type="u" direction="out"/></method></interface>"""


def test_sound_keeps_no_screen_awake_and_is_no_media_player(desktop, tavelle, video):
    folder = tavelle.add("Own", HEAD + """<video id="v" src="video.mp4" autoplay></video><script>
        v.onplaying = () => say('playing');
        v.onpause = () => say('stopped');
        v.ontimeupdate = () => { if (v.currentTime > 3) { say(`muted ${v.muted}`); v.ontimeupdate = null; } };
    </script>""")
    shutil.copy(video, folder)
    tavelle.store(wallpaper="Own")
    with BusService(desktop, "org.freedesktop.ScreenSaver", SCREEN_SAVER, "/org/freedesktop/ScreenSaver",
                    "/ScreenSaver") as saver:
        saver.answer = GLib.Variant("(u)", (1,))
        tavelle.start()
        tavelle.wait("page: muted false")
        assert not saver.calls
    assert not [name for name in tavelle.ask_bus("ListNames")[0] if "mpris" in name.lower()]
    tavelle.act("toggle-pause")
    tavelle.wait("page: stopped")
    tavelle.act("toggle-pause")
    tavelle.wait("page: playing", count=2)
