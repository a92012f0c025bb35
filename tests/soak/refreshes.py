#!/usr/bin/python3
"""refreshes.py [REFRESHES [COMMANDS [BUILD]]]: one panel process keeps nothing of what it has done. Real clicks start and
stop the agent by the helper script COMMANDS (500) times; then, with a script that does nothing, they make the window
look again until it has done so REFRESHES (100,000) times. After that the panel has the descriptors and the threads
that it had after warming up, and no more than 1 MiB of memory in addition. Run it in a sandbox (in_sandbox)."""

import ctypes
import os
import pathlib
import select
import shutil
import subprocess
import sys
import tempfile
import time

REFRESHES = int(sys.argv[1] if len(sys.argv) > 1 else 100000)
COMMANDS = int(sys.argv[2] if len(sys.argv) > 2 else 500)
ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(sys.argv[3] if len(sys.argv) > 3 else ROOT / "build/dev")
sys.path.insert(0, str(ROOT / "scripts"))

from panel_session import Atspi, Desktop, Panel  # noqa: E402
from Xlib import X, display as xdisplay  # noqa: E402
from Xlib.ext import xtest  # noqa: E402

NAME = "WUXAgentControlPanel"
BUNDLE = pathlib.Path("/Library/WUXAgent/WUXAgent.app")
IN_CLOSE_NOWRITE, EVENT = 0x10, 16  # bytes


class Clicks:
    """Real ones on a button. A refresh reads the version file once: it is over when that has been closed."""

    def __init__(self, panel):
        self.process = panel.process
        libc = ctypes.CDLL(None)
        self.inotify = libc.inotify_init()
        libc.inotify_add_watch(self.inotify, os.fsencode(BUNDLE / "Contents/version.plist"), IN_CLOSE_NOWRITE)
        self.server = xdisplay.Display()
        box = Atspi.Component.get_extents(panel.button("Start Agent"), Atspi.CoordType.SCREEN)
        xtest.fake_input(self.server, X.MotionNotify, x=box.x + box.width // 2, y=box.y + box.height // 2)

    def click(self, seconds):
        """Returns the number of refreshes. A click that comes before the last one is over is dropped: another one."""
        while self.process.poll() is None:
            xtest.fake_input(self.server, X.ButtonPress, 1)
            xtest.fake_input(self.server, X.ButtonRelease, 1)
            self.server.sync()
            if select.select([self.inotify], [], [], seconds)[0]:
                time.sleep(0.002)  # The rest of the refresh.
                return len(os.read(self.inotify, 4096)) // EVENT
        raise SystemExit("FAILED: the panel ended")

    def refresh(self, times):
        while times > 0:
            times -= self.click(0.03)

    def start_and_stop(self, commands):
        for i in range(commands):
            self.click(10)
            runs = subprocess.run(["pgrep", "-x", "WUXAgent"], stdout=subprocess.DEVNULL).returncode == 0
            if runs != (i % 2 == 0):
                raise SystemExit(f"FAILED: after command {i} the agent {'runs' if runs else 'does not run'}")


def state(pid):
    """The numbers of descriptors and threads, and the memory in KiB: what is its own, wherever the kernel keeps it. Pages
    of files come and go as the kernel pleases."""
    time.sleep(1)
    process = pathlib.Path("/proc", str(pid))
    rows = dict(row.split()[:2] for row in (process / "smaps_rollup").read_text().splitlines()[1:])
    memory = int(rows["Anonymous:"]) + int(rows["Swap:"])
    return (len(os.listdir(process / "fd")), len(os.listdir(process / "task"))), memory


def soak(panel, script):
    clicks = Clicks(panel)
    real = script.read_bytes()
    clicks.start_and_stop(2)
    script.write_text("#!/bin/sh\n")
    clicks.refresh(min(500, REFRESHES))
    before, memory = state(panel.process.pid)
    script.write_bytes(real)
    clicks.start_and_stop(COMMANDS)
    script.write_text("#!/bin/sh\n")
    clicks.refresh(REFRESHES)
    after, more = state(panel.process.pid)
    print(f"{COMMANDS} starts and stops, {REFRESHES} refreshes: descriptors and threads {before} before, {after} after;"
          f" {more - memory} KiB more memory", flush=True)
    # A sanitizer keeps freed memory to find late uses of it.
    grows = b"__asan" not in (BUILD / "bin" / NAME).read_bytes() and more - memory > 1024
    if before != after or grows or panel.fields()["Status"] != "Not running":
        raise SystemExit("FAILED: the panel is not as it was")


with Desktop(), tempfile.TemporaryDirectory() as name:
    folder = pathlib.Path(name)
    for part in ("bin", "share"):
        shutil.copytree(BUILD / part, folder / part)
    shutil.copytree(BUILD / "sample/WUXAgent.app", BUNDLE)
    panel = Panel([folder / "bin" / NAME], env=dict(os.environ, LC_ALL="C.UTF-8"))
    try:
        soak(panel, folder / "share" / NAME / f"{NAME}.sh")
    finally:
        panel.process.kill()
        panel.process.wait()
        shutil.rmtree(BUNDLE)
