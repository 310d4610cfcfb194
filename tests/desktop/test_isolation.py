"""Which files a page may read: those of its own folder and no other, however it asks and however it spells them."""

import json
import shutil
import subprocess
import wave
from urllib.parse import quote

import pytest
from session import HEAD

MONITORS = 1
LOADERS = """<script>
const element = (name, address, loaded) => new Promise(resolve => document.body.append(Object.assign(
  document.createElement(name), {[loaded]: () => resolve(true), onerror: () => resolve(false), muted: true,
                                 preload: 'auto', src: address})));
const frame = (address, patience) => new Promise(resolve => {
  const it = document.createElement('iframe');
  addEventListener('message', event => { if (event.source === it.contentWindow) resolve(true); });
  // The engine tells nobody that it has kept a page from a frame.
  if (patience) setTimeout(() => resolve(false), patience);
  it.src = address;
  document.body.append(it);
});
const ways = {
  png: address => element('img', address, 'onload'),
  js: address => element('script', address, 'onload'),
  wav: address => element('video', address, 'onloadeddata'),
  html: frame,
  txt: address => fetch(address).then(answer => answer.text()).then(text => text.length > 0, () => false),
};
const readable = async (addresses, patience) => {
  const tries = addresses.flatMap(address => Object.keys(ways).map(way => [way, address.replace('EXT', way)]));
  const read = await Promise.all(tries.map(([way, address]) => ways[way](address, patience)));
  return JSON.stringify(tries.filter((each, index) => read[index]).map(each => each[1]).sort());
};
</script><body>"""
WAYS = ["png", "js", "wav", "html", "txt"]
OUTSIDE = "window.webkit.messageHandlers.log.postMessage('OUTSIDE')"


def fill(folder, name):
    """One file for each way to read it."""
    folder.mkdir(parents=True, exist_ok=True)
    subprocess.run(["convert", "-size", "8x8", "xc:red", folder / f"{name}.png"], check=True)
    with wave.open(str(folder / f"{name}.wav"), "wb") as sound:
        sound.setparams((1, 2, 8000, 8000, "NONE", ""))
        sound.writeframes(bytes(16000))
    (folder / f"{name}.js").write_text("1")
    (folder / f"{name}.txt").write_text("text")
    (folder / f"{name}.html").write_text("<script>parent.postMessage('read', '*')</script>")


@pytest.mark.parametrize("place", ["in the library", "linked from elsewhere"])
def test_pages_read_their_own_folder_only(tavelle, place):
    name = "My.Wall+(1) [x]"
    own, other, alike = (tavelle.library / each for each in (name, "Other", name.replace(".", "x")))
    if place == "linked from elsewhere":
        elsewhere = tavelle.home / "elsewhere"
        elsewhere.mkdir()
        tavelle.library.mkdir(parents=True)
        own.symlink_to(elsewhere)
    fill(own, "own")
    shutil.copytree(own, own / "sub")
    shutil.copytree(own / "sub", own / "plain")
    for folder in (other, alike, tavelle.library / (name + "2")):
        fill(folder, "s")
    (other / "index.html").write_text(f"<script>{OUTSIDE}</script>")
    (own / "out").symlink_to(other)
    strange = "-[^o]+t é'"
    (own / "sub" / strange).symlink_to("../../Other" if place == "in the library" else other)
    (own / "sub/out").symlink_to(other)
    (own / "link").symlink_to("plain")
    (own / "alias").symlink_to("sub")
    for way in WAYS:
        (own / f"leak.{way}").symlink_to(other / f"s.{way}")
        (own / f"kept.{way}").symlink_to(f"own.{way}")

    inside = ["own.EXT", "sub/own.EXT", "sub/../own.EXT", "%6fwn.EXT?x=..#../y", "kept.EXT", "link/own.EXT"]
    outside = ["sub/../../Other/s.EXT", "%2e%2e/Other/s.EXT", "..%2FOther/s.EXT", "..%5COther/s.EXT", "..\\Other/s.EXT",
               f"file://localhost{other}/s.EXT", f"../{alike.name}/s.EXT", f"../{name}2/s.EXT", "/etc/passwd?.EXT",
               "o%75%74/s.EXT", "./out//s.EXT", "sub/.//out/s.EXT", "leak%2eEXT", "leak.EXT?x", "leak.EXT#x",
               "leak.EXT%00x", f"s%75b/{quote(strange, safe='')}/s.EXT", "alias/out/s.EXT", f"alias/{strange}/s.EXT"]
    moves = ["../Other/index.html", "..%2FOther/index.html", "out/index.html", "%6fut/index.html", "file:///etc/passwd",
             (other / "index.html").as_uri()]
    tavelle.add(name, HEAD + LOADERS + f"""<script>
    (async () => {{
      say('inside ' + await readable({json.dumps(inside)}));
      say('outside ' + await readable({json.dumps(outside)}, 3000));
      for (const address of {json.dumps(moves)}) {{
        location.href = address;
        await new Promise(resolve => setTimeout(resolve, 200));
      }}
      say('stayed');
    }})();</script>""")
    tavelle.add("Next", HEAD + LOADERS + f"""<script>
      readable(['own.EXT', '../{name}/own.EXT'], 3000).then(read => say('next ' + read));</script>""")
    fill(tavelle.library / "Next", "own")
    tavelle.store(wallpaper=name)
    tavelle.start()

    read = json.loads(tavelle.wait("page: inside (.*)")[1])
    assert read == sorted(each.replace("EXT", way) for each in inside for way in WAYS)
    assert json.loads(tavelle.wait("page: outside (.*)")[1]) == []
    tavelle.wait("page: stayed")
    assert not tavelle.found("page: OUTSIDE") and len(tavelle.found("loaded: ")) == 1
    tavelle.show("Next")
    assert json.loads(tavelle.wait("page: next (.*)")[1]) == sorted(f"own.{way}" for way in WAYS)
