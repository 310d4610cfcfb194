"""A fresh Debian system in a folder, to install, build and run things in. It takes the rights of root, and mmdebstrap."""

import os
import pathlib
import platform
import re
import shutil
import subprocess
import sys

TOOLS = pathlib.Path(__file__).resolve().parent
USER = 1000
SUITE = platform.freedesktop_os_release()["VERSION_CODENAME"]
# Where others keep their own account of what was installed when.
ACCOUNTS = re.compile(r"(proc|sys|dev|tmp|run|home|root)/|var/(log|cache|lib/apt)/|var/lib/dpkg/[^/]*$")


class Failure(Exception):
    """Something that went wrong, in words."""


def require(condition, trouble):
    if not condition:
        raise Failure(trouble)


def run(*command, status=0, **options):
    """Runs a program to its end and gives what it said; it is a failure when its status is not the one expected."""
    options.setdefault("timeout", 300)
    done = subprocess.run([str(each) for each in command], stdin=subprocess.DEVNULL, stdout=subprocess.PIPE,
                          stderr=subprocess.STDOUT, text=True, errors="replace", check=False, **options)
    require(done.returncode == status, f"{' '.join(map(str, command))}: status {done.returncode}\n{done.stdout}")
    return done.stdout


class System:
    """A fresh Debian in a folder, with one user. What it mounts stays mounted: it wants mount and process spaces of its
    own, which `in_own_spaces` gives it."""

    def __init__(self, root, suite=None):
        """`suite` is a release's code name; without one it is that of the Debian that this runs on."""
        self.root = root
        self.suite = suite or SUITE
        self.home = root / "home/user"
        self.display = {}

    def make(self, in_memory=True):
        """Makes it, in memory where that is wished and there is plenty: package managers wait for the disk after each
        file. And enters it."""
        self.root.mkdir()
        free = os.sysconf("SC_AVPHYS_PAGES") * os.sysconf("SC_PAGE_SIZE")
        if in_memory and free > 6 << 30:
            run("mount", "-t", "tmpfs", "-o", f"mode=755,size={free // 4 * 3}", "tavelle", self.root)
        sources = run("apt-get", "indextargets", "--format", "deb $(SITE) $(RELEASE) $(COMPONENT)",
                      "Created-By: Packages", "Origin: Debian").splitlines()
        sources = sorted({each.replace(f" {SUITE}", f" {self.suite}") for each in sources})
        require(sources, "apt knows of no Debian mirror; has apt-get update been run?")
        run("mmdebstrap", "--mode=root", "--variant=minbase", "--skip=cleanup/apt/lists",
            "--dpkgopt=force-unsafe-io", self.suite, self.root, *sources)
        # No service is to start here.
        policy = self.root / "usr/sbin/policy-rc.d"
        policy.write_text("#!/bin/sh\nexit 101\n")
        policy.chmod(0o755)
        self.enter()
        self.as_root("useradd", "--uid", USER, "--create-home", "user")

    def enter(self):
        """Makes one that was made before ready for use."""
        for folder in ("proc", "sys", "dev"):
            run("mount", "--rbind", f"/{folder}", self.root / folder)
        shutil.copy("/etc/resolv.conf", self.root / "etc/resolv.conf")
        runtime = self.root / "run/user" / str(USER)
        shutil.rmtree(runtime, ignore_errors=True)
        runtime.mkdir(parents=True, mode=0o700)
        os.chown(runtime, USER, USER)

    def as_root(self, *command):
        environment = {"PATH": "/usr/sbin:/usr/bin:/sbin:/bin", "DEBIAN_FRONTEND": "noninteractive",
                       "LC_ALL": "C.UTF-8"}
        return run("chroot", self.root, *command, env=environment)

    def apt(self, *arguments):
        return self.as_root("apt-get", "--quiet", "--yes", "--no-install-recommends", *arguments)

    def command(self, *command):
        """How the user runs a program there."""
        runtime = f"/run/user/{USER}"
        environment = {"HOME": "/home/user", "PATH": "/usr/bin:/bin", "XDG_RUNTIME_DIR": runtime, "LC_ALL": "C.UTF-8",
                       "DBUS_SESSION_BUS_ADDRESS": f"unix:path={runtime}/bus"} | self.display
        return ["chroot", f"--userspec={USER}:{USER}", str(self.root), "env", "-i", "--chdir=/home/user",
                *[f"{name}={value}" for name, value in environment.items()], *map(str, command)]

    def run(self, *command, status=0):
        return run(*self.command(*command), status=status)

    def files(self):
        """All there is, but for what others keep their accounts in."""
        found = set()
        for folder, folders, files in os.walk(self.root):
            here = pathlib.Path(folder).relative_to(self.root)
            folders[:] = [each for each in folders if not ACCOUNTS.match(f"{here / each}/")]
            found.update(str(here / each) for each in folders + files if not ACCOUNTS.match(str(here / each)))
        return found

    def give(self, file, content):
        """Puts a file of the user's there."""
        file = self.home / file
        file.parent.mkdir(parents=True, exist_ok=True)
        file.write_bytes(content)
        for each in [file, *file.parents]:
            if each == self.home:
                break
            os.chown(each, USER, USER)


def make_package(suite, folder):
    """Makes a package of this tree on that release and gives its path; it lies in the folder, when the release is not
    the one that this runs on."""
    if suite == SUITE:
        made = subprocess.run([TOOLS / "make-package"], stdout=subprocess.PIPE, text=True, check=True)
        return made.stdout.rstrip("\n")
    there = "tools/install-deps build && cmake --preset release -DTAVELLE_WERROR=ON && mv $(tools/make-package) /bring"
    subprocess.run([TOOLS / "on-debian", "--bring", folder, suite, "sh", "-c", there], check=True)
    return next(pathlib.Path(folder).glob("*.deb"))


def in_own_spaces(program, *arguments, seconds):
    """Runs a Python program with mount and process spaces of its own, which end with it, and all that runs and is
    mounted in them. Gives its status."""
    command = ["unshare", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc", sys.executable, program]
    return subprocess.run([*command, *map(str, arguments)], stdin=subprocess.DEVNULL, timeout=seconds,
                          check=False).returncode
