"""pkexec_test.py BUILD RUN_WITH_RIGHTS: commands with administrator rights, as an ordinary user
gives them: to the program and to the installed panel, authenticated for real, on a real agent."""

import os
import pathlib
import subprocess
import sys

import world

sys.path.insert(0, str(pathlib.Path(__file__).parents[2] / "scripts"))
from panel_session import Desktop, Panel, wait_for  # noqa: E402

GRANT, CANCEL, WRONG, NO_AGENT = world.PASSWORD, "", "wrong", None
PREFIX = "org.wuxagent.controlpanel."
MESSAGE = "Authentication is required to {} the WUXAgent management agent"
GERMAN = "Zum Anhalten des Verwaltungsagenten WUXAgent müssen Sie sich ausweisen"
GENERIC = "Authentication is needed to run `{}' as the super user"
START, STOP, RESTART = ((PREFIX + verb, MESSAGE.format(verb), "True")
                        for verb in ("start", "stop", "restart"))
# What becomes of the agent, by the users and PIDs of the agents before and after.
FATES = {"none": lambda before, after: not after,
         "the same": lambda before, after: after == before != [],
         "another": lambda before, after: (after[:1], len(after)) == (["root"], 2)
         and after != before}


def agents():
    return subprocess.run(["ps", "-C", "WUXAgent", "-o", "user=,pid="], stdout=subprocess.PIPE,
                          text=True).stdout.split()


def check(what, got, expected):
    if got != expected:
        sys.exit(f"FAILED: {what}:\n     got {got}\nexpected {expected}")


def attempt(command_line, answer, locale):
    """What the program says, and the prompts that were seen."""
    # The shell waits for the agent to be registered for it before it becomes the program.
    process = subprocess.Popen(["/bin/sh", "-c", 'read -r go && exec "$@"', "sh", "run_with_rights",
                                command_line],
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    # Without an agent of its own: the one that stands by is another process's.
    prompts = world.Prompts(os.getpid() if answer is NO_AGENT else process.pid, locale)
    prompts.answer(answer or "")
    return process.communicate("go\n", timeout=60)[0].strip(), prompts.end()


def check_program(script):
    generic = ("org.freedesktop.policykit.exec", GENERIC.format(script), "True")
    for name, arguments, answer, *expected, fate in (
            ("wrong password", " -start", WRONG, "false", [START], "none"),
            ("start granted", " -start", GRANT, "true", [START], "another"),
            ("restart granted", " -restart", GRANT, "true", [RESTART], "another"),
            ("in German", " -stop", CANCEL, "false", [(STOP[0], GERMAN, "True")], "the same"),
            ("no agent", " -stop", NO_AGENT, "false", [], "the same"),
            ("missing script", ".missing -stop", GRANT, "false", [], "the same"),
            ("failing script", " -status", GRANT, "false", [generic], "the same"),
            ("stop granted", " -stop", GRANT, "true", [STOP], "none")):
        before = agents()
        locale = "de_DE.UTF-8" if name == "in German" else "C"
        check(name, attempt(f"{script}{arguments}", answer, locale), tuple(expected))
        check(f"{name}: {before}, {agents()}, {fate}", FATES[fate](before, agents()), True)


def check_panel(program):
    # tests/panel looks for leaks, where it can say which are the toolkit's.
    panel = Panel([program], env=dict(os.environ, ASAN_OPTIONS="detect_leaks=0"))
    for title, answer, prompt, status, fate in (
            ("Start Agent", GRANT, START, "Running", "another"),
            ("Stop Agent", CANCEL, STOP, "Running", "the same"),
            ("Stop Agent", GRANT, STOP, "Not running", "none")):
        before = agents()
        prompts = world.Prompts(panel.process.pid)
        panel.press(title)
        wait_for("the prompt", prompts.seen)
        check("agents during the prompt", agents(), before)
        panel.press("Close")  # Its click would end after the prompt has.
        prompts.answer(answer)
        panel.wait_for_field("Status", status)
        check(title, prompts.end(), [prompt])
        check(f"{title}: {before}, {agents()}, {fate}", FATES[fate](before, agents()), True)
    check("the panel's status", panel.close(), 0)


def main(build, program):
    script = world.enter(build, program)
    for path in (script, *script.parents):
        check(f"{path} is root's alone", (path.stat().st_uid, path.stat().st_mode & 0o022), (0, 0))
    check_program(script)
    with Desktop():
        check_panel(script.parents[2] / "bin/WUXAgentControlPanel")


if __name__ == "__main__":
    world.run(main)
