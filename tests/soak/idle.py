#!/usr/bin/python3
"""idle.py [SECONDS [BUILD]]: a panel that nobody touches does nothing at all. Opens it on X11, with the focus on a button
and in a field, and on Wayland, and lets all three stand for SECONDS (600): no thread of theirs wakes up in that time, and
none has set a timer that would wake it later. On Wayland it also has told the display whose icon is its own, and closes."""

import os
import pathlib
import signal
import subprocess
import sys
import time

SECONDS = float(sys.argv[1] if len(sys.argv) > 1 else 600)
ROOT = pathlib.Path(__file__).resolve().parents[2]
BUILD = pathlib.Path(sys.argv[2] if len(sys.argv) > 2 else ROOT / "build/dev")
SETTLING = 2  # seconds; after them everything that the start brought about is over
POLL, FOREVER = "7", 0xffffffff  # as an x86-64 has them
sys.path.insert(0, str(ROOT / "scripts"))

from panel_session import Desktop, Panel, wait_for  # noqa: E402


def open_panel(desktop, name, keys):
    """A panel on a display of its own, which DESKTOP ends."""
    environment = dict(os.environ, LC_ALL="C.UTF-8")
    if name == "wayland":
        environment.update(QT_QPA_PLATFORM="wayland", WAYLAND_DISPLAY="idle", WAYLAND_DEBUG="1")
        desktop._start(["weston", "--backend=headless-backend.so", "--socket=idle", "--no-config"])
        wait_for("the Wayland display", pathlib.Path(os.environ["XDG_RUNTIME_DIR"], "idle").exists)
    else:
        environment["DISPLAY"] = ":" + desktop._start_and_read(["Xvfb", "-noreset", "-displayfd"])
    panel = Panel(["/bin/sh", "-c", f'exec "$0" 2>{log(name)}', BUILD / "bin/WUXAgentControlPanel"], env=environment)
    desktop.processes.append(panel.process)
    if keys:
        subprocess.run(["xdotool", "search", "--sync", "--onlyvisible", "--name", "WUXAgent", "windowfocus", "--sync",
                        "key", *keys], env=environment, check=True)
    return panel


def log(name):
    return pathlib.Path(os.environ["XDG_RUNTIME_DIR"], name.replace(" ", "-") + ".log")


def tasks(process):
    return list(pathlib.Path(f"/proc/{process.pid}/task").iterdir())


def switches(process):
    """How often each of its threads has given up a processor or lost it, which says whether any has run."""
    return {task.name: [line for line in (task / "status").read_text().splitlines() if "_ctxt_switches:" in line]
            for task in tasks(process)}


def timers(process):
    """What its threads wait for in poll for a limited time only."""
    calls = [(task / "syscall").read_text().split() for task in tasks(process)]
    return [call for call in calls if call[0] == POLL and int(call[3], 16) & FOREVER != FOREVER]


failures = []
with Desktop() as desktop:
    opened = {name: open_panel(desktop, name, keys) for name, keys in (
        ("focus on a button", ["Tab", "shift+Tab"]), ("focus in a field", ["Tab"]), ("wayland", []))}
    panels = {name: panel.process for name, panel in opened.items()}
    time.sleep(SETTLING)
    before = {name: switches(panel) for name, panel in panels.items()}
    if os.uname().machine == "x86_64":
        failures += [f"{name}: a timer, {timers(panel)}" for name, panel in panels.items() if timers(panel)]
    time.sleep(SECONDS)
    failures += [f"{name}: woken, {before[name]}" for name, panel in panels.items() if switches(panel) != before[name]]
    for name, panel in panels.items():  # What is compared would show that a thread ran.
        panel.send_signal(signal.SIGSTOP)
        panel.send_signal(signal.SIGCONT)
        wait_for("a waking", lambda: switches(panel) != before[name])
    if 'set_app_id("WUXAgentControlPanel")' not in log("wayland").read_text():
        failures += ["wayland: no application id"]
    if opened["wayland"].close() != 0:
        failures += ["wayland: closed with another status"]
    print(f"{len(panels)} panels of {[len(threads) for threads in before.values()]} threads, {SECONDS:g} s", *failures,
          sep="\n")
sys.exit(bool(failures))
