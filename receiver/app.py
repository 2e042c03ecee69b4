"""The receiver: switch it on, press keys, look at the picture. What a terminal, a browser or a test drives."""

import contextlib
import io
import sys
import traceback
from collections import deque
from types import SimpleNamespace

from receiver import picture
from receiver.actions import BREAK, LETTERS, MAKE, REPEAT
from receiver.data import env, walls
from receiver.data.epg_cache import eEPGCache
from receiver.gui import Gui
from receiver.layout import RESOLUTIONS, Skin
from receiver.places import HERE
from receiver.profile import PROFILES

CRASH_SECONDS = 10
CONSOLE_LINES = 500


class Console(io.TextIOBase):
    """The receiver's console: what its code prints, as the last lines and as a stream of lines to `on_line`."""

    def __init__(self):
        self.lines = deque(maxlen=CONSOLE_LINES)
        self.on_line = lambda line: None
        self._rest = ""

    def write(self, text):
        *lines, self._rest = (self._rest + text).split("\n")
        for line in lines:
            self.lines.append(line)
            with contextlib.redirect_stdout(sys.__stdout__):  # a listener that prints is not on this console
                self.on_line(line)
        return len(text)


def crash_view(trace, resolution):
    """The picture of a GUI that has ended with an error. No host module is needed for it."""
    # The marks under the source lines cost more room here than they tell.
    trace = "\n".join(line for line in trace.split("\n") if line.strip(" ^~") or not line.strip())
    skin = Skin(resolution)
    skin.load(HERE / "skin" / (resolution + ".xml"))
    layout = skin.layout(skin.screens["CrashScreen"])
    texts = {"trace": trace.strip("\n"), "hint": "The GUI starts again in a moment. OK: now"}
    return picture.view(layout, layout.title, {
        name: SimpleNamespace(text=text, visible=True, instance=None) for name, text in texts.items()})


class Receiver:
    """The box. Its GUI runs on `loop` (an asyncio loop); everything happens on the thread that runs the loop.

    One at a time in a process: the host modules are found on sys.path and in sys.modules, as on a box.

    etc -- the folder that plays /etc/enigma2
    root -- the folder that plays /, and in which all is written that is not in `etc`
    profile -- the image that the host modules imitate, a `Profile`
    resolution -- the desktop that its skins are made for, one of receiver.layout.RESOLUTIONS
    on_change -- called without arguments whenever the picture may have changed; set it to draw. It is called inside
                 the turn, possibly many times: draw later, once.
    """

    def __init__(self, loop, etc, root, profile=PROFILES["full"], resolution="hd"):
        env.configure(etc, root)
        self.loop = loop
        self.profile = profile
        self.resolution = resolution
        self.console = Console()
        self.on_change = lambda: None
        self.is_on = False
        self.crash = None
        self._gui = None
        self._restart_timer = None

    def switch_on(self):
        """Start the GUI; the plug-in opens by itself."""
        self.is_on = True
        self._start(show_plugin=True)

    def switch_off(self):
        """End the GUI in good order: what its screens have saved is in the settings file."""
        if self.is_on:
            if self.crash is None:
                self.guard(self._gui.save)
            self._gui.stop()
            self.is_on = False
            self.on_change()

    def press(self, key, repeats=0):
        """Press a key, one of receiver.actions.KEYS, keep it down until it has repeated that often, and release it."""
        self.key(key, MAKE)
        for _ in range(repeats):
            self.key(key, REPEAT)
        self.key(key, BREAK)

    def key(self, key, flag):
        """One event of a key: `flag` is MAKE, REPEAT or BREAK of receiver.actions."""
        if not self.is_on:
            return
        if self.crash is None:
            self.guard(self._gui.actions.deliver, key, flag)
        elif key == "ok" and flag == MAKE:
            self._start()

    def type(self, char):
        """A character of a keyboard, for a list that searches by name. Where none is open, the key that the letter means."""
        taken = []
        if self.is_on and self.crash is None:
            self.guard(lambda: taken.append(self._gui.actions.type(char)))
        if not any(taken) and char.lower() in LETTERS:
            self.press(LETTERS[char.lower()])

    def go_to(self, index):
        """Move the open list's cursor to a row, with the arrows: a screen may do more on these keys than move the cursor."""
        listbox = self._list()
        if listbox is None or not 0 <= index < len(listbox.rows):
            return
        key, step = ("down", 1) if index > listbox.cursor else ("up", -1)
        while index != listbox.cursor and not listbox.selectable(index):
            index -= step
        for _ in range(abs(index - listbox.cursor)):
            before = listbox.cursor
            self.press(key)
            if self._list() is not listbox or listbox.cursor in (index, before):
                break

    def scroll(self, rows):
        """Let the open list show what is further down by so many rows, or up; its cursor comes along."""
        listbox = self._list()
        if listbox is None:
            return
        first, last = listbox.window() + rows, len(listbox.rows) - 1
        self.go_to(min(max(listbox.cursor + rows, 0), last))
        listbox.first = min(max(first, 0), last)

    def _list(self):
        """The list widget of the screen on top, None if it has none or does not run."""
        screens = self._gui.session.screens() if self.is_on and self.crash is None and not self.is_closing else ()
        components = screens[-1].values() if screens else ()
        widgets = (component.instance for component in components if component.visible)
        return next(filter(None, widgets), None)

    @property
    def is_closing(self):
        """Whether a screen is just going: until the one below runs again, which takes a turn or two, nobody gets a key."""
        session = self._gui.session if self.is_on else None
        return session is not None and not session.in_exec

    def picture(self):
        """What the TV shows now, as a `picture.Picture`. An error of what paints a row ends the GUI as any other."""
        made, size = [], RESOLUTIONS[self.resolution]
        if self.is_on and self.crash is None:
            self._attempt(lambda: made.extend(picture.make(self._gui.session.screens(), *size)))
        if self.crash is not None:
            made = [crash_view(self.crash, self.resolution)]
        return picture.Picture(made if self.is_on else [], self._info(), *size)

    def guard(self, function, *arguments):
        """Call something of the GUI. An error ends the GUI: crash screen, then a new start. True if there was none."""
        passed = self._attempt(function, *arguments)
        self.on_change()
        return passed

    def _attempt(self, function, *arguments):
        try:
            with contextlib.redirect_stdout(self.console), walls.inside():
                function(*arguments)
        except Exception as error:
            # The first frame is the call above, which says nothing.
            trace = "".join(traceback.format_exception(type(error), error, error.__traceback__.tb_next))
            self.console.write(trace)
            if not self._forgive(error):
                self._gui.stop()
                self.crash = trace
                self._restart_timer = self.loop.call_later(CRASH_SECONDS, self._start)
            return False
        return True

    def _forgive(self, error):
        """Whether the GUI goes on after an error: where the image is forgiving, and one of the module's operations failed."""
        operations = [frame.f_code.co_name for frame, _ in traceback.walk_tb(error.__traceback__)]
        if not self.profile.forgiving or not any(name.startswith("Veltro.") for name in operations):
            return False
        try:
            with contextlib.redirect_stdout(self.console), walls.inside():
                self._gui.session.recover()
                self._gui.message("That could not be done.\n%s" % traceback.format_exception_only(error)[-1].strip())
        except Exception:
            self.console.write(traceback.format_exc())
            return False
        return True

    def _start(self, show_plugin=False):
        if not self.is_on:  # switched off while the crash screen was shown
            return
        if self._restart_timer is not None:
            self._restart_timer.cancel()
        self.crash = self._restart_timer = None
        self._gui = Gui(self)
        self.guard(self._gui.start, show_plugin)

    def _info(self):
        cache = eEPGCache.getInstance()
        in_file = cache.fileCounts()
        return [("EPG cache", _counts(cache.counts())),
                ("EPG file", "none" if in_file is None else _counts(in_file)),
                ("", cache.path)]


def _counts(counts):
    return "%s events, %s services" % tuple(format(count, ",") for count in counts)
