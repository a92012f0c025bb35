"""pkexec_test.py BUILD RUN_WITH_RIGHTS: commands with administrator rights, authenticated for real."""

import subprocess

import world

RECORD = world.OWN / "record"
RECORDER = f"""#!/bin/sh
echo "$# $1 $(id -u) $(id -ru)" >{RECORD}
[ ! -e '{world.OWN}/failing script' ]
"""
GRANT, CANCEL, WRONG, NO_AGENT = world.PASSWORD, "", "wrong", None
GERMAN = "Zum Anhalten des Verwaltungsagenten WUXAgent müssen Sie sich ausweisen"


def attempt(command_line, answer, locale="C"):
    """What the program says, the prompts that were seen, and what the script recorded."""
    RECORD.unlink(missing_ok=True)
    # The shell waits for the agent to be registered for it before it becomes the program.
    process = subprocess.Popen(["/bin/sh", "-c", 'read -r go && exec "$@"', "sh", "run_with_rights",
                                command_line],
                               stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
    prompts = None
    if answer is not NO_AGENT:
        prompts = world.Prompts(process.pid, locale)
        prompts.answer(answer)
    verdict = process.communicate("go\n", timeout=60)[0].strip()
    return verdict, prompts.end() if prompts else [], RECORD.read_text() if RECORD.exists() else ""


def main(build, program):
    script = world.enter(build, program, RECORDER)
    generic = [("org.freedesktop.policykit.exec",
                f"Authentication is needed to run `{script}' as the super user", "me")]
    stop, start, restart = map(world.prompt, ("stop", "start", "restart"))
    rows = {
        "start granted": ("-start", GRANT, "true", start, "1 -start 0 0\n"),
        "stop granted": ("-stop", GRANT, "true", stop, "1 -stop 0 0\n"),
        "restart granted": ("-restart", GRANT, "true", restart, "1 -restart 0 0\n"),
        "cancelled": ("-stop", CANCEL, "false", stop, ""),
        "wrong password": ("-start", WRONG, "false", start, ""),
        "no agent": ("-start", NO_AGENT, "false", [], ""),
        "in German": ("-stop", CANCEL, "false", world.prompt("stop", GERMAN), ""),
        "a verb without an action": ("-status", CANCEL, "false", generic, ""),
        "missing script": ("-stop", GRANT, "false", [], ""),
        "failing script": ("-restart", GRANT, "false", restart, "1 -restart 0 0\n"),
    }
    failures = 0
    for name, (verb, answer, *expected) in rows.items():
        (world.OWN / name).touch()
        path = f"{script}.missing" if name == "missing script" else script
        got = attempt(f"{path} {verb}", answer, "de_DE.UTF-8" if name == "in German" else "C")
        if got != tuple(expected):
            failures += 1
            print(f"FAILED: {name}:\n     got {got}\nexpected {tuple(expected)}")
    print("all checks passed" if failures == 0 else f"{failures} checks failed")
    return failures > 0


if __name__ == "__main__":
    world.run(main)
