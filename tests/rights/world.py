"""A world to throw away, in which an ordinary user meets the real authentication.

The machine as it is lies below an overlay in a mount, network and process namespace; the panel is
installed in it, the agent's bundle at its place, and a system bus and a user with a password of its
own are there. Nothing of it remains."""

import os
import pathlib
import pwd
import shutil
import subprocess
import sys
import xml.etree.ElementTree

PASSWORD = "an agent's Secret 1"
USER = "wuxtester"
OWN = pathlib.Path("/run/own")  # the user's own folder
NAMESPACES = ["unshare", "--mount", "--net", "--pid", "--fork", "--kill-child", "--mount-proc"]


def skip(reason):
    print(f"SKIPPED: {reason}")
    sys.exit(77)


def mount(*arguments):
    if subprocess.run(["mount", *arguments]).returncode != 0:
        skip(f"this machine does not mount {arguments[-1]}")


def prompt(verb):
    """What a prompt for one of the script's verbs shows (see Prompts.seen)."""
    return (f"org.wuxagent.controlpanel.{verb}",
            f"Authentication is required to {verb} the WUXAgent management agent", "True")


def agents():
    """User and PID of each agent, in one list."""
    return subprocess.run(["ps", "-C", "WUXAgent", "-o", "user=,pid="], stdout=subprocess.PIPE,
                          text=True).stdout.split()


# What becomes of the agent, by the agents before and after.
FATES = {"none": lambda before, after: not after,
         "the same": lambda before, after: after == before,
         "another": lambda before, after: (after[:1], len(after)) == (["root"], 2)
         and after != before}


def check(what, got, expected):
    if got != expected:
        sys.exit(f"FAILED: {what}:\n     got {got}\nexpected {expected}")


def check_fate(what, before, fate):
    after = agents()
    check(f"{what}: {before}, {after}, {fate}", FATES[fate](before, after), True)


def make_root():
    """The machine as it is, over which changes go to /run/upper, and with an empty /run. Its place."""
    mount("-t", "tmpfs", "-o", "mode=755", "tmpfs", "/run")
    root = pathlib.Path("/run/root")
    for folder in (root, "/run/upper", "/run/work"):
        os.mkdir(folder)
    mount("-t", "overlay", "overlay", "-o", "lowerdir=/,upperdir=/run/upper,workdir=/run/work", root)
    mount("-t", "tmpfs", "-o", "mode=755", "tmpfs", root / "run")
    for folder in ("dev", "proc", "sys"):
        mount("--rbind", f"/{folder}", root / folder)
    return root


def enter(build, *programs):
    """Makes the world of the panel built in `build`, with `programs` in /usr/bin, goes there and
    becomes the user. Returns the helper script's path, which the policy names."""
    root = make_root()
    os.umask(0o022)
    subprocess.run(["cmake", "--install", build, "--component", "panel", "--prefix", "/usr"],
                   env=dict(os.environ, DESTDIR=str(root)), stdout=subprocess.DEVNULL, check=True)
    bundle = root / "Library/WUXAgent/WUXAgent.app"
    shutil.copytree(f"{build}/sample/WUXAgent.app", bundle)
    subprocess.run(["chown", "-R", "root:root", bundle.parent], check=True)
    for program in programs:
        shutil.copy(program, root / "usr/bin")

    os.chroot(root)
    os.chdir("/")
    for name in (USER, "wuxother"):  # Either may answer what asks for an administrator.
        subprocess.run(["useradd", "--no-create-home", "--groups", "sudo", name], check=True)
    subprocess.run(["chpasswd"], input=f"{USER}:{PASSWORD}\n", text=True, check=True)
    for folder in ("/run/dbus", "/run/lock", OWN):
        os.mkdir(folder)
    subprocess.run(["dbus-daemon", "--system", "--fork"], check=True)
    user = pwd.getpwnam(USER)
    os.chown(OWN, user.pw_uid, user.pw_gid)
    os.environ.update(HOME=str(OWN), USER=USER)
    os.initgroups(USER, user.pw_gid)
    os.setgid(user.pw_gid)
    os.setuid(user.pw_uid)
    policy = xml.etree.ElementTree.parse(
        "/usr/share/polkit-1/actions/org.wuxagent.controlpanel.policy")
    return pathlib.Path(
        policy.find(".//annotate[@key='org.freedesktop.policykit.exec.path']").text)


class Prompts:
    """The user's authentication agent for one process; each prompt waits for its own answer."""

    program = (pathlib.Path(__file__).parent / "prompts.py").read_text()

    def __init__(self, pid, locale="C"):
        self.log, self.answers = OWN / "seen", OWN / "answer"
        self.log.write_text("")
        self.answers.unlink(missing_ok=True)
        self.process = subprocess.Popen(
            [sys.executable, "-c", self.program, USER, str(pid), locale, self.log, self.answers],
            stdout=subprocess.PIPE)
        assert self.process.stdout.readline() == b"ready\n"

    def answer(self, password):
        """Answers a prompt, now or once it comes; the empty password cancels it."""
        new = self.answers.with_suffix(".new")
        new.write_text(password)
        new.rename(self.answers)

    def seen(self):
        """Action, message, and whether several users may answer, of each prompt; "withdrawn" for
        one that was."""
        return [tuple(line.split("\t")) for line in self.log.read_text().splitlines()]

    def end(self):
        self.process.kill()
        self.process.communicate()
        return self.seen()


def run(main):
    """Runs this program again in namespaces of its own, where it calls main( build, arguments... )."""
    if sys.argv[1] == "inside":
        sys.exit(main(*sys.argv[2:]))
    if os.geteuid() != 0:
        skip("only root can make a world with another user in it")
    if subprocess.run([*NAMESPACES, "true"]).returncode != 0:
        skip("this machine makes no namespaces")
    # The shell is the first process there: it waits for daemons, and is nobody's pkexec's parent.
    os.execvp("unshare", [*NAMESPACES, "sh", "-c", '"$@"; exit $?', "sh", sys.executable,
                          os.path.abspath(sys.argv[0]), "inside", *sys.argv[1:]])
