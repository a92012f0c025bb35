"""The ways to use a panel's window, through the accessibility bus and as the display server has them."""

import subprocess

from panel_session import Atspi
from Xlib import X, display as xdisplay
from Xlib.protocol import event as xevent


def xdotool(*arguments):
    return subprocess.check_output(["xdotool", *arguments], text=True)


def selection(name):
    """The text of the "clipboard" or of the "primary" selection, if there is any."""
    return subprocess.run(["xclip", "-out", "-selection", name], stdout=subprocess.PIPE,
                          stderr=subprocess.DEVNULL, text=True).stdout


PANEL, ABOUT_BOX = "^WUXAgent Control Panel$", "^About"


class Input:
    def __init__(self, panel):
        self.panel = panel

    def window(self, title=PANEL):
        return xdotool("search", "--sync", "--onlyvisible", "--name", title).split()[0]

    def press_keys(self, *keys, window=PANEL):
        xdotool("windowfocus", "--sync", self.window(window))
        xdotool("key", *keys)

    def click(self, title, repeat=1):
        box = Atspi.Component.get_extents(self.panel.button(title), Atspi.CoordType.SCREEN)
        xdotool("mousemove", str(box.x + box.width // 2), str(box.y + box.height // 2),
                "click", "--repeat", str(repeat), "--delay", "0", "1")

    def drag_over(self, field):
        box = Atspi.Component.get_extents(field, Atspi.CoordType.SCREEN)
        y = str(box.y + box.height // 2)
        xdotool("mousemove", str(box.x + 1), y, "mousedown", "1", "mousemove", str(box.x + box.width - 1), y,
                "mouseup", "1")

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
        self.press_keys("Escape", "space", "Tab", "space", "Return", "ctrl+w", "ctrl+q",
                        "ctrl+shift+c", "alt+a", "alt+y", "alt+t", "alt+c")

    WAYS = (press_all, click_all, press_all_keys, ask_to_close)
