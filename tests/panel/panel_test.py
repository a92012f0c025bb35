"""panel_test.py BUILD SOURCE: the panel end to end, in a sandbox where the agent's place is free.

The window is real, and so are the bundle at its fixed place and the agent's process; the panel is
read and pressed through the accessibility bus."""

import os
import pathlib
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

BUILD, SOURCE = (pathlib.Path(p).resolve() for p in sys.argv[1:3])
sys.path.insert(0, str(SOURCE / "scripts"))

from panel_session import Desktop, Panel, wait_for  # noqa: E402
from Xlib import X, display as xdisplay  # noqa: E402
from Xlib.protocol import event as xevent  # noqa: E402

NAME = "WUXAgentControlPanel"
BUNDLE = pathlib.Path("/Library/WUXAgent/WUXAgent.app")
SAMPLE = BUILD / "sample/WUXAgent.app"
NOT_INSTALLED = "The WUXAgent is not installed"
LRELEASE = "/usr/lib/qt6/bin/lrelease"

# Notes its arguments, waits until it may go on, and then does what {action} says.
RECORDER = """#!/bin/sh
echo "$*" >> {folder}/calls
while ! [ -e {folder}/go ]; do sleep 0.02; done
{action}
"""


def plist(content):
    return f'<?xml version="1.0" encoding="UTF-8"?><plist version="1.0">{content}</plist>'.encode()


def version_plist(value):
    return plist(f"<dict><key>CFBundleVersion</key>{value}</dict>")


def sparse_file(path):
    with open(path, "wb") as file:
        file.truncate(1 << 30)


class PanelTest(unittest.TestCase):
    def setUp(self):
        self.folder = pathlib.Path(tempfile.mkdtemp())
        self.agents, self.panel, self.executable = [], None, BUILD / "bin" / NAME

    def tearDown(self):
        if self.panel and self.panel.process.poll() is None:
            self.panel.process.kill()
            self.panel.process.wait()
        script = BUILD / "share" / NAME / (NAME + ".sh")
        if BUNDLE.exists():
            subprocess.run([script, "-stop"], check=False)
        for agent in self.agents:
            agent.kill()
            agent.wait()
        shutil.rmtree(BUNDLE, ignore_errors=True)
        shutil.rmtree(self.folder)

    # What the panel finds.

    def install_bundle(self):
        shutil.copytree(SAMPLE, BUNDLE)

    def start_agent(self, executable=SAMPLE / "Contents/MacOS/WUXAgent"):
        agent = subprocess.Popen([executable])
        self.agents.append(agent)
        comm = pathlib.Path(f"/proc/{agent.pid}/comm")
        wait_for("the agent's name", lambda: comm.read_text() == "WUXAgent\n")
        return str(agent.pid)

    def install_panel(self, script, folder="prefix"):
        """A copy of the panel with another helper script, or with none."""
        prefix = self.folder / folder
        resources = prefix / "share" / NAME
        shutil.copytree(BUILD / "share" / NAME, resources)
        (resources / (NAME + ".sh")).unlink()
        if script is not None:
            (resources / (NAME + ".sh")).write_text(script)
            (resources / (NAME + ".sh")).chmod(0o755)
        (prefix / "bin").mkdir()
        shutil.copy(self.executable, prefix / "bin")
        self.executable = prefix / "bin" / NAME
        return resources

    def install_recording_panel(self, action="true"):
        self.install_panel(RECORDER.format(folder=self.folder, action=action))

    def calls(self):
        file = self.folder / "calls"
        return file.read_text().split() if file.exists() else []

    def let_script_go_on(self):
        (self.folder / "go").touch()

    def open(self, language="C.UTF-8"):
        self.panel = Panel([self.executable], env=dict(os.environ, LANG=language, LANGUAGE="",
                                                       LC_ALL=language))
        return self.panel

    def expect(self, status, location, version, pid, stop, stop_enabled, restart_enabled):
        self.assertEqual(
            self.panel.fields(),
            {"Status": status, "Installed location": location, "Version": version, "PID": pid})
        self.assertEqual(
            self.panel.buttons(),
            {stop: stop_enabled, "Restart Agent": restart_enabled, "Close": True})

    def press_and_wait(self, title, status):
        self.panel.press(title)
        self.panel.wait_for_field("Status", status)
        wait_for("the script's call", self.calls)

    # States of the machine.

    def test_agent_running_and_installed(self):
        self.install_bundle()
        pid = self.start_agent()
        self.open()
        self.expect("Running", str(BUNDLE), "9.1.2", pid, "Stop Agent", True, True)

    def test_agent_installed_but_not_running(self):
        self.install_bundle()
        self.open()
        self.expect("Not running", str(BUNDLE), "9.1.2", "N/A", "Start Agent", True, False)

    def test_agent_neither_running_nor_installed(self):
        self.open()
        self.expect("Not running", NOT_INSTALLED, "N/A", "N/A", "Start Agent", False, False)

    def test_agent_running_from_elsewhere(self):
        pid = self.start_agent()
        self.open()
        self.expect("Running", NOT_INSTALLED, "N/A", pid, "Stop Agent", False, True)

    def test_version_file_of_any_kind(self):
        text = version_plist("<string>9.1.2</string>")
        rows = {
            "good": (lambda f: f.write_bytes(text), "9.1.2"),
            "UTF-16": (lambda f: f.write_bytes(text.replace(b"UTF-8", b"UTF-16").decode()
                                               .encode("utf-16")), "9.1.2"),
            "markup is shown as it is": (lambda f: f.write_bytes(version_plist(
                "<string>&lt;b&gt;9 &amp; 1&lt;/b&gt;</string>")), "<b>9 & 1</b>"),
            "without the key": (lambda f: f.write_bytes(plist("<dict/>")), ""),
            "an empty version": (lambda f: f.write_bytes(version_plist("<string/>")), ""),
            "not a text": (lambda f: f.write_bytes(version_plist("<integer>9</integer>")), "N/A"),
            "an array": (lambda f: f.write_bytes(plist("<array/>")), "N/A"),
            "truncated": (lambda f: f.write_bytes(text[:-9]), "N/A"),
            "empty": (lambda f: f.write_bytes(b""), "N/A"),
            "random bytes": (lambda f: f.write_bytes(os.urandom(4096)), "N/A"),
            "missing": (lambda f: None, "N/A"),
            "a folder": (lambda f: f.mkdir(), "N/A"),
            "a FIFO nobody writes to": (lambda f: os.mkfifo(f), "N/A"),
            "an endless device": (lambda f: f.symlink_to("/dev/zero"), "N/A"),
            "a link to nowhere": (lambda f: f.symlink_to("nowhere"), "N/A"),
            "1 GB": (sparse_file, "N/A"),
        }
        file = BUNDLE / "Contents/version.plist"
        file.parent.mkdir(parents=True)
        for name, (make, version) in rows.items():
            with self.subTest(name):
                make(file)
                self.open()
                self.expect("Not running", str(BUNDLE), version, "N/A", "Start Agent", True, False)
                peak = next(line for line in pathlib.Path(f"/proc/{self.panel.process.pid}/status")
                            .read_text().splitlines() if line.startswith("VmHWM:"))
                self.assertLess(int(peak.split()[1]), 512 * 1024)
                self.assertEqual(self.panel.close(), 0)
                if file.is_dir():
                    file.rmdir()
                else:
                    file.unlink(missing_ok=True)

    # Commands on a real agent.

    def test_buttons_start_restart_and_stop_the_agent(self):
        self.install_bundle()
        self.open()
        self.panel.press("Start Agent")
        self.panel.wait_for_field("Status", "Running")
        first = self.panel.fields()["PID"]
        self.assertEqual(os.readlink(f"/proc/{first}/exe"), str(BUNDLE / "Contents/MacOS/WUXAgent"))

        self.panel.press("Restart Agent")
        wait_for("another agent", lambda: self.panel.fields()["PID"] not in (first, "N/A"))
        second = self.panel.fields()["PID"]
        self.panel.wait_for_field("Status", "Running")
        self.assertFalse(os.path.exists(f"/proc/{first}"))

        self.panel.press("Stop Agent")
        self.panel.wait_for_field("Status", "Not running")
        self.assertFalse(os.path.exists(f"/proc/{second}"))
        self.expect("Not running", str(BUNDLE), "9.1.2", "N/A", "Start Agent", True, False)

    # Commands seen through a script that waits.

    def test_command_shows_what_it_does_and_runs_the_script_with_one_argument(self):
        for running, title, status, argument in (
                (False, "Start Agent", "Starting", "-start"),
                (True, "Stop Agent", "Stopping", "-stop"),
                (True, "Restart Agent", "Restarting", "-restart")):
            with self.subTest(argument):
                self.setUp()
                self.install_bundle()
                if running:
                    self.start_agent()
                self.install_recording_panel()
                self.open()
                self.press_and_wait(title, status)
                self.assertEqual(self.calls(), [argument])
                self.let_script_go_on()
                self.panel.wait_for_field("Status", "Running" if running else "Not running")
                self.assertEqual(self.calls(), [argument])
                self.tearDown()
        self.setUp()

    def test_state_at_the_click_wins_over_the_title(self):
        self.install_bundle()
        self.install_recording_panel()
        self.open()
        pid = self.start_agent()
        self.let_script_go_on()
        self.panel.press("Start Agent")
        self.panel.wait_for_field("Status", "Running")
        self.assertEqual(self.calls(), ["-stop"])
        self.expect("Running", str(BUNDLE), "9.1.2", pid, "Stop Agent", True, True)

    def test_scripts_that_fail_leave_the_real_state(self):
        for name, script, folder in (
                ("fails", "#!/bin/sh\nexit 1\n", "prefix"),
                ("is killed", "#!/bin/sh\nkill -9 $$\n", "prefix"),
                ("is no program", "no program", "prefix"),
                ("is missing", None, "prefix"),
                ("stands at a path with a blank", "#!/bin/sh\ntouch ran\n", "a prefix"),
                ("stands at a path with a quote", "#!/bin/sh\ntouch ran\n", 'a"prefix')):
            with self.subTest(name):
                self.setUp()
                self.install_bundle()
                pid = self.start_agent()
                self.install_panel(script, folder)
                self.open()
                self.panel.press("Stop Agent")
                time.sleep(0.5)
                self.panel.wait_for_field("Status", "Running")
                self.expect("Running", str(BUNDLE), "9.1.2", pid, "Stop Agent", True, True)
                self.tearDown()
        self.setUp()

    def test_input_during_a_command_is_dropped_then_and_later(self):
        self.install_bundle()
        self.start_agent()
        self.install_recording_panel()
        self.open()
        server = xdisplay.Display()
        window = self.x_window(server)
        self.press_and_wait("Restart Agent", "Restarting")

        for title in ("Stop Agent", "Restart Agent", "Close"):
            self.panel.press(title)
            self.click(title)
        window.set_input_focus(X.RevertToParent, X.CurrentTime)
        server.sync()
        for key in ("Escape", "space", "Tab", "space", "Return"):
            subprocess.run(["xdotool", "key", key], check=True)
        self.ask_to_close(server, window)
        time.sleep(0.3)
        self.panel.press("Stop Agent")  # Its click would end after the command has ended.
        self.let_script_go_on()
        self.panel.wait_for_field("Status", "Running")
        time.sleep(0.5)
        self.assertIsNone(self.panel.process.poll())
        self.assertEqual(self.calls(), ["-restart"])

        # And the window is as alive as before, but two clicks in one go are one command.
        for times in range(2, 6):
            self.click("Stop Agent", repeat=2)
            wait_for("the next command", lambda: len(self.calls()) >= times)
            self.panel.wait_for_field("Status", "Running")
            time.sleep(0.3)
            self.assertEqual(self.calls(), ["-restart"] + ["-stop"] * (times - 1))
        server.close()

    def test_window_is_painted_while_a_command_runs(self):
        self.install_bundle()
        self.start_agent()
        self.install_recording_panel()
        self.open()
        server = xdisplay.Display()
        before = self.picture("before")
        self.press_and_wait("Restart Agent", "Restarting")
        time.sleep(0.3)
        during = self.picture("during")
        self.assertTrue(before != during, "the transitional text is painted")

        screen = server.screen()
        cover = screen.root.create_window(0, 0, screen.width_in_pixels, screen.height_in_pixels, 0,
                                          screen.root_depth, override_redirect=True,
                                          background_pixel=screen.black_pixel)
        cover.map()
        server.sync()
        self.assertTrue(self.picture("covered") != during, "the window is covered")
        cover.destroy()
        server.sync()
        wait_for("the window as it was", lambda: self.picture("uncovered") == during, 5)
        self.let_script_go_on()
        server.close()

    # Closing.

    def test_every_way_of_closing_ends_with_status_0(self):
        def by_button():
            self.panel.press("Close")

        def by_key():
            self.x_window(server).set_input_focus(X.RevertToParent, X.CurrentTime)
            server.sync()
            subprocess.run(["xdotool", "key", "Escape"], check=True)

        def by_window():
            self.ask_to_close(server, self.x_window(server))

        self.install_recording_panel()
        server = xdisplay.Display()
        for way in (by_button, by_key, by_window):
            with self.subTest(way.__name__):
                self.open()
                way()
                self.assertEqual(self.panel.wait_for_end(), 0)
                self.assertEqual(self.calls(), [])
        server.close()

    # Texts and the keyboard.

    def test_texts_come_from_the_table_and_are_the_keys_without_one(self):
        resources = self.install_panel("#!/bin/sh\n")
        for table in (resources / "translations").iterdir():
            table.unlink()
        source = self.folder / "table.ts"
        source.write_text(
            '<TS version="2.1" language="de"><context><name>ControlPanel</name>'
            "<message><source>Not running</source><translation>Steht</translation></message>"
            "<message><source>N/A</source><translation>Keine</translation></message>"
            "</context></TS>")
        subprocess.run([LRELEASE, source, "-qm", resources / f"translations/{NAME}_de.qm"],
                       check=True, stdout=subprocess.DEVNULL)
        self.open("de_DE.UTF-8")
        self.expect("Steht", NOT_INSTALLED, "N/A", "Keine", "Start Agent", False, False)

    def test_window_is_printed_in_english_for_every_user(self):
        picture = self.folder / "panel.png"
        shown = subprocess.run(
            [sys.executable, SOURCE / "scripts/panel_session.py", picture, self.executable],
            env=dict(os.environ, LANG="de_DE.UTF-8", LANGUAGE="de"), text=True,
            stdout=subprocess.PIPE, check=True)
        self.assertIn(f"Installed location:  {NOT_INSTALLED}\n", shown.stdout)
        self.assertIn("[Start Agent]        disabled\n", shown.stdout)
        self.assertTrue(picture.read_bytes().startswith(b"\x89PNG"))

    def test_keyboard_reaches_everything_in_order(self):
        self.install_bundle()
        self.start_agent()
        self.open()
        server = xdisplay.Display()
        self.x_window(server).set_input_focus(X.RevertToParent, X.CurrentTime)
        server.sync()
        order = []
        for _ in range(7):
            subprocess.run(["xdotool", "key", "Tab"], check=True)
            time.sleep(0.1)
            order.append(self.focused())
        self.assertEqual(order, ["Status", "Installed location", "Version", "PID", "Stop Agent",
                                 "Restart Agent", "Close"])
        server.close()

    # Ways to the window that do not go through the accessibility bus.

    def focused(self):
        from gi.repository import Atspi
        for node in self.panel._descendants():
            if node.get_state_set().contains(Atspi.StateType.FOCUSED):
                return node.get_name()
        return None

    def x_window(self, server):
        def find(window):
            if window.get_wm_name() and "Control Panel" in window.get_wm_name():
                return window
            return next((f for f in map(find, window.query_tree().children) if f), None)

        return wait_for("the X window", lambda: find(server.screen().root))

    def click(self, title, repeat=1):
        from gi.repository import Atspi
        box = Atspi.Component.get_extents(self.panel.button(title), Atspi.CoordType.SCREEN)
        subprocess.run(["xdotool", "mousemove", str(box.x + box.width // 2),
                        str(box.y + box.height // 2), "click", "--repeat", str(repeat),
                        "--delay", "0", "1"], check=True)

    def ask_to_close(self, server, window):
        message = xevent.ClientMessage(
            window=window, client_type=server.intern_atom("WM_PROTOCOLS"),
            data=(32, [server.intern_atom("WM_DELETE_WINDOW"), X.CurrentTime, 0, 0, 0]))
        window.send_event(message)
        server.sync()

    def picture(self, name):
        path = self.folder / f"{name}.png"
        self.panel.save_picture(path)
        return path.read_bytes()


if __name__ == "__main__":
    with Desktop():
        unittest.main(argv=sys.argv[:1], verbosity=2)
