"""The ways to use a panel's window, through the accessibility bus and as the display server has them."""

import subprocess

from panel_session import Atspi
from Xlib import X, display as xdisplay
from Xlib.protocol import event as xevent


def xdotool(*arguments):
    return subprocess.check_output(["xdotool", *arguments], text=True)


class Input:
    def __init__(self, panel):
        self.panel = panel

    def window(self):
        return xdotool("search", "--sync", "--onlyvisible", "--name",
                       "WUXAgent Control Panel").split()[0]

    def press_keys(self, *keys):
        xdotool("windowfocus", "--sync", self.window())
        xdotool("key", *keys)

    def click(self, title, repeat=1):
        box = Atspi.Component.get_extents(self.panel.button(title), Atspi.CoordType.SCREEN)
        xdotool("mousemove", str(box.x + box.width // 2), str(box.y + box.height // 2),
                "click", "--repeat", str(repeat), "--delay", "0", "1")

    def ask_to_close(self):
        server = xdisplay.Display()
        window = server.create_resource_object("window", int(self.window()))
        window.send_event(xevent.ClientMessage(
            window=window, client_type=server.intern_atom("WM_PROTOCOLS"),
            data=(32, [server.intern_atom("WM_DELETE_WINDOW"), X.CurrentTime, 0, 0, 0])))
        server.sync()  # Closing alone may lose it.
        server.close()

    # Everything that would do something, in each way.

    def press_all(self):
        for title, enabled in self.panel.buttons().items():
            if enabled:
                self.panel.press(title)

    def click_all(self):
        for title in self.panel.buttons():
            self.click(title)

    def press_all_keys(self):
        self.press_keys("Escape", "space", "Tab", "space", "Return", "ctrl+w", "ctrl+q")

    WAYS = (press_all, click_all, press_all_keys, ask_to_close)
