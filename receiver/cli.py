"""The command line: which receiver to run, and what drives it."""

import argparse
import asyncio
import contextlib
import os
import re
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

from receiver import text_tv
from receiver.actions import KEYS
from receiver.app import Receiver
from receiver.places import HERE
from receiver.layout import RESOLUTIONS
from receiver.loop import VirtualLoop
from receiver.profile import PROFILES

SAMPLE = HERE / "sample"
SAMPLE_COPY = HERE.parent / "build" / "etc"

HELP = """
Without --terminal, --keys or --shot the TV is shown in a browser, at http://127.0.0.1:8420.

keys in the browser and in the terminal:
  arrows, Enter, Esc          the arrows, OK, EXIT
  F1 F2 F3 F4                 RED GREEN YELLOW BLUE
  0-9, t, r, m, i, e          digits, TV, RADIO, MENU, INFO, EPG
  PageUp PageDown Home End    CHANNEL+ CHANNEL- PREVIOUS NEXT
  q                           in the terminal: switch the receiver off
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
        prog="script/run", description="A small enigma2-like receiver that runs Veltro.",
        epilog=HELP % words, formatter_class=argparse.RawDescriptionHelpFormatter, allow_abbrev=False)
    parser.error = _usage_error
    parser.add_argument("--etc", metavar="DIR", help="use a receiver's own /etc/enigma2 folder, in place: settings and "
                        "blacklist are written there; without it a sample in build/etc is used")
    parser.add_argument("--host", choices=PROFILES, default="full",
                        help="the image to be like, with what it lacks and does in its own way; full (default) has "
                        "everything that plug-ins ask for")
    parser.add_argument("--skin", choices=RESOLUTIONS, default="hd", dest="resolution",
                        help="the desktop that skins are made for: hd is 1280x720 (default), fhd 1920x1080")
    parser.add_argument("--port", metavar="N", type=_port, help="the TV in a browser: listen on this port of this "
                        "machine; 0 takes any free one (default 8420, or a free one if that is taken)")
    parser.add_argument("--terminal", action="store_true", help="the TV in this terminal")
    parser.add_argument("--keys", metavar="KEYS", help="press these keys, separated by blanks, without a terminal, and "
                        "print the picture as text")
    parser.add_argument("--print", choices=("all", "last"), default="last", dest="pictures",
                        help="with --keys: print the picture after every key, or the last one only (default)")
    parser.add_argument("--size", metavar="COLUMNSxLINES", type=_size, default=(100, 37),
                        help="with --keys: the printed picture's size in characters (default 100x37)")
    parser.add_argument("--shot", metavar="FILE.png", help="write the picture, after --keys if there are any, as a PNG")
    return parser.parse_args(command_line)


def _port(text):
    if not text.isdigit() or int(text) > 65535:
        raise argparse.ArgumentTypeError("a port is a number up to 65535: %s" % text)
    return int(text)


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


def run_keys(receiver, steps, pictures, size):
    """Press the keys on a clock of the receiver's own and print what the TV shows."""
    def show(heading=""):
        print(heading + text_tv.draw(receiver.picture(), *size).text())

    play(receiver, [])
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


def play(receiver, steps):
    """Switch a receiver on a virtual loop on, and press the keys."""
    receiver.switch_on()
    receiver.loop.settle()
    for _, step in steps:
        step(receiver)


def run_shot(receiver, steps, path):
    """Press the keys on a clock of the receiver's own and write the picture as a PNG."""
    from receiver.web import camera
    play(receiver, steps)
    document = camera.picture_document(receiver)
    receiver.switch_off()
    try:
        with camera.browser() as browser:
            image = camera.photograph(browser, document, *RESOLUTIONS[receiver.resolution])
        Path(path).write_bytes(image)
    except OSError as error:
        raise UsageError("--shot: %s: %s" % (path, error.strerror)) from error
    except camera.NoBrowser as error:
        raise UsageError("--shot: %s" % error) from error


def run_terminal(receiver):
    """The TV in this terminal. The console would disturb the picture: it goes to standard error if that is a file."""
    from receiver.terminal import Terminal
    if sys.stderr.isatty():
        receiver.console.on_line = lambda line: None
    Terminal(receiver, receiver.loop).run()


def run_browser(receiver, port):
    """The TV in a browser, which is opened if there is a desktop."""
    from receiver.web.server import PortTaken, Server
    server = Server(receiver)

    def ready():
        print("The TV is at %s   Ctrl-C ends it" % server.address, flush=True)
        if (os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY")) and shutil.which("xdg-open"):
            subprocess.Popen(["xdg-open", server.address], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL, start_new_session=True)

    try:
        receiver.loop.run_until_complete(server.run(port, ready))
    except PortTaken as error:
        raise UsageError("--port: %s" % error) from error


def run(options):
    """Run the receiver as the options say."""
    steps = parse_keys(options.keys or "")
    scripted = options.keys is not None or options.shot is not None
    if options.terminal and not scripted and not (sys.stdin.isatty() and sys.stdout.isatty()):
        raise UsageError("--terminal needs a terminal; --keys works without one")
    with contextlib.closing(VirtualLoop() if scripted else asyncio.new_event_loop()) as loop:
        start = time.time()
        receiver = Receiver(loop, etc_folder(options.etc), PROFILES[options.host], options.resolution,
                            now=(lambda: start + loop.time()) if scripted else time.time)
        receiver.console.on_line = lambda line: print(line, file=sys.stderr, flush=True)
        if options.shot is not None:
            run_shot(receiver, steps, options.shot)
        elif scripted:
            run_keys(receiver, steps, options.pictures, options.size)
        elif options.terminal:
            run_terminal(receiver)
        else:
            run_browser(receiver, options.port)


def main(command_line=None):
    try:
        run(arguments(command_line))
    except UsageError as error:
        print("script/run: %s" % error, file=sys.stderr)
        sys.exit(2)
    except KeyboardInterrupt:
        sys.exit(128 + signal.SIGINT)
    except BrokenPipeError:
        # Whoever read the pictures has seen enough; the interpreter must not complain at its end either.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
