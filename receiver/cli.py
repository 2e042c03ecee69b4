"""The command line: which receiver to run, and what drives it."""

import argparse
import asyncio
import contextlib
import os
import re
import shutil
import sys

from receiver import text_tv
from receiver.actions import KEYS
from receiver.app import Receiver
from receiver.gui import HERE
from receiver.loop import VirtualLoop
from receiver.profile import PROFILES

SAMPLE = HERE / "sample"
SAMPLE_COPY = HERE.parent / "build" / "etc"

HELP = """
keys in the terminal:
  arrows, Enter, Esc          the arrows, OK, EXIT
  F1 F2 F3 F4                 RED GREEN YELLOW BLUE
  0-9, t, r, m, i, e          digits, TV, RADIO, MENU, INFO, EPG
  PageUp PageDown Home End    CHANNEL+ CHANNEL- PREVIOUS NEXT
  q                           switch the receiver off
The receiver's console is on standard error: seen with --keys, kept with 2>FILE.

words for --keys:
  %s
  KEY*N        press a key N times, for instance down*3
  hold:KEY*N   keep a key pressed until it has repeated N times
  wait:TIME    let time go by without waiting for it: wait:500ms, wait:15s, wait:30m, wait:2h
"""


class UsageError(Exception):
    """What the user asked for can't be done; the text says why in one line."""


def arguments(command_line):
    words = re.sub(r"(.{1,70})(?: |$)", r"\1\n  ", " ".join(KEYS)).strip()
    parser = argparse.ArgumentParser(
        prog="script/run", description="A small enigma2-like receiver that runs Veltro in the terminal.",
        epilog=HELP % words, formatter_class=argparse.RawDescriptionHelpFormatter, allow_abbrev=False)
    parser.error = _usage_error
    parser.add_argument("--etc", metavar="DIR", help="use a receiver's own /etc/enigma2 folder, in place: settings and "
                        "blacklist are written there; without it a sample in build/etc is used")
    parser.add_argument("--keys", metavar="KEYS", help="press these keys, separated by blanks, without a terminal, and "
                        "print the picture as text")
    parser.add_argument("--print", choices=("all", "last"), default="last", dest="pictures",
                        help="with --keys: print the picture after every key, or the last one only (default)")
    parser.add_argument("--size", metavar="COLUMNSxLINES", type=_size, default=(100, 37),
                        help="with --keys: the printed picture's size in characters (default 100x37)")
    return parser.parse_args(command_line)


def _usage_error(message):
    raise UsageError(message)


def _size(text):
    match = re.fullmatch(r"(\d+)x(\d+)", text)
    if not match or int(match[1]) < 20 or int(match[2]) < 6:
        raise argparse.ArgumentTypeError("a size is COLUMNSxLINES, at least 20x6: %s" % text)
    return int(match[1]), int(match[2])


def parse_keys(text):
    """The words of --keys as (word, function of a receiver on a virtual loop) pairs."""
    return [(word, _parse_word(word)) for word in text.split()]


def _parse_word(word):
    wait = re.fullmatch(r"wait:(\d+)(ms|s|m|h)", word)
    if wait:
        seconds = int(wait[1]) * {"ms": 0.001, "s": 1, "m": 60, "h": 3600}[wait[2]]
        return lambda receiver: receiver.loop.advance(seconds)
    press = re.fullmatch(r"(hold:)?([a-z0-9]+)(?:\*(\d+))?", word)
    if not press or press[2] not in KEYS:
        raise UsageError("unknown key: %s (--help lists them)" % word)
    hold, key, times = press[1], press[2], int(press[3] or 1)
    return lambda receiver: _hold(receiver, key, times) if hold else _press(receiver, key, times)


def _press(receiver, key, times):
    for _ in range(times):
        receiver.press(key)
        receiver.loop.settle()


def _hold(receiver, key, repeats):
    receiver.hold(key, repeats)
    receiver.loop.settle()


def etc_folder(chosen):
    """The folder to use as /etc/enigma2: the chosen one, or the copy of the sample, which is made if need be."""
    if chosen is None:
        if not SAMPLE_COPY.exists():
            shutil.copytree(SAMPLE, SAMPLE_COPY)
        return str(SAMPLE_COPY)
    if not os.path.isdir(chosen):
        raise UsageError("--etc: no such folder: %s" % chosen)
    if not os.access(chosen, os.R_OK | os.X_OK):
        raise UsageError("--etc: not readable: %s" % chosen)
    return chosen


def run_keys(loop, etc, profile, steps, pictures, size):
    """Press the keys on a clock of the receiver's own and print what the TV shows."""
    receiver = Receiver(loop, etc, profile)
    receiver.console.on_line = lambda line: print(line, file=sys.stderr)

    def show(heading=""):
        print(heading + text_tv.draw(receiver.picture(), *size).text())

    receiver.switch_on()
    loop.settle()
    if pictures == "all":
        show()
    for word, step in steps:
        step(receiver)
        if pictures == "all":
            show("\n> %s\n\n" % word)
    if pictures == "last":
        show()
    receiver.switch_off()
    sys.stdout.flush()


def run_terminal(loop, etc, profile):
    """The TV in this terminal. The console would disturb the picture: it goes to standard error if that is a file."""
    from receiver.terminal import Terminal
    receiver = Receiver(loop, etc, profile)
    if not sys.stderr.isatty():
        receiver.console.on_line = lambda line: print(line, file=sys.stderr, flush=True)
    Terminal(receiver, loop).run()


def main(command_line=None):
    try:
        options = arguments(command_line)
        steps = parse_keys(options.keys or "")
        etc = etc_folder(options.etc)
        profile = PROFILES["full"]
        if options.keys is not None:
            with contextlib.closing(VirtualLoop()) as loop:
                run_keys(loop, etc, profile, steps, options.pictures, options.size)
        elif sys.stdin.isatty() and sys.stdout.isatty():
            with contextlib.closing(asyncio.new_event_loop()) as loop:
                run_terminal(loop, etc, profile)
        else:
            raise UsageError("the TV needs a terminal; --keys works without one")
    except UsageError as error:
        print("script/run: %s" % error, file=sys.stderr)
        sys.exit(2)
    except BrokenPipeError:
        # Whoever read the pictures has seen enough; the interpreter must not complain at its end either.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
