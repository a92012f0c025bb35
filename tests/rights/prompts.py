"""prompts.py USER PID LOCALE LOG ANSWER: the user's authentication agent for one process.

Notes each prompt in LOG: action, message, and whether several users may answer it; and its withdrawal.
Each waits for a file ANSWER of its own, which holds a password, or nothing to dismiss the prompt."""

import pathlib
import subprocess
import sys

import dbus.mainloop.glib
import dbus.service
from gi.repository import GLib

AGENT = "org.freedesktop.PolicyKit1.AuthenticationAgent"
AUTHORITY = "org.freedesktop.PolicyKit1"
USER, PID, LOCALE = sys.argv[1:4]
LOG, ANSWER = map(pathlib.Path, sys.argv[4:])


class Cancelled(dbus.DBusException):
    _dbus_error_name = f"{AUTHORITY}.Error.Cancelled"


class Agent(dbus.service.Object):
    @dbus.service.method(AGENT, in_signature="sssa{ss}sa(sa{sv})", async_callbacks=("done", "fail"))
    def BeginAuthentication(self, action, message, _icon, _details, cookie, identities, done, fail):
        with LOG.open("a") as log:
            log.write(f"{action}\t{message}\t{len(identities) > 1}\n")

        def look():
            if not ANSWER.exists():
                return True
            password = ANSWER.read_text()
            ANSWER.unlink()
            if password:
                subprocess.run(["/usr/lib/polkit-1/polkit-agent-helper-1", USER],
                               input=f"{cookie}\n{password}\n", text=True, stdout=subprocess.DEVNULL)
                done()
            else:
                fail(Cancelled("dismissed"))
            return False

        GLib.timeout_add(20, look)

    @dbus.service.method(AGENT, in_signature="s")
    def CancelAuthentication(self, _cookie):
        with LOG.open("a") as log:
            log.write("withdrawn\n")


dbus.mainloop.glib.DBusGMainLoop(set_as_default=True)
bus = dbus.SystemBus()
agent = Agent(bus, "/agent")
stat = pathlib.Path(f"/proc/{PID}/stat").read_text()
start_time = int(stat[stat.rindex(")"):].split()[20])
bus.get_object(AUTHORITY, "/org/freedesktop/PolicyKit1/Authority").RegisterAuthenticationAgent(
    ("unix-process", {"pid": dbus.UInt32(PID), "start-time": dbus.UInt64(start_time)}),
    LOCALE, "/agent", dbus_interface=f"{AUTHORITY}.Authority")
print("ready", flush=True)
GLib.MainLoop().run()
