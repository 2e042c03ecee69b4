"""The TV in a terminal: prompt_toolkit shows the picture, takes keys, and leaves the terminal as it found it."""

import os
import signal

from prompt_toolkit.application import Application
from prompt_toolkit.key_binding import KeyBindings
from prompt_toolkit.keys import Keys
from prompt_toolkit.layout import Layout
from prompt_toolkit.output.color_depth import ColorDepth

from receiver.actions import LETTERS
from receiver.text_tv import TextTv

KEYS = {
    Keys.Up: "up", Keys.Down: "down", Keys.Left: "left", Keys.Right: "right", Keys.Enter: "ok", Keys.ControlJ: "ok",
    Keys.Escape: "exit", Keys.Backspace: "exit", Keys.F1: "red", Keys.F2: "green", Keys.F3: "yellow", Keys.F4: "blue",
    Keys.PageUp: "channelup", Keys.PageDown: "channeldown", Keys.Home: "previous", Keys.End: "next",
    **{letter.upper(): key for letter, key in LETTERS.items()}, **{digit: digit for digit in "0123456789"},
}
QUIT = ("q", Keys.ControlC)
ESCAPE_SECONDS = 0.05  # a lone Esc may be the beginning of another key's code


class Terminal:
    """Runs a receiver in the terminal until it is switched off."""

    def __init__(self, receiver):
        self.receiver = receiver
        bindings = KeyBindings()
        bindings.add(Keys.Any, eager=True)(lambda event: self._press(event.key_sequence[0].key))
        truecolor = os.environ.get("COLORTERM") in ("truecolor", "24bit")
        self.application = Application(Layout(TextTv(receiver.picture)), key_bindings=bindings, full_screen=True,
                                       color_depth=ColorDepth.DEPTH_24_BIT if truecolor else None)
        self.application.ttimeoutlen = ESCAPE_SECONDS

    def run(self):
        """Show the TV until q or the switch-off; on any way out the terminal is as before."""
        loop = self.receiver.loop
        for number in (signal.SIGTERM, signal.SIGHUP, signal.SIGINT):
            loop.add_signal_handler(number, self.receiver.switch_off)
        # An error of the drawer must end the program, not vanish in the loop.
        loop.set_exception_handler(lambda loop, context: self._end(context.get("exception")))
        self.receiver.on_change = self._changed
        try:
            loop.run_until_complete(self.application.run_async(
                pre_run=self.receiver.switch_on, set_exception_handler=False, handle_sigint=False))
        except EOFError:  # the terminal is gone
            self.receiver.switch_off()
        finally:  # after an error of the drawer, too
            self.application.output.enable_autowrap()
            self.application.output.show_cursor()
            self.application.output.flush()

    def _press(self, key):
        if key in QUIT:
            self.receiver.switch_off()
        elif key in KEYS:
            self.receiver.press(KEYS[key])
        elif len(key) == 1:
            self.receiver.type(key)

    def _changed(self):
        if self.receiver.is_on:
            self.application.invalidate()
        else:
            self._end()

    def _end(self, error=None):
        if self.application.is_running and not self.application.is_done:
            self.application.exit(exception=error)
