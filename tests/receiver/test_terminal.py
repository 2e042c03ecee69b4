"""The terminal TV, in a terminal of the test's own."""

import fcntl
import os
import pty
import select
import signal
import struct
import subprocess
import sys
import termios
import time

import pyte

from receiver.places import HERE
from tests.receiver.tv import TvTest

ENTER, LEAVE, SHOW_CURSOR = b"\x1b[?1049h", b"\x1b[?1049l", b"\x1b[?25h"
PATIENCE = 20


class TerminalTest(TvTest):
    def setUp(self):
        super().setUp()
        self.master, self.slave = pty.openpty()
        self.addCleanup(os.close, self.master)
        self.addCleanup(os.close, self.slave)
        self.screen = pyte.Screen(100, 40)
        self.stream = pyte.ByteStream(self.screen)
        self.resize(100, 40)
        self.before = termios.tcgetattr(self.slave)
        self.output = b""
        self.process = None

    def start(self, *command):
        self.process = subprocess.Popen(
            command or [sys.executable, "-m", "receiver", "--terminal", "--etc", str(self.etc)], cwd=HERE.parent, stdin=self.slave,
            stdout=self.slave, stderr=subprocess.PIPE, start_new_session=True,
            env={**os.environ, "TERM": "xterm-256color", "COLORTERM": "truecolor", "LC_ALL": "C.UTF-8"})
        self.addCleanup(self.process.stderr.close)
        self.addCleanup(self.process.kill)

    def resize(self, columns, lines):
        self.screen.resize(lines, columns)
        fcntl.ioctl(self.master, termios.TIOCSWINSZ, struct.pack("HHHH", lines, columns, 0, 0))
        if getattr(self, "process", None):
            self.process.send_signal(signal.SIGWINCH)

    def read(self):
        """Show on the screen what the terminal gets, for a moment."""
        if select.select([self.master], [], [], 0.05)[0]:
            data = os.read(self.master, 65536)
            self.output += data
            self.stream.feed(data)

    def read_until(self, text, gone=None):
        """Read until the screen shows a text, and another no more."""
        begin = time.monotonic()
        while True:
            shown = "\n".join(self.screen.display)
            if text in shown and (gone is None or gone not in shown):
                return
            self.assertLess(time.monotonic() - begin, PATIENCE, "%r never came:\n%s" % (text, shown))
            self.read()

    def type(self, keys, then="", gone=None):
        os.write(self.master, keys)
        self.read_until(then, gone)

    def finish(self):
        """Wait for the end; the terminal must be as before."""
        begin = time.monotonic()
        while self.process.poll() is None:
            self.assertLess(time.monotonic() - begin, PATIENCE, "it did not end")
            self.read()
        while select.select([self.master], [], [], 0.05)[0]:
            self.read()
        self.assertEqual(termios.tcgetattr(self.slave), self.before)
        self.assertEqual((self.output.count(ENTER), self.output.count(LEAVE)), (1, 1))
        self.assertGreater(self.output.rindex(SHOW_CURSOR), self.output.rindex(b"\x1b[?25l"))
        return self.process.returncode

    def test_keys_and_quit(self):
        self.start()
        self.read_until("▶ Multi-EPG")
        self.type(b"\x1b[B", "▶ Show icon")
        self.type(b"\x1bOA", "▶ Multi-EPG")
        self.type(b"\x1b[C", "◂ yes ●")
        self.type(b"\x1bOP", "Really close")
        self.type(b"\x1b", gone="Really close")
        self.type(b"\x1b[6~" + b"\x1bOQ", "Main menu")
        self.type(b"\r", "ORSA Veltro")
        os.write(self.master, b"q")
        self.assertEqual(self.finish(), 0)
        self.assertIn("config.usage.multiepg_ask_bouquet=True", (self.etc / "settings").read_text())

    def test_tv_radio_digits(self):
        self.start()
        self.read_until("▶ Multi-EPG")
        self.type(b"\x1b[B" * 15, "▶ Edit blacklist")
        self.type(b"\r", "Add Service")
        self.type(b"\x1bOS", "(TV)")
        self.type(b"r", "▶ ▪ Regional")  # letters search in the channel list, with Shift they are keys
        self.type(b"R", "(Radio)")
        self.type(b"T", "(TV)")
        self.type(b"\x1b", "Add Service")
        os.write(self.master, b"q")
        self.assertEqual(self.finish(), 0)

    def test_follows_the_size(self):
        self.start()
        self.read_until("EPG cache")
        for columns, lines, last in ((60, 20, "EPG cache"), (140, 50, "/media/hdd/epg.dat"), (5, 2, "▶"), (100, 41, "/media/hdd/epg.dat")):
            self.screen.reset()
            self.resize(columns, lines)
            self.read_until(last)
        self.type(b"\x1b[B", "▶ Show icon")
        os.write(self.master, b"\x03")
        self.assertEqual(self.finish(), 0)

    def test_signals_switch_it_off(self):
        for number in (signal.SIGTERM, signal.SIGHUP, signal.SIGINT):
            self.output = b""
            self.screen.reset()
            self.start()
            self.read_until("EPG cache")
            self.process.send_signal(number)
            self.assertEqual(self.finish(), 0)

    def test_the_menu_switches_it_off(self):
        self.start()
        self.read_until("▶ Multi-EPG")
        self.type(b"\x1b", "Main menu")
        self.type(b"\x1b[B", "▶ Switch")
        os.write(self.master, b"\r")
        self.assertEqual(self.finish(), 0)

    def test_an_error_of_the_drawer(self):
        self.start(sys.executable, "-c", (
            "import sys; from receiver import cli, text_tv\n"
            "draw = text_tv.TextTv.write_to_screen\n"
            "def fail(self, *arguments, **keywords):\n"
            "    if self._picture().top.title != 'ORSA Veltro': raise ValueError('out of paint')\n"
            "    draw(self, *arguments, **keywords)\n"
            "text_tv.TextTv.write_to_screen = fail\n"
            "cli.main(['--terminal', '--etc', sys.argv[1]])"), str(self.etc))
        self.read_until("▶ Multi-EPG")
        os.write(self.master, b"\x1b")
        self.assertEqual(self.finish(), 1)
        self.assertIn(b"out of paint", self.process.stderr.read())

    def test_an_error_of_a_screen_is_the_crash_screen(self):
        self.start(sys.executable, "-c", (
            "import sys; from receiver import cli, gui\n"
            "start = gui.Gui.start\n"
            "def patched(self, first_plugin=False):\n"
            "    start(self, first_plugin)\n"
            "    if first_plugin: self.loop.call_later(1, self.guard, lambda: 1 / 0)\n"
            "gui.Gui.start = patched\n"
            "cli.main(['--terminal', '--etc', sys.argv[1]])"), str(self.etc))
        self.read_until("▶ Multi-EPG")
        self.read_until("ZeroDivisionError: division by zero")
        self.type(b"\r", "Main menu")
        os.write(self.master, b"q")
        self.assertEqual(self.finish(), 0)
