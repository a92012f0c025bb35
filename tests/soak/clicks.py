#!/usr/bin/python3
"""clicks.py CLICKS BUILD [SEED]: real clicks on the installed panel, by an ordinary user, with every end that
an authentication can have.

Each click makes one prompt, or none without an authentication agent. Whatever is done to the window while the
prompt is there does nothing, then and later. Afterwards the window tells what the process table says, no
process of the command is left, and the panel has no more descriptors than before. The first clicks are one
of each kind; the seed chooses the rest."""

import collections
import os
import pathlib
import random
import re
import subprocess
import sys
import time

TESTS = pathlib.Path(__file__).resolve().parents[1]
sys.path[1:1] = [str(TESTS / "rights"), str(TESTS / "panel"), str(TESTS.parent / "scripts")]
import world  # noqa: E402
from panel_input import Input  # noqa: E402
from panel_session import Desktop, Panel, wait_for  # noqa: E402
from world import agents, check, check_fate  # noqa: E402

ERRORS = world.OWN / "errors"
NO_AGENT_FOUND = "No authentication agent found"
TITLES = {"start": "Start Agent", "stop": "Stop Agent", "restart": "Restart Agent"}
WITHDRAWN = ("withdrawn",)


def processes(pattern):
    """The PIDs of the processes, ended ones as well, whose "name: command line" fits the pattern."""
    lines = subprocess.run(["ps", "-e", "-o", "pid=,comm=,args="], stdout=subprocess.PIPE,
                           text=True).stdout.splitlines()
    found = (re.match(r" *(\d+) +(\S+) +(.*)", line).groups() for line in lines)
    return [pid for pid, name, line in found if re.search(pattern, f"{name}: {line}")]


def command_processes():
    # Anywhere in its line: the script executes itself once more, through env.
    return processes(r"^pkexec:|^polkit-agent-he:|/WUXAgentControlPanel\.sh -")


class Clicks:
    def __init__(self, program, kill_as_root):
        self.program, self.kill_as_root = program, kill_as_root
        self.open()

    def open(self):
        # tests/panel looks for leaks, where it can say which are the toolkit's.
        self.panel = Panel(["/bin/sh", "-c", f'exec "$0" 2>>{ERRORS}', self.program],
                           env=dict(os.environ, ASAN_OPTIONS="detect_leaks=0"))
        self.descriptors = None

    def kill_panel(self):
        self.panel.process.kill()
        self.panel.process.wait()

    def restart_polkit(self):
        for pid in processes("^polkitd:"):
            self.kill_as_root(pid)
        wait_for("the end of polkitd", lambda: not processes("^polkitd:"))

    def click(self, number, verb, kind):
        before = agents()
        errors = ERRORS.read_text().count(NO_AGENT_FOUND)
        if kind == "polkitd restarted before":
            self.restart_polkit()
        prompts = world.Prompts(os.getpid() if kind == "no agent" else self.panel.process.pid)
        self.panel.press(TITLES[verb])
        if kind == "no agent":
            wait_for("pkexec's refusal", lambda: NO_AGENT_FOUND in ERRORS.read_text()[-500:]
                     and ERRORS.read_text().count(NO_AGENT_FOUND) > errors)
        else:
            wait_for("the prompt", prompts.seen, process=self.panel.process)
            way = Input.WAYS[number % len(Input.WAYS)]
            way(Input(self.panel))
            check("agents during the prompt", agents(), before)
            self.panel.press("Close")  # Its click would end after the prompt has.
            self.end_prompt(kind, prompts)
        self.check_end(verb, kind, before, prompts)
        check("refusals", ERRORS.read_text().count(NO_AGENT_FOUND) - errors, int(kind == "no agent"))

    def end_prompt(self, kind, prompts):
        script = []
        if kind in ("granted", "polkitd restarted before", "panel killed in the script"):
            prompts.answer(world.PASSWORD)
        elif kind == "wrong password":
            prompts.answer("wrong")
        elif kind == "cancelled":
            prompts.answer("")
        elif kind == "silent agent killed":
            prompts.process.kill()
        elif kind == "polkitd restarted at the prompt":
            self.restart_polkit()
        if kind == "panel killed in the script":
            script = wait_for("the script", lambda: processes(r": /bin/sh .*/WUXAgentControlPanel\.sh -"))
        if "panel killed" in kind:
            self.kill_panel()
            # While a process executes itself anew, its line is empty: the script is known by its PID.
            wait_for("the end of the command", lambda: not command_processes()
                     and not any(os.path.exists(f"/proc/{pid}") for pid in script))
            self.open()

    def check_end(self, verb, kind, before, prompts):
        wait_for("a state", lambda: self.panel.fields()["Status"] in ("Running", "Not running"),
                 process=self.panel.process)
        wait_for("no process of the command", lambda: not command_processes(), 5)
        time.sleep(0.2)  # for what might come later
        expected = [] if kind == "no agent" else [world.prompt(verb)]
        if kind == "panel killed at the prompt":
            expected.append(WITHDRAWN)
        check("prompts", prompts.end(), expected)

        works = kind in ("granted", "polkitd restarted before", "panel killed in the script")
        check_fate(verb, before, {"stop": "none"}.get(verb, "another") if works else "the same")
        pid = agents()[1] if agents() else "N/A"
        fields = self.panel.fields()
        check("the window", (fields["Status"], fields["PID"], self.panel.buttons()),
              ("Not running" if pid == "N/A" else "Running", pid,
               {"Start Agent" if pid == "N/A" else "Stop Agent": True, "Restart Agent": pid != "N/A",
                "About": True, "Copy Details": True, "Close": True}))
        now = len(os.listdir(f"/proc/{self.panel.process.pid}/fd"))
        check("descriptors", now, self.descriptors or now)
        self.descriptors = now


KINDS = ("granted", "wrong password", "cancelled", "silent agent killed", "no agent",
         "polkitd restarted before", "polkitd restarted at the prompt", "panel killed at the prompt",
         "panel killed in the script")


def main(count, build, seed="1"):
    # Polkitd is not the user's to end: somebody stays behind who may.
    root = subprocess.Popen(["/bin/sh", "-c", 'while read -r pid; do kill "$pid"; done'],
                            stdin=subprocess.PIPE, text=True)

    def kill_as_root(pid):
        print(pid, file=root.stdin, flush=True)

    chance, done, start = random.Random(int(seed)), collections.Counter(), time.monotonic()
    script = world.enter(build)
    ERRORS.touch()
    with Desktop():
        clicks = Clicks(script.parents[2] / "bin/WUXAgentControlPanel", kill_as_root)
        first = chance.sample(KINDS, len(KINDS))
        for number in range(int(count)):
            kind = first[number] if number < len(first) else chance.choice(KINDS)
            verb = chance.choice(("stop", "restart")) if agents() else "start"
            if kind == "panel killed in the script" and verb == "stop":
                verb = "restart"  # A stop would be over before the panel is.
            print(f"{number + 1}: {verb}, {kind}", file=sys.stderr)
            clicks.click(number, verb, kind)
            done[kind] += 1
        check("the panel's status", clicks.panel.close(), 0)
    print(f"{count} clicks in {time.monotonic() - start:.0f} s, seed {seed}: {dict(done)}")


if __name__ == "__main__":
    world.run(main)
