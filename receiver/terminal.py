"""The TV in a terminal: draws the picture in colour, takes keys, and leaves the terminal as it found it."""

import contextlib
import os
import signal
import sys

from prompt_toolkit.input import create_input
from prompt_toolkit.keys import Keys
from prompt_toolkit.output.color_depth import ColorDepth
from prompt_toolkit.output.vt100 import Vt100_Output
from prompt_toolkit.styles import DEFAULT_ATTRS

from receiver import text_tv
from receiver.actions import LETTERS

KEYS = {
    Keys.Up: "up", Keys.Down: "down", Keys.Left: "left", Keys.Right: "right", Keys.Enter: "ok", Keys.ControlJ: "ok",
    Keys.Escape: "exit", Keys.Backspace: "exit", Keys.F1: "red", Keys.F2: "green", Keys.F3: "yellow", Keys.F4: "blue",
    Keys.PageUp: "channelup", Keys.PageDown: "channeldown", Keys.Home: "previous", Keys.End: "next",
    **LETTERS, **{letter.upper(): key for letter, key in LETTERS.items()}, **{digit: digit for digit in "0123456789"},
}
QUIT = ("q", Keys.ControlC)
ESCAPE_SECONDS = 0.05  # a lone Esc may be the beginning of another key's code
SMALLEST = (20, 6)


class Terminal:
    """Runs a receiver in the terminal until it is switched off."""

    def __init__(self, receiver, loop):
        self.receiver = receiver
        self.loop = loop
        self.input = create_input(sys.stdin)
        self.output = Vt100_Output.from_pty(sys.stdout, term=os.environ.get("TERM"))
        truecolor = os.environ.get("COLORTERM") in ("truecolor", "24bit")
        self.depth = ColorDepth.DEPTH_24_BIT if truecolor else self.output.get_default_color_depth()
        self._drawing = False
        self._escape = None
        self._done = None

    def run(self):
        """Show the TV until q or the switch-off; on any way out the terminal is as before."""
        self.loop.run_until_complete(self._run())

    async def _run(self):
        self._done = self.loop.create_future()
        with contextlib.ExitStack() as stack:
            stack.enter_context(self.input.raw_mode())
            stack.enter_context(self._own_screen())
            stack.enter_context(self.input.attach(self._keys))
            for number in (signal.SIGTERM, signal.SIGHUP, signal.SIGINT):
                self.loop.add_signal_handler(number, self.receiver.switch_off)
            self.loop.add_signal_handler(signal.SIGWINCH, self._changed)
            self.receiver.on_change = self._changed
            self.receiver.switch_on()
            await self._done

    @contextlib.contextmanager
    def _own_screen(self):
        self.output.enter_alternate_screen()
        self.output.hide_cursor()
        self.output.disable_autowrap()
        try:
            yield
        finally:
            self.output.reset_attributes()
            self.output.enable_autowrap()
            self.output.show_cursor()
            self.output.quit_alternate_screen()
            self.output.flush()

    def _keys(self):
        if self._escape is not None:
            self._escape.cancel()
        self._press(self.input.read_keys())
        self._escape = self.loop.call_later(ESCAPE_SECONDS, lambda: self._press(self.input.flush_keys()))
        if self.input.closed:
            self.receiver.switch_off()

    def _press(self, presses):
        for press in presses:
            if press.key in QUIT:
                self.receiver.switch_off()
                return
            is_text = len(press.key) == 1 and press.key not in KEYS or press.key in LETTERS
            if not (is_text and self.receiver.type(press.key)) and press.key in KEYS:
                self.receiver.press(KEYS[press.key])

    def _changed(self):
        """Draw once, after all that this turn brings."""
        if not self._drawing:
            self._drawing = True
            self.loop.call_soon(self._draw)

    def _draw(self):
        self._drawing = False
        if self._done.done():
            return
        try:
            if not self.receiver.is_on:
                self._done.set_result(None)
                return
            size = self.output.get_size()
            canvas = text_tv.draw(self.receiver.picture(), max(size.columns, SMALLEST[0]), max(size.rows, SMALLEST[1]))
            self._show(canvas, size)
        except Exception as error:  # an error of the drawer must end the program, not vanish in the loop
            self._done.set_exception(error)

    def _show(self, canvas, size):
        for number, line in enumerate(canvas.cells[:size.rows], 1):
            self.output.cursor_goto(number, 1)
            look = None
            for cell in line[:size.columns]:
                if look != (look := (cell.foreground, cell.background, cell.bold, cell.underline)):
                    self.output.set_attributes(DEFAULT_ATTRS._replace(
                        color=look[0][1:], bgcolor=look[1][1:], bold=look[2], underline=look[3]), self.depth)
                self.output.write(cell.text)
        self.output.reset_attributes()
        self.output.flush()
