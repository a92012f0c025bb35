"""pkexec_test.py BUILD RUN_WITH_RIGHTS: commands with administrator rights, as an ordinary user
gives them to a program and to pkexec itself, authenticated for real, on a real agent."""

import os
import pathlib
import resource
import shutil
import signal
import subprocess

import world
from world import agents, check, check_fate

GRANT, CANCEL, WRONG, NO_AGENT = world.PASSWORD, "", "wrong", None
GERMAN = "Zum Anhalten des Verwaltungsagenten WUXAgent müssen Sie sich ausweisen"
GENERAL = "Authentication is needed to run `{}' as the super user"
START, STOP, RESTART = map(world.prompt, ("start", "stop", "restart"))


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
    copy, link = world.OWN / "copy.sh", world.OWN / "link.sh"
    shutil.copy(script, copy)
    link.symlink_to(script)

    def general(path):
        return ("org.freedesktop.policykit.exec", GENERAL.format(path), "True")
    for name, arguments, answer, *expected, fate in (
            ("wrong password", f"{script} -start", WRONG, "false", [START], "none"),
            ("start granted", f"{script} -start", GRANT, "true", [START], "another"),
            ("restart granted", f"{script} -restart", GRANT, "true", [RESTART], "another"),
            ("in German", f"{script} -stop", CANCEL, "false", [(STOP[0], GERMAN, "True")],
             "the same"),
            ("no agent", f"{script} -stop", NO_AGENT, "false", [], "the same"),
            ("missing script", f"{script}.missing -stop", GRANT, "false", [], "the same"),
            ("failing script", f"{script} -status", GRANT, "false", [general(script)], "the same"),
            # A script that its user can write does not get the panel's words.
            ("user's own copy", f"{copy} -stop", CANCEL, "false", [general(copy)], "the same"),
            ("user's own link", f"{link} -stop", CANCEL, "false", [general(link)], "the same"),
            ("stop granted", f"{script} -stop", GRANT, "true", [STOP], "none")):
        before = agents()
        locale = "de_DE.UTF-8" if name == "in German" else "C"
        check(name, attempt(arguments, answer, locale), tuple(expected))
        check_fate(name, before, fate)


def soil():
    """What a process passes on to pkexec."""
    signal.signal(signal.SIGTERM, signal.SIG_IGN)
    signal.pthread_sigmask(signal.SIG_BLOCK, {signal.SIGUSR1})
    resource.setrlimit(resource.RLIMIT_NOFILE, (32, 4096))
    os.umask(0)


def check_hostile_caller(script):
    """A user who calls pkexec by hand, with traps wherever a shell or a program would look."""
    trap, sprung = world.OWN / "trap", world.OWN / "sprung"
    trap.mkdir()
    for name in ("sh", "bash", "env", "id", "readlink", "flock", "setsid", "prlimit", "sleep", "start-up"):
        (trap / name).write_text(f"#!/bin/sh\n: >{sprung}\n")
        (trap / name).chmod(0o755)
    environment = {
        "PATH": trap, "ENV": trap / "start-up", "BASH_ENV": trap / "start-up", "IFS": "/",
        "PS4": f"$(: >{sprung})", "SHELLOPTS": "xtrace", "LD_PRELOAD": trap / "sh",
        "LD_LIBRARY_PATH": trap, "GCONV_PATH": trap, "BASH_FUNC_exec%%": f"() {{ : >{sprung}; }}",
        "WUXAGENT_ENVIRONMENT": "clean"}
    before, prompts = agents(), world.Prompts(os.getpid())
    prompts.answer(GRANT)
    with (trap / "inherited").open("w") as inherited:
        process = subprocess.Popen(["/usr/bin/pkexec", "--disable-internal-agent", script, "-start"],
                                   env=environment, cwd=trap, preexec_fn=soil,
                                   pass_fds=[inherited.fileno()])
    check("hostile caller", (process.wait(60), prompts.end()), (0, [START]))
    check_fate("hostile caller", before, "another")
    check("trap sprung", sprung.exists(), False)
    found = "".join(pathlib.Path(f"/proc/{agents()[1]}/{file}").read_text()
                    for file in ("status", "limits"))
    for line in ("Umask: 0022", "SigBlk: 0000000000000000", "SigIgn: 0000000000000000",
                 "Max open files 1024"):
        check(f"{line} in {found}", line in " ".join(found.split()), True)
    check("stop afterwards", attempt(f"{script} -stop", GRANT, "C"), ("true", [STOP]))
    check_fate("stop afterwards", [], "none")


def main(build, program):
    script = world.enter(build, program)
    for path in (script, *script.parents):
        check(f"{path} is root's alone", (path.stat().st_uid, path.stat().st_mode & 0o022), (0, 0))
    check_program(script)
    check_hostile_caller(script)


if __name__ == "__main__":
    world.run(main)
