"""packages_test.py PACKAGES: the Debian packages in that folder are installed, the panel run, upgraded,
removed and purged, in a world to throw away (see tests/rights/world.py). Silent unless something is wrong."""

import os
import pathlib
import pwd
import re
import stat
import subprocess
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(TOP / "tests/rights"), str(TOP / "scripts")]
import panel_session  # noqa: E402
import world  # noqa: E402
from Xlib import X, display  # noqa: E402

# What other packages do when they hear of files is not ours, and takes long where much is installed.
DPKG = ("dpkg", "--force-unsafe-io", "--no-triggers")
NAMES = ("wuxagent-control-panel", "libwuxfoundation-dev")
ACTIONS = [world.prompt(verb)[0] for verb in ("start", "stop", "restart")]
DPKGS_OWN = ("/var/lib/dpkg/", "/var/log/dpkg.log")


class Root:
    """The world as root sees it from outside."""

    def __init__(self, packages):
        self.place = world.make_root()
        self.debs = self.place / "run/packages"
        self.debs.mkdir()
        for deb in pathlib.Path(packages).glob("*.deb"):
            (self.debs / deb.name).write_bytes(deb.read_bytes())

    def run(self, *command, status=0):
        done = subprocess.run(["chroot", self.place, *command], stdout=subprocess.PIPE,
                              stderr=subprocess.STDOUT, text=True)
        world.check(f"{' '.join(command)}: {done.stdout}", done.returncode, status)
        return done.stdout

    def install(self):
        debs = [f"/run/packages/{deb.name}" for deb in sorted(self.debs.iterdir())]
        self.run(*DPKG, "--install", *debs)

    def repack(self, version):
        for deb in list(self.debs.iterdir()):
            tree = f"/run/{deb.stem}"
            self.run("dpkg-deb", "--raw-extract", f"/run/packages/{deb.name}", tree)
            control = self.place / tree.lstrip("/") / "DEBIAN/control"
            control.write_text(re.sub("(?m)^Version: .*", f"Version: {version}", control.read_text()))
            deb.unlink()
            self.run("dpkg-deb", "-Znone", "--build", tree, "/run/packages")

    def known_actions(self):
        return [action for action in ACTIONS if action in self.run("pkaction").split()]

    def check_files(self):
        for path in self.run("dpkg", "--listfiles", NAMES[0]).split():
            item = (self.place / path.lstrip("/")).lstat()
            world.check(f"{path}: owner", (item.st_uid, item.st_gid), (0, 0))
            world.check(f"{path}: mode", stat.S_IMODE(item.st_mode) | 0o111, 0o755)
        world.check("changed", self.run("dpkg", "--verify", *NAMES), "")

    def left(self):
        """What has come or gone on the machine."""
        upper = pathlib.Path("/run/upper")
        paths = [pathlib.Path("/", path.relative_to(upper)) for path in upper.rglob("*")]
        return [str(path) for path in paths if not str(path).startswith(DPKGS_OWN)
                and os.path.lexists(path) != os.path.lexists(self.place / path.relative_to("/"))]


def window_properties():
    """Name, class and sizes of the icons of each top-level window."""
    server = display.Display()
    icon, name = server.intern_atom("_NET_WM_ICON"), server.intern_atom("_NET_WM_NAME")
    for window in server.screen().root.query_tree().children:
        title = window.get_full_property(name, X.AnyPropertyType)
        pixels = window.get_full_property(icon, X.AnyPropertyType)
        if title and window.get_attributes().map_state == X.IsViewable:
            yield title.value.decode(), window.get_wm_class(), bool(pixels and len(pixels.value) > 256)


def use_panel(place):
    """What an ordinary user does who finds the panel installed."""
    os.chroot(place)
    os.chdir("/")
    user = pwd.getpwnam("nobody")
    os.setgroups([])
    os.setgid(user.pw_gid)
    os.setuid(user.pw_uid)
    os.environ.update(HOME="/nonexistent", LC_ALL="C.UTF-8")
    with panel_session.Desktop():
        panel = panel_session.Panel(["WUXAgentControlPanel"])
        world.check("fields", list(panel.fields().values()),
                    ["Not running", "The WUXAgent is not installed", "N/A", "N/A"])
        world.check("window", list(window_properties()),
                    [("WUXAgent Control Panel", ("WUXAgentControlPanel",) * 2, True)])
        world.check("status", panel.close(), 0)


def main(packages):
    root = Root(packages)
    root.run("mkdir", "/run/dbus", "/run/lock")
    root.run("dbus-daemon", "--system", "--fork")
    world.check("actions before", root.known_actions(), [])
    root.install()
    world.check("actions at once", root.known_actions(), ACTIONS)
    for round_ in range(2):
        root.check_files()
        child = os.fork()
        if child == 0:
            try:
                use_panel(root.place)
            except BaseException as error:
                print(error, flush=True)
                os._exit(1)
            os._exit(0)
        world.check("panel", os.waitpid(child, 0)[1], 0)
        if round_ == 0:
            root.repack("1000.0")
            root.install()
            world.check("upgraded", root.run("dpkg-query", "-W", "-f", "${Version} ", *NAMES), "1000.0 " * 2)
    root.run(*DPKG, "--remove", *NAMES)
    world.check("removed", root.run("dpkg-query", "-W", *NAMES, status=1).count("no packages found"), 2)
    world.check("actions after", root.known_actions(), [])
    world.check("left behind", root.left(), [])


if __name__ == "__main__":
    world.run(main)
