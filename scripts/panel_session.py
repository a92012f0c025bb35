"""The panel as a person without eyes meets it: started on a display of its own, read and worked
through the accessibility bus. Needs Debian's dbus-daemon, at-spi2-core, python3-pyatspi, xvfb and maim."""

import os
import subprocess
import sys
import tempfile
import time

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

FIELDS = ("Status", "Installed location", "Version", "PID")
AT_SPI_BUS_LAUNCHER = "/usr/libexec/at-spi-bus-launcher"


class Failure(Exception):
    """What was waited for did not come."""


def wait_for(what, condition, seconds=20.0, process=None):
    """The first true answer of `condition`, asked again and again."""
    end = time.monotonic() + seconds
    while True:
        try:
            answer = condition()
        except GLib.Error:  # The accessible object went away while it was asked.
            answer = None
        if answer:
            return answer
        if process is not None and process.poll() is not None:
            raise Failure(f"{what}: the process ended with {process.returncode}")
        if time.monotonic() > end:
            raise Failure(f"{what}: not within {seconds} s")
        time.sleep(0.02)


class Desktop:
    """A virtual display, a session bus and an accessibility bus; ends with the `with` block."""

    def __init__(self, size="1024x768x24"):
        self.size = size
        self.processes = []

    def __enter__(self):
        self.runtime = tempfile.TemporaryDirectory(prefix="panel-session-")
        os.environ.update(XDG_RUNTIME_DIR=self.runtime.name, QT_QPA_PLATFORM="xcb",
                          QT_LINUX_ACCESSIBILITY_ALWAYS_ON="1")
        os.environ.pop("WAYLAND_DISPLAY", None)
        os.environ["DISPLAY"] = ":" + self._start_and_read(
            ["Xvfb", "-screen", "0", self.size, "-nolisten", "tcp", "-noreset", "-displayfd"])
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = self._start_and_read(
            ["dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address"], "=")
        self._start([AT_SPI_BUS_LAUNCHER, "--launch-immediately"])
        return self

    def _start(self, command, **options):
        self.processes.append(subprocess.Popen(
            command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, **options))

    def _start_and_read(self, command, separator=None):
        """Starts a server whose last option takes a descriptor, and reads the line it writes there."""
        read_end, write_end = os.pipe()
        option = ([command[-1], str(write_end)] if separator is None
                  else [command[-1] + separator + str(write_end)])
        self._start(command[:-1] + option, pass_fds=[write_end])
        os.close(write_end)
        with os.fdopen(read_end) as lines:
            line = lines.readline().strip()
        if not line:
            raise Failure(f"{command[0]} did not start")
        return line

    def __exit__(self, *_):
        for process in reversed(self.processes):
            process.terminate()
            process.wait()
        self.runtime.cleanup()


class Panel:
    """A running panel, its window found on the accessibility bus."""

    def __init__(self, command, env=None):
        self.process = subprocess.Popen(command, env=env)
        self.window = wait_for("the panel's window", self.windows, process=self.process)[0]
        wait_for("the panel's buttons", lambda: len(self.buttons()) == 5)

    def windows(self):
        """Its windows that are shown: its own, and the about box."""
        desktop = Atspi.get_desktop(0)
        applications = [desktop.get_child_at_index(i) for i in range(desktop.get_child_count())]
        windows = [application.get_child_at_index(i) for application in applications
                   if application and application.get_process_id() == self.process.pid
                   for i in range(application.get_child_count())]
        return [window for window in windows if window.get_state_set().contains(Atspi.StateType.SHOWING)]

    def _descendants(self, node=None):
        node = node or self.window
        for i in range(node.get_child_count()):
            child = node.get_child_at_index(i)
            if child is not None:
                child.clear_cache()
                yield child
                yield from self._descendants(child)

    def _of_role(self, role):
        return [n for n in self._descendants() if n.get_role() == role]

    def fields(self):
        """The four values by the names of their fields."""
        values = {n.get_name(): Atspi.Text.get_text(n, 0, Atspi.Text.get_character_count(n))
                  for n in self._of_role(Atspi.Role.TEXT)}
        return {name: values.get(name) for name in FIELDS}

    def buttons(self):
        """Whether a button is enabled, by its title, in the window's order."""
        return {n.get_name(): n.get_state_set().contains(Atspi.StateType.ENABLED)
                for n in self._of_role(Atspi.Role.PUSH_BUTTON)}

    def button(self, title):
        for n in self._of_role(Atspi.Role.PUSH_BUTTON):
            if n.get_name() == title:
                return n
        raise Failure(f"no button {title!r} among {list(self.buttons())}")

    def press(self, title):
        Atspi.Action.do_action(self.button(title), 0)

    def wait_for_field(self, name, value, seconds=20.0):
        wait_for(f"{name} {value!r}", lambda: self.fields()[name] == value, seconds, self.process)
        time.sleep(0.05)  # What comes while the panel still acts on a click is dropped.

    def wait_for_end(self, seconds=20.0):
        try:
            return self.process.wait(seconds)
        except subprocess.TimeoutExpired:
            self.process.kill()
            self.process.wait()
            raise Failure("the panel did not end") from None

    def save_picture(self, path):
        """Writes the window's pixels as a PNG file."""
        box = Atspi.Component.get_extents(self.window, Atspi.CoordType.SCREEN)
        subprocess.run(["maim", "--hidecursor", "--geometry",
                        f"{box.width}x{box.height}+{box.x}+{box.y}", path], check=True)

    def close(self):
        """Presses Close and returns the exit status."""
        self.press("Close")
        return self.wait_for_end()


def show(command, picture):
    """Opens the panel on a virtual display, prints what its window shows, and closes it. The panel
    speaks English there, whatever the user's language: fields and buttons are found by name."""
    with Desktop():
        english = dict(os.environ, LC_ALL="C.UTF-8")
        english.pop("LANGUAGE", None)
        panel = Panel(command, english)
        for name, value in panel.fields().items():
            print(f"{name + ':':<20} {value}")
        for title, enabled in panel.buttons().items():
            print(f"{'[' + title + ']':<20} {'enabled' if enabled else 'disabled'}")
        panel.save_picture(picture)
        print(f"{'Picture:':<20} {picture}", flush=True)
        return panel.close()


if __name__ == "__main__":
    sys.exit(show(sys.argv[2:], sys.argv[1]))
