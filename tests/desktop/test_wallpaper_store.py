"""The wallpaper store on the disk, synced by the real program: what it writes, and that nothing can leave half of it."""

import datetime
import os
import plistlib
import random
import resource
import subprocess
import time

import pytest
from session import BINARY, PATIENCE

OLD = "file:///old.jpg"
SYNCED = ["desktops: every Space now shows still.jpg", "updated"]
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


class Home:
    def __init__(self, folder):
        self.folder = folder
        self.store = folder / "Library/Application Support/com.apple.wallpaper/Store/Index.plist"
        self.backup = self.store.with_name("Index.before-tavelle.plist")
        self.store.parent.mkdir(parents=True)

    def command(self, image):
        environment = {key: value for key, value in os.environ.items() if "DISPLAY" not in key}
        return {"args": [BINARY, "--sync-spaces", image], "cwd": self.folder, "text": True, "stdin": subprocess.DEVNULL,
                "env": environment | {"HOME": str(self.folder)}}

    def sync(self, image="/still.jpg", **options):
        done = subprocess.run(**self.command(image), **options, capture_output=True, timeout=PATIENCE, check=True)
        assert done.stderr == ""
        return done.stdout.splitlines()

    def put(self, store, fmt=plistlib.FMT_XML):
        self.store.write_bytes(plistlib.dumps(store, fmt=fmt))

    def read(self):
        return plistlib.loads(self.store.read_bytes())

    def files(self):
        return sorted(each.name for each in self.store.parent.iterdir())


@pytest.fixture(name="home")
def fixture_home(tmp_path):
    return Home(tmp_path)


def test_rewrites_the_store_in_binary_form_and_keeps_all_else(home):
    before = a_store()
    home.put(before)
    home.store.chmod(0o640)
    original = home.store.read_bytes()
    start = datetime.datetime.now(datetime.timezone.utc).replace(tzinfo=None)
    assert home.sync("pictures/../still ä%.jpg") == ["desktops: every Space now shows still ä%.jpg", "updated"]

    after = home.read()
    record = after["SystemDefault"]["Desktop"]
    assert datetime.timedelta() <= record["LastSet"] - start < datetime.timedelta(seconds=PATIENCE)
    expected = entry(f"file://{home.folder}/still%20%C3%A4%25.jpg")["Desktop"]
    expected["LastSet"] = expected["LastUse"] = record["LastSet"]
    assert plistlib.loads(record["Content"]["Choices"][0].pop("Configuration")) == plistlib.loads(
        expected["Content"]["Choices"][0].pop("Configuration"))
    assert record == expected
    record = home.read()["SystemDefault"]["Desktop"]
    before["SystemDefault"] = {"Type": "individual", "Idle": {"x": -1}, "Desktop": record}
    for holder in [before, *before["Spaces"].values()]:
        holder["Displays"]["main"]["Desktop"] = record
    for space in before["Spaces"].values():
        space["Default"]["Desktop"] = record
    assert home.read() == before

    assert home.store.read_bytes().startswith(b"bplist00")
    assert home.store.stat().st_mode & 0o777 == 0o640
    assert home.backup.read_bytes() == original
    written = home.store.stat()
    assert home.sync("still ä%.jpg") == SAME
    now = home.store.stat()
    assert (now.st_ino, now.st_mtime_ns) == (written.st_ino, written.st_mtime_ns)
    assert home.files() == ["Index.before-tavelle.plist", "Index.plist"]


def test_leaves_a_store_alone_that_it_cannot_read(home):
    assert home.sync() == UNREADABLE
    assert home.files() == []
    damaged = plistlib.dumps(a_store(), fmt=plistlib.FMT_BINARY)[:-1]
    home.store.write_bytes(damaged)
    assert home.sync() == UNREADABLE
    assert home.files() == ["Index.plist"] and home.store.read_bytes() == damaged
    home.store.unlink()
    os.mkfifo(home.store)
    assert home.sync() == UNREADABLE


def test_full_disk_leaves_the_old_store_whole(home):
    home.put(a_store(300))
    before = home.store.read_bytes()

    # Room for less than the new store needs; the library's own start needs none. Python ignores the signal, and what it
    # starts would not.
    def small():
        resource.setrlimit(resource.RLIMIT_FSIZE, (20_000, 20_000))

    lines = home.sync(preexec_fn=small, restore_signals=False)
    assert len(lines) == 2 and lines[0].startswith(UNWRITABLE) and lines[0].endswith(": File too large")
    assert lines[1] == "already the same everywhere"
    assert home.store.read_bytes() == before
    assert home.files() == ["Index.plist"], "nothing half-written stays behind"


def test_death_at_any_moment_leaves_the_old_store_or_the_new_one(home):
    home.put(a_store(100), plistlib.FMT_BINARY)
    assert home.sync("/0.jpg")[-1] == "updated"
    begin = time.monotonic()
    assert home.sync("/1.jpg")[-1] == "updated"
    took = time.monotonic() - begin
    dice = random.Random(4711)
    current = "file:///1.jpg"
    outcomes = {"old": 0, "new": 0}
    for i in range(300):
        image = f"file:///{i % 2}.jpg"
        process = subprocess.Popen(**home.command(image.removeprefix("file://")), stdout=subprocess.DEVNULL)
        try:
            time.sleep(dice.uniform(0, took))
        finally:
            process.kill()
            process.wait(PATIENCE)
        pictures = set(shown(home.read()))
        assert len(pictures) == 1 and pictures <= {current, image}, f"round {i}"
        if current != image:
            outcomes["new" if pictures == {image} else "old"] += 1
        current = pictures.pop()
    assert min(outcomes.values()) > 20, f"killed at too few moments: {outcomes}"
    assert home.sync("/done.jpg")[-1] == "updated"
    assert set(shown(home.read())) == {"file:///done.jpg"}
