"""The bundled wallpapers, each in the real web view: what a page must do to be paused, scaled and drawn again."""

import json
import re

import pytest
from gi.repository import GdkPixbuf
from session import REPOSITORY, SAMPLES, HEAD

MONITORS = 1
FOLDER = REPOSITORY / "resources/Wallpapers"
PAGES = {name: (FOLDER / name / "index.html").read_text() for name in SAMPLES}
PAGES["of the documentation"] = re.search(
    r"```html\n(.*?)```", (REPOSITORY / "docs/writing-a-wallpaper.md").read_text(), re.DOTALL)[1]
WATCH = """<script>
const ask = window.requestAnimationFrame;
let onNextFrame = null;
window.requestAnimationFrame = callback => ask(onNextFrame = callback);
</script>"""
# Runs once the page stands, in one go, so that nothing the program does can come between two pictures.
PROBE = """<script>
function picture() {
  const canvas = document.querySelector('canvas'), copy = document.createElement('canvas');
  copy.width = canvas.width;
  copy.height = canvas.height;
  const pen = copy.getContext('2d');
  pen.drawImage(canvas, 0, 0);
  const pixels = new Uint32Array(pen.getImageData(0, 0, copy.width, copy.height).data.buffer), colors = new Set();
  let hash = 0;
  for (const each of pixels) {
    hash = Math.imul(hash ^ each, 0x01000193) + 1 | 0;
    colors.add(each);
  }
  return {hash, colors: colors.size, width: copy.width, height: copy.height};
}
function pictureAt(seconds) {
  wallpaper.renderAt(seconds);
  return picture();
}
// Plays up to a moment, frame by frame, and gives the picture that stands then.
function playedUpTo(seconds) {
  wallpaper.renderAt(seconds - 4);
  wallpaper.play();
  for (let frame = 1; frame <= 120; frame++) onNextFrame((seconds - 4 + frame / 30) * 1000);
  wallpaper.pause();
  return picture();
}
addEventListener('load', () => {
  wallpaper.pause();
  const pictures = [20.25, 400, 20.25, 400].map(pictureAt), played = playedUpTo(20.25);
  tavelle.set(30, 0.5);
  const half = pictureAt(20);
  tavelle.set(30, 1);
  say('probe ' + JSON.stringify({size: [innerWidth, innerHeight], pictures: [...pictures, played, pictureAt(20.25)], half}));
  const pause = wallpaper.pause, play = wallpaper.play;
  let before = null;
  wallpaper.pause = () => {
    pause.call(wallpaper);
    before = [picture().hash, tavelle.frames];
    // The frame that was already asked for still comes, with nothing to draw.
    setTimeout(() => say('rested ' + (picture().hash === before[0] && tavelle.frames <= before[1] + 1)), 700);
  };
  wallpaper.play = () => {
    play.call(wallpaper);
    const start = tavelle.frames;
    const count = setInterval(() => {
      if (tavelle.frames < start + 5) return;
      clearInterval(count);
      say('plays');
    }, 50);
  };
  wallpaper.play();
});
</script>"""


@pytest.mark.parametrize("name", PAGES)
def test_sample_draws_any_moment_again_rests_and_scales(tavelle, name):
    tavelle.play(HEAD + WATCH + PAGES[name] + PROBE, fps=30)
    probe = json.loads(tavelle.wait(r"page: probe (.*)")[1])
    early, late, *again = probe["pictures"]
    assert again == [early, late, early, early]
    assert early["hash"] != late["hash"] and early["colors"] > 100
    assert [early["width"], early["height"]] == probe["size"]
    half = probe["half"]
    assert [half["width"], half["height"]] == [side // 2 for side in probe["size"]] and half["colors"] > 100

    tavelle.wait("page: plays")
    tavelle.act("toggle-pause")
    assert tavelle.wait("page: rested (.*)")[1] == "true"
    tavelle.act("toggle-pause")
    tavelle.wait("page: plays", count=2)
    assert not tavelle.found("page: (js error|console.error)")


@pytest.mark.parametrize("meta, arguments, hour, minute", [("18:30", [], 18, 30), ("12.5", ["6:05"], 6, 5)])
def test_still_shows_the_hour_that_was_asked_for(tavelle, meta, arguments, hour, minute):
    folder = tavelle.add("Clock", f"""<!doctype html><meta name="still-moment" content="{meta}"><script>
window.wallpaper = {{pause() {{}}, play() {{}}, renderAt(seconds) {{
  const then = new Date(Math.round(performance.timeOrigin + seconds * 1000));
  document.documentElement.style.background = `rgb(${{then.getHours() * 10}}, ${{then.getMinutes() * 4}}, 0)`;
}}}};
</script>""")
    done = tavelle.run(folder, *arguments, "160x90", program=REPOSITORY / "tools/make-still")
    assert done.returncode == 0, done.stderr
    picture = GdkPixbuf.Pixbuf.new_from_file(str(folder / "still.jpg"))
    color = picture.get_pixels()[:3]
    assert all(abs(seen - wanted) <= 3 for seen, wanted in zip(color, (hour * 10, minute * 4, 0)))


def test_still_of_an_hour_that_no_day_has_is_refused(tavelle):
    done = tavelle.run(tavelle.add("Clock", ""), "24:00", program=REPOSITORY / "tools/make-still")
    assert done.returncode == 1 and "'24:00' is no moment" in done.stderr


@pytest.mark.parametrize("name", SAMPLES)
def test_sample_needs_nothing_beside_it_and_has_a_still(name):
    page = PAGES[name]
    assert f"<title>{name}</title>" in page and "://" not in page and "src=" not in page
    _, width, height = GdkPixbuf.Pixbuf.get_file_info(str(FOLDER / name / "still.jpg"))
    assert width >= 2560 and height >= 1440
