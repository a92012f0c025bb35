"""panel_test.py BUILD: the panel end to end, in a sandbox where the agent's place is free.

The window is real, and so are the bundle at its fixed place and the agent's process; the panel is
read and pressed through the accessibility bus."""

import os
import pathlib
import shlex
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest

SCRIPTS = pathlib.Path(__file__).resolve().parents[2] / "scripts"
sys.path.insert(0, str(SCRIPTS))

from panel_input import ABOUT_BOX, Input, selection, xdotool  # noqa: E402
from panel_session import Atspi, Desktop, GLib, Panel, wait_for  # noqa: E402

BUILD = pathlib.Path(sys.argv[1]).resolve()
NAME = "WUXAgentControlPanel"
SCRIPT = f"share/{NAME}/{NAME}.sh"
BUNDLE = pathlib.Path("/Library/WUXAgent/WUXAgent.app")
SAMPLE = BUILD / "sample/WUXAgent.app"
NOT_INSTALLED = "The WUXAgent is not installed"

# Notes its arguments, and waits until it may go on.
RECORDER = """#!/bin/sh
echo "$*" >> {0}/calls
while ! [ -e {0}/go ]; do sleep 0.02; done
"""


def version_plist(value, encoding="UTF-8"):
    return (f'<?xml version="1.0" encoding="{encoding}"?><plist version="1.0">'
            f"<dict><key>CFBundleVersion</key>{value}</dict></plist>").encode(encoding)


def end(process):
    process.kill()
    process.wait()


class PanelTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.addCleanup(shutil.rmtree, BUNDLE, ignore_errors=True)
        self.folder, self.executable = pathlib.Path(folder.name), BUILD / "bin" / NAME
        self.go = self.folder / "go"

    def start_agent(self):
        agent = subprocess.Popen([SAMPLE / "Contents/MacOS/WUXAgent"])
        self.addCleanup(end, agent)
        return str(agent.pid)

    def install_bundle_and_recording_panel(self):
        shutil.copytree(SAMPLE, BUNDLE)
        for folder in ("bin", "share"):
            shutil.copytree(BUILD / folder, self.folder / folder)
        self.executable, self.script = self.folder / "bin" / NAME, self.folder / SCRIPT
        self.script.write_text(RECORDER.format(self.folder))

    def open(self, language="C.UTF-8"):
        self.panel = Panel([self.executable], env=dict(os.environ, LANG=language, LANGUAGE="",
                                                       LC_ALL=language))
        self.input = Input(self.panel)
        self.addCleanup(end, self.panel.process)

    def calls(self):
        file = self.folder / "calls"
        return file.read_text().split() if file.exists() else []

    def press_and_wait(self, title, status, calls):
        self.panel.press(title)
        self.panel.wait_for_field("Status", status)
        wait_for("the script's call", lambda: self.calls() == calls)

    def expect(self, status, location, version, pid, stop, stop_enabled, restart_enabled):
        self.assertEqual(
            self.panel.fields(),
            {"Status": status, "Installed location": location, "Version": version, "PID": pid})
        self.assertEqual(
            self.panel.buttons(),
            {stop: stop_enabled, "Restart Agent": restart_enabled, "About": True, "Copy Details": True,
             "Close": True})

    def expect_stopped(self, version="9.1.2"):
        self.expect("Not running", str(BUNDLE), version, "N/A", "Start Agent", True, False)

    def expect_running(self, pid):
        self.expect("Running", str(BUNDLE), "9.1.2", pid, "Stop Agent", True, True)

    # States of the machine.

    def test_agent_running_from_elsewhere(self):
        pid = self.start_agent()
        self.open()
        self.expect("Running", NOT_INSTALLED, "N/A", pid, "Stop Agent", False, True)

    def test_version_file_of_any_kind(self):
        markup = version_plist("<string>&lt;b&gt;9 &amp; \u20ac&lt;/b&gt;</string>", "UTF-16")
        rows = {
            "markup is shown as it is": (lambda f: f.write_bytes(markup), "<b>9 & \u20ac</b>"),
            "without the key": (lambda f: f.write_bytes(b"<plist><dict/></plist>"), ""),
            "not a text": (lambda f: f.write_bytes(version_plist("<integer>9</integer>")), "N/A"),
            "truncated": (lambda f: f.write_bytes(version_plist("<string>9</string>")[:-9]), "N/A"),
            "missing": (lambda f: None, "N/A"),
            "a FIFO nobody writes to": (os.mkfifo, "N/A"),
            "an endless device": (lambda f: f.symlink_to("/dev/zero"), "N/A"),
        }
        file = BUNDLE / "Contents/version.plist"
        file.parent.mkdir(parents=True)
        for name, (make, version) in rows.items():
            with self.subTest(name):
                make(file)
                self.open()
                self.expect_stopped(version)
                self.assertEqual(self.panel.close(), 0)
                file.unlink(missing_ok=True)

    # Commands.

    def test_buttons_start_restart_and_stop_the_agent(self):
        shutil.copytree(SAMPLE, BUNDLE)
        self.addCleanup(subprocess.run, [BUILD / SCRIPT, "-stop"])
        self.open()
        self.expect_stopped()
        self.panel.press("Start Agent")
        self.panel.wait_for_field("Status", "Running")
        first = self.panel.fields()["PID"]
        self.assertEqual(os.readlink(f"/proc/{first}/exe"), str(BUNDLE / "Contents/MacOS/WUXAgent"))
        self.expect_running(first)

        self.panel.press("Restart Agent")
        wait_for("another agent", lambda: self.panel.fields()["PID"] not in (first, "N/A"))
        self.panel.wait_for_field("Status", "Running")
        self.assertFalse(os.path.exists(f"/proc/{first}"))

        self.panel.press("Stop Agent")
        self.panel.wait_for_field("Status", "Not running")
        self.expect_stopped()

    def test_state_at_the_click_wins_over_the_title(self):
        self.install_bundle_and_recording_panel()
        self.open()
        self.press_and_wait("Start Agent", "Starting", ["-start"])
        self.go.touch()
        self.panel.wait_for_field("Status", "Not running")
        self.go.unlink()
        pid = self.start_agent()
        self.press_and_wait("Start Agent", "Stopping", ["-start", "-stop"])
        self.go.touch()
        self.panel.wait_for_field("Status", "Running")
        self.expect_running(pid)

    def test_nothing_runs_where_the_path_breaks_the_command_line(self):
        self.install_bundle_and_recording_panel()
        self.go.touch()
        for number, name in enumerate(("a b", "'a'", "a;b", "$(a)", "a\nb")):
            with self.subTest(name):
                place = self.folder / str(number) / name
                for folder in ("bin", "share"):
                    shutil.copytree(self.folder / folder, place / folder)
                # What the words would name instead is there too.
                decoy = pathlib.Path(shlex.split(str(place / SCRIPT))[0])
                decoy.parent.mkdir(parents=True, exist_ok=True)
                shutil.copy(self.script, decoy)
                self.executable = place / "bin" / NAME
                self.open()
                self.panel.press("Start Agent")
                time.sleep(0.5)
                self.expect_stopped()
                self.assertEqual((self.calls(), self.panel.close()), ([], 0))

    def test_missing_script_leaves_the_real_state(self):
        self.install_bundle_and_recording_panel()
        self.script.unlink()
        pid = self.start_agent()
        self.open()
        self.panel.press("Stop Agent")
        time.sleep(0.5)
        self.expect_running(pid)

    def test_input_during_a_command_is_dropped_then_and_later(self):
        self.install_bundle_and_recording_panel()
        self.start_agent()
        self.open()
        self.press_and_wait("Restart Agent", "Restarting", ["-restart"])
        for way in Input.WAYS:
            way(self.input)
        time.sleep(0.3)
        self.input.press_all()  # Its click would end after the command has ended.
        self.go.touch()
        self.panel.wait_for_field("Status", "Running")
        time.sleep(0.5)
        self.assertIsNone(self.panel.process.poll())
        self.assertEqual((len(self.panel.windows()), selection("clipboard")), (1, ""))

        # And the window is as alive as before, but two clicks in one go are one command.
        for times in range(1, 5):
            self.assertEqual(self.calls(), ["-restart"] + ["-stop"] * (times - 1))
            self.input.click("Stop Agent", repeat=2)
            wait_for("the next command", lambda: len(self.calls()) > times)
            self.panel.wait_for_field("Status", "Running")
            time.sleep(0.3)
        self.assertEqual(len(self.calls()), 5)

    def test_window_is_painted_while_a_command_runs(self):
        self.install_bundle_and_recording_panel()
        self.start_agent()
        self.open()
        before = self.picture()
        self.press_and_wait("Restart Agent", "Restarting", ["-restart"])
        time.sleep(0.3)
        during = self.picture()
        self.assertTrue(before != during, "the transitional text is painted")
        window = self.input.window()
        xdotool("windowunmap", "--sync", window)
        self.assertTrue(self.picture() != during, "the window is hidden")
        xdotool("windowmap", "--sync", window)
        wait_for("the window as it was", lambda: self.picture() == during, 5)
        self.go.touch()

    # Closing, texts and the keyboard.

    def test_escape_and_the_frame_close_with_status_0(self):
        for way in (lambda: self.input.press_keys("Escape"), lambda: self.input.ask_to_close()):
            self.open()
            way()
            self.assertEqual(self.panel.wait_for_end(), 0)

    def test_texts_are_in_the_users_language(self):
        self.open("de_DE.UTF-8")
        self.assertEqual(self.panel.fields()["Status"], "Läuft nicht")
        self.assertEqual(self.panel.buttons(), {
            "Agent starten": False, "Agent neu starten": False, "Über": True, "Details kopieren": True,
            "Schließen": True})
        self.assertEqual([n.get_name() for n in self.panel._descendants() if "&" in n.get_name()], [])

    def test_window_is_printed_in_english_for_every_user(self):
        picture = self.folder / "panel.png"
        shown = subprocess.check_output(
            [sys.executable, SCRIPTS / "panel_session.py", picture, self.executable],
            env=dict(os.environ, LANG="de_DE.UTF-8", LANGUAGE="de"), text=True)
        self.assertIn(f"Installed location:  {NOT_INSTALLED}\n", shown)
        self.assertIn("[Start Agent]        disabled\n", shown)
        self.assertTrue(picture.read_bytes().startswith(b"\x89PNG"))

    def test_keyboard_reaches_everything_in_order(self):
        shutil.copytree(SAMPLE, BUNDLE)
        self.start_agent()
        self.open()
        order = ["Status", "Installed location", "Version", "PID", *self.panel.buttons()]
        for name in order:
            self.input.press_keys("Tab")
            time.sleep(0.1)
            self.assertEqual(name, self.focus())

    def test_mnemonics_reach_everything(self):
        self.install_bundle_and_recording_panel()
        self.go.touch()
        pid = self.start_agent()
        self.open()
        self.input.press_keys("alt+r")
        wait_for("the script's call", lambda: self.calls() == ["-restart"])
        self.panel.wait_for_field("Status", "Running")
        for key, field in (("s", "Status"), ("i", "Installed location"), ("v", "Version"), ("p", "PID")):
            self.input.press_keys(f"alt+{key}")
            wait_for(field, lambda: self.focus() == field)

        details = f"Status: Running\nInstalled location: {BUNDLE}\nVersion: 9.1.2\nPID: {pid}\n"
        for key in ("alt+y", "ctrl+shift+c"):
            self.input.press_keys(key)
            wait_for("the copy", lambda: selection("clipboard") == details)
            subprocess.run(["xclip", "-selection", "clipboard"], input=b"", check=True)

        Atspi.Component.grab_focus(self.panel.button("About"))
        for opening, closing in (("alt+a", "Escape"), ("Return", "alt+c"), ("space", "Return"), ("Return", "ctrl+w")):
            self.input.press_keys(opening)
            wait_for("the about box", lambda: len(self.panel.windows()) == 2)
            self.input.press_keys(closing, window=ABOUT_BOX)
            wait_for("the panel alone", lambda: len(self.panel.windows()) == 1)
        self.expect_running(pid)
        self.input.press_keys("alt+c")
        self.assertEqual((self.panel.wait_for_end(), self.calls()), (0, ["-restart"]))

    def test_values_are_selected_from_the_first_press_on(self):
        shutil.copytree(SAMPLE, BUNDLE)
        self.open()
        field = next(n for n in self.panel._descendants() if n.get_name() == "Installed location"
                     and n.get_role() == Atspi.Role.TEXT)
        self.input.drag_over(field)
        wait_for("the whole", lambda: selection("primary") == str(BUNDLE))
        self.input.press_keys("shift+Tab")
        xdotool("windowsize", "--sync", self.input.window(), "250", "220")  # Now it is too long.
        self.input.drag_over(field)
        wait_for("its beginning", lambda: 5 < len(selection("primary")) < len(str(BUNDLE)))
        self.assertTrue(str(BUNDLE).startswith(selection("primary")))

    def test_a_new_status_is_announced(self):
        self.install_bundle_and_recording_panel()
        pid = self.start_agent()
        self.open()
        said = []
        listener = Atspi.EventListener.new(lambda event: said.append(
            (event.source.get_role(), event.source.get_name())))
        listener.register("object:state-changed:showing")
        self.addCleanup(listener.deregister, "object:state-changed:showing")

        def hear(text):
            def is_heard():
                while GLib.MainContext.default().iteration(False):
                    pass
                return (Atspi.Role.NOTIFICATION, text) in said
            wait_for(f"{text!r} to be said", is_heard, 5)

        self.panel.press("Stop Agent")
        hear("Stopping")
        os.kill(int(pid), signal.SIGKILL)
        os.waitpid(int(pid), 0)
        self.go.touch()
        hear("Not running")

    def focus(self):
        return next(node.get_name() for node in self.panel._descendants()
                    if node.get_state_set().contains(Atspi.StateType.FOCUSED))

    def picture(self):
        path = self.folder / "picture.png"
        self.panel.save_picture(path)
        return path.read_bytes()


if __name__ == "__main__":
    with Desktop():
        unittest.main(argv=sys.argv[:1], verbosity=2)
