"""The bundled wallpapers, each in the real web view: what a page must do to be paused, scaled and drawn again."""

import re

import pytest
from gi.repository import GdkPixbuf
from session import REPOSITORY, SAMPLES, HEAD

MONITORS = 1
FOLDER = REPOSITORY / "resources/Wallpapers"
PAGES = {name: (FOLDER / name / "index.html").read_text() for name in SAMPLES}
PAGES["of the documentation"] = re.search(
    r"```html\n(.*?)```", (REPOSITORY / "docs/writing-a-wallpaper.md").read_text(), re.DOTALL)[1]
# Each look runs in one go, so that nothing the program does can come between two pictures.
PROBE = """<script>
const picture = () => {
  const {width, height} = document.querySelector('canvas'), pen = new OffscreenCanvas(width, height).getContext('2d');
  pen.drawImage(document.querySelector('canvas'), 0, 0);
  const pixels = new Uint32Array(pen.getImageData(0, 0, width, height).data.buffer);
  return {size: [width, height], pixels, hash: pixels.reduce((hash, each) => Math.imul(hash ^ each, 0x01000193) + 1 | 0)};
};
const pictureAt = seconds => { wallpaper.renderAt(seconds); return picture(); };
addEventListener('load', () => {
  const {pause, play} = wallpaper;
  pause.call(wallpaper);
  const [early, late, again] = [20.25, 400, 20.25].map(pictureAt);
  tavelle.set(30, 0.5);
  const half = pictureAt(20);
  tavelle.set(30, 1);
  const colors = Math.min(...[early, half].map(each => new Set(each.pixels).size));
  say(`probe sizes ${early.size} ${half.size}, same ${early.hash === again.hash}, ` +
      `changes ${early.hash !== late.hash}, colors ${colors > 100 ? 'many' : colors}`);
  wallpaper.pause = () => {
    pause.call(wallpaper);
    const {hash} = picture(), {frames} = tavelle;
    // The frame that was already asked for still comes, with nothing to draw.
    setTimeout(() => {
      const rests = picture().hash === hash && tavelle.frames <= frames + 1;
      say(`rests ${rests}, draws ${pictureAt(20.25).hash === early.hash}`);
    }, 700);
  };
  wallpaper.play = () => {
    play.call(wallpaper);
    const {frames} = tavelle, count = setInterval(() => {
      if (tavelle.frames < frames + 5) return;
      clearInterval(count);
      say('plays');
    }, 50);
  };
  wallpaper.play();
});
</script>"""


@pytest.mark.parametrize("name", PAGES)
def test_sample_draws_any_moment_again_rests_and_scales(tavelle, name):
    tavelle.play(HEAD + PAGES[name] + PROBE, fps=30)
    assert tavelle.wait("page: probe (.*)")[1] == "sizes 1280,720 640,360, same true, changes true, colors many"
    tavelle.wait("page: plays")
    tavelle.act("toggle-pause")
    assert tavelle.wait("page: rests (.*)")[1] == "true, draws true"
    tavelle.act("toggle-pause")
    tavelle.wait("page: plays", count=2)
    assert not tavelle.found("page: (js error|console.error)")


@pytest.mark.parametrize("name", SAMPLES)
def test_sample_needs_nothing_beside_it_and_has_a_still(name):
    page = PAGES[name]
    assert f"<title>{name}</title>" in page and "://" not in page and "src=" not in page
    _, width, height = GdkPixbuf.Pixbuf.get_file_info(str(FOLDER / name / "still.jpg"))
    assert width >= 2560 and height >= 1440
