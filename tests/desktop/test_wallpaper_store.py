"""The wallpaper store on the disk, synced by the real program: what it writes, and that nothing can leave half of it."""

import datetime
import os
import plistlib
import random
import time

import pytest
from session import BINARY, PATIENCE

MONITORS = 1
OLD = "file:///old.jpg"
SAME = ["already the same everywhere"]
UNREADABLE = ["desktops: couldn't read the wallpaper store", *SAME]
UNWRITABLE = "desktops: couldn't update the wallpaper store: "


def choice(address):
    return {"Configuration": plistlib.dumps({"type": "imageFile", "url": {"relative": address}},
                                            fmt=plistlib.FMT_BINARY),
            "Files": [], "Provider": "com.apple.wallpaper.choice.image"}


def entry(address):
    then = datetime.datetime(2024, 2, 3, 4, 5, 6)
    return {"Type": "individual", "Idle": {"a": 2**64 - 1}, "Desktop": {
        "Content": {"Choices": [choice(address)], "Shuffle": "$null", "Größe": [1.5, b"\0", {}]},
        "LastSet": then, "LastUse": then}}


def a_store(spaces=2, address=OLD):
    return {"SystemDefault": {"Type": "linked", "Linked": {"x": -1}, "Other": True}, "Displays": {"main": entry(address)},
            "Spaces": {f"é {i}": {"Default": entry(address), "Displays": {"main": entry(address), "odd": "text"}}
                       for i in range(spaces)}, "Unknown": {"": [datetime.datetime(2001, 1, 1), False]}}


def shown(value):
    """The addresses of all images in the store."""
    if isinstance(value, dict):
        for key, each in value.items():
            yield from [plistlib.loads(each)["url"]["relative"]] if key == "Configuration" else shown(each)
    elif isinstance(value, list):
        for each in value:
            yield from shown(each)


class Store:
    def __init__(self, tavelle):
        self.tavelle = tavelle
        self.file = tavelle.store_file
        self.folder = self.file.parent
        self.folder.mkdir(parents=True)

    def sync(self, image="/still.jpg", **options):
        return self.lines_of("--sync-spaces", image, **options)

    def lines_of(self, *arguments, **options):
        done = self.tavelle.run(*arguments, DISPLAY="", **options)
        assert (done.returncode, done.stderr) == (0, "")
        return done.stdout.splitlines()

    def put(self, store, fmt=plistlib.FMT_XML):
        self.file.write_bytes(plistlib.dumps(store, fmt=fmt))

    def read(self):
        return plistlib.loads(self.file.read_bytes())

    def files(self):
        return sorted(each.name for each in self.folder.iterdir())


@pytest.fixture(name="store")
def fixture_store(tavelle):
    return Store(tavelle)


def test_rewrites_the_store_in_binary_form_and_keeps_all_else(tavelle, store):
    before = a_store()
    store.put(before)
    store.file.chmod(0o640)
    original = store.file.read_bytes()
    start = datetime.datetime.now(datetime.timezone.utc).replace(tzinfo=None)
    lines = store.sync("pictures/../still ä%.jpg", cwd=tavelle.home)
    assert lines == ["desktops: every Space now shows still ä%.jpg", "updated"]

    after = store.read()
    record = after["SystemDefault"]["Desktop"]
    assert datetime.timedelta() <= record["LastSet"] - start < datetime.timedelta(seconds=PATIENCE)
    expected = entry(f"file://{tavelle.home}/still%20%C3%A4%25.jpg")["Desktop"]
    expected["LastSet"] = expected["LastUse"] = record["LastSet"]
    assert plistlib.loads(record["Content"]["Choices"][0].pop("Configuration")) == plistlib.loads(
        expected["Content"]["Choices"][0].pop("Configuration"))
    assert record == expected
    record = store.read()["SystemDefault"]["Desktop"]
    before["SystemDefault"] = {"Type": "individual", "Idle": {"x": -1}, "Desktop": record}
    for holder in [before, *before["Spaces"].values()]:
        holder["Displays"]["main"]["Desktop"] = record
    for space in before["Spaces"].values():
        space["Default"]["Desktop"] = record
    assert store.read() == before

    assert store.file.read_bytes().startswith(b"bplist00")
    assert store.file.stat().st_mode & 0o777 == 0o640
    assert (store.folder / "Index.before-tavelle.plist").read_bytes() == original
    written = store.file.stat()
    assert store.sync("still ä%.jpg", cwd=tavelle.home) == SAME
    now = store.file.stat()
    assert (now.st_ino, now.st_mtime_ns) == (written.st_ino, written.st_mtime_ns)
    assert store.files() == ["Index.before-tavelle.plist", "Index.plist"]


def test_leaves_a_store_alone_that_it_cannot_read(store):
    assert store.sync() == UNREADABLE
    assert store.files() == []
    damaged = plistlib.dumps(a_store(), fmt=plistlib.FMT_BINARY)[:-1]
    store.file.write_bytes(damaged)
    assert store.sync() == UNREADABLE
    assert store.files() == ["Index.plist"] and store.file.read_bytes() == damaged
    store.file.unlink()
    os.mkfifo(store.file)
    assert store.sync() == UNREADABLE


def test_no_image_at_all_changes_nothing(store):
    store.put(a_store())
    before = store.file.read_bytes()
    lines = store.sync("")  # as from a script's unset variable
    assert len(lines) == 2 and lines[0].startswith("desktops: couldn't tell which image is meant: ")
    assert lines[1] == "already the same everywhere"
    assert store.file.read_bytes() == before


def test_full_disk_leaves_the_old_store_whole(store):
    store.put(a_store(300))
    before = store.file.read_bytes()
    # Room for less than the new store needs; the library's own start needs none.
    lines = store.lines_of("-c", 'trap "" XFSZ; ulimit -f 40; exec "$0" --sync-spaces /still.jpg', BINARY, program="sh")
    assert len(lines) == 2 and lines[0].startswith(UNWRITABLE) and lines[0].endswith(": File too large")
    assert lines[1] == "already the same everywhere"
    assert store.file.read_bytes() == before
    assert store.files() == ["Index.plist"], "nothing half-written stays behind"


def test_death_at_any_moment_leaves_the_old_store_or_the_new_one(tavelle, store):
    store.put(a_store(100), plistlib.FMT_BINARY)
    assert store.sync("/0.jpg")[-1] == "updated"
    begin = time.monotonic()
    assert store.sync("/1.jpg")[-1] == "updated"
    took = time.monotonic() - begin
    dice = random.Random(4711)
    current = "file:///1.jpg"
    outcomes = {"old": 0, "new": 0}
    for i in range(300):
        image = f"file:///{i % 2}.jpg"
        tavelle.start("--sync-spaces", image.removeprefix("file://"), DISPLAY="")
        process, tavelle.process = tavelle.process, None
        time.sleep(dice.uniform(0, took))
        process.kill()
        process.wait(PATIENCE)
        pictures = set(shown(store.read()))
        assert len(pictures) == 1 and pictures <= {current, image}, f"round {i}"
        if current != image:
            outcomes["new" if pictures == {image} else "old"] += 1
        current = pictures.pop()
    assert min(outcomes.values()) > 20, f"killed at too few moments: {outcomes}"
    assert store.sync("/done.jpg")[-1] == "updated"
    assert set(shown(store.read())) == {"file:///done.jpg"}
