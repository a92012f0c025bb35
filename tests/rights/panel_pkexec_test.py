"""panel_pkexec_test.py BUILD: the installed panel and its own helper script, as an ordinary
user meets them: pressed through the accessibility bus, authenticated for real, on a real agent."""

import pathlib
import subprocess
import sys
import time

import world

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "scripts"))
from panel_session import Desktop, Panel, wait_for  # noqa: E402

GRANT, CANCEL, WRONG = world.PASSWORD, "", "wrong"
# The button, what the status says meanwhile, the verb, the answer; what becomes of the agent.
STEPS = [
    ("Start Agent", "Starting", "start", WRONG, "none"),
    ("Start Agent", "Starting", "start", GRANT, "another"),
    ("Stop Agent", "Stopping", "stop", CANCEL, "the same"),
    ("Restart Agent", "Restarting", "restart", WRONG, "the same"),
    ("Restart Agent", "Restarting", "restart", GRANT, "another"),
    ("Stop Agent", "Stopping", "stop", GRANT, "none"),
]


def agents():
    """PID, owner and start time of each process by the agent's name."""
    found = []
    for status in pathlib.Path("/proc").glob("[0-9]*/status"):
        try:
            lines = dict(line.split(":\t", 1) for line in status.read_text().splitlines())
            if lines["Name"] == "WUXAgent":
                start = (status.parent / "stat").read_text().split(")")[-1].split()[19]
                found.append((status.parent.name, lines["Uid"].split()[:2], start))
        except OSError:
            pass  # It has ended meanwhile.
    return found


def check(what, got, expected):
    if got != expected:
        raise AssertionError(f"{what}: {got!r} instead of {expected!r}")


def check_step(panel, title, meanwhile, verb, answer, fate, before):
    prompts = world.Prompts(panel.process.pid)
    panel.press(title)
    wait_for("the prompt", prompts.seen)
    check("status", panel.fields()["Status"], meanwhile)
    for button, enabled in [*panel.buttons().items(), (title, True)]:
        if enabled:
            panel.press(button)
    subprocess.run(["xdotool", "key", "Escape", "key", "space"], check=True)
    time.sleep(0.3)
    check("status after clicks", panel.fields()["Status"], meanwhile)
    check("agents during the prompt", agents(), before)

    panel.press("Close")  # Its click would end after the prompt has.
    prompts.answer(answer)
    wait_for("the end of the command",
             lambda: panel.fields()["Status"] in ("Running", "Not running"), process=panel.process)
    time.sleep(0.3)
    check("prompts", prompts.end(), world.prompt(verb))
    after = agents()
    check(f"{after} after {before}, {fate}", True, {
        "none": not after, "the same": after == before != [],
        "another": [owner for _, owner, _ in after] == [["0", "0"]] and after != before}[fate])
    fields = panel.fields()
    check("fields", (fields["Status"], fields["PID"], fields["Version"]),
          ("Running", after[0][0], "9.1.2") if after else ("Not running", "N/A", "9.1.2"))
    check("buttons", panel.buttons(), {"Stop Agent" if after else "Start Agent": True,
                                       "Restart Agent": bool(after), "Close": True})
    return after


def main(build):
    script = world.enter(build)
    for path in (script, *script.parents):
        check(f"{path} is root's alone", (path.stat().st_uid, path.stat().st_mode & 0o022), (0, 0))

    with Desktop():
        panel = Panel([script.parents[2] / "bin/WUXAgentControlPanel"])
        subprocess.run(["xdotool", "search", "--name", "WUXAgent Control Panel", "windowfocus"],
                       check=True)
        state = []
        for number, step in enumerate(STEPS):
            print(f"step {number}: {', '.join(step[:3])}: {step[4]}", flush=True)
            state = check_step(panel, *step, state)
        subprocess.run(["xdotool", "key", "Escape"], check=True)  # It closes now, and only now.
        check("the panel's status", panel.wait_for_end(), 0)
    print("all checks passed")


if __name__ == "__main__":
    world.run(main)
