"""The command line's words: what they mean, and which of them can't be done. Needs nothing but Python, so that
script/run can answer before anything is installed or built.
"""

import argparse
import itertools
import os
import re
import sys

from receiver.actions import KEYS
from receiver.layout import RESOLUTIONS
from receiver.profile import PROFILES

LISTS = ("lamedb", "lamedb5", "bouquets.tv", "bouquets.radio")
HELP_SHOWN = 10  # exit code for script/run: there is nothing more to do
NEARBY = 500  # folders to look at for lists

HELP = """
Without --terminal, --keys or --shot the TV is shown in a browser, at http://127.0.0.1:8420.

what is written:
  The box's folders (/media/hdd, /media/usb ...) are below build/box of this project, a box for each
  --etc folder. In the --etc folder itself: settings, blacklist_dvb_epg, with --host openvix its
  blacklist.eit, and an EPG file of the receiver's own making if you choose that place. What else is
  in it is never changed, nor is anything outside these two.

keys in the browser and in the terminal:
  arrows, Enter, Esc          the arrows, OK, EXIT
  F1 F2 F3 F4                 RED GREEN YELLOW BLUE
  0-9, T, R, M, I, E          digits, TV, RADIO, MENU, INFO, EPG
  letters without Shift       search in the channel list
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


def parse(command_line):
    """The options, of which all go together. UsageError; SystemExit after --help."""
    words = re.sub(r"(.{1,70})(?: |$)", r"\1\n  ", " ".join(KEYS)).strip()
    parser = argparse.ArgumentParser(
        prog="script/run", description="A small enigma2-like receiver that runs Veltro.",
        epilog=HELP % words, formatter_class=argparse.RawDescriptionHelpFormatter, allow_abbrev=False)
    parser.error = _usage_error
    add = parser.add_argument
    add("--etc", metavar="DIR", help="use a receiver's own /etc/enigma2 folder, in place, instead of a sample: the folder "
        "that holds lamedb and bouquets.tv")
    add("--host", choices=PROFILES, default="full", help="the image to be like, with what it lacks and does in its own way; "
        "full (default) has everything that plug-ins ask for")
    add("--skin", choices=RESOLUTIONS, default="hd", dest="resolution", help="the desktop that skins are made for: hd is "
        "1280x720 (default), fhd 1920x1080")
    add("--port", metavar="N", type=_port, help="the TV in a browser: listen on this port of this machine; 0 takes any free "
        "one (default 8420, or a free one if that is taken)")
    add("--terminal", action="store_true", help="the TV in this terminal")
    add("--keys", metavar="KEYS", help="press these keys, separated by blanks, without a terminal, and print the picture "
        "as text")
    add("--print", choices=("all", "last"), dest="pictures", help="with --keys: print the picture after every key, or the "
        "last one only (default)")
    add("--size", metavar="COLUMNSxLINES", type=_size, help="with --keys: the printed picture's size in characters "
        "(default 100x37)")
    add("--shot", metavar="FILE.png", help="write the picture, after --keys if there are any, as a PNG")
    options = parser.parse_args(command_line)
    _check_together(options)
    options.steps = parse_keys(options.keys or "")
    return options


def _check_together(options):
    """UsageError for an option that would do nothing beside the others."""
    scripted = options.keys is not None or options.shot is not None
    printed = options.keys is not None and options.shot is None
    for given, fits, problem in (
            (options.terminal, not scripted, "--terminal goes neither with --keys nor with --shot"),
            (options.port is not None, not scripted and not options.terminal,
             "--port is for the TV in a browser: it goes with none of --terminal, --keys and --shot"),
            (options.pictures, printed, "--print needs --keys, and goes not with --shot"),
            (options.size, printed, "--size needs --keys, and goes not with --shot")):
        if given and not fits:
            raise UsageError(problem)


def _port(text):
    if not (text.isascii() and text.isdigit()) or int(text) > 65535:
        raise argparse.ArgumentTypeError("a port is a number up to 65535: %s" % text)
    return int(text)


def _usage_error(message):
    raise UsageError(message)


def _size(text):
    match = re.fullmatch(r"([0-9]{1,3})x([0-9]{1,3})", text)
    if not match or int(match[1]) < 20 or int(match[2]) < 6:
        raise argparse.ArgumentTypeError("a size is COLUMNSxLINES, from 20x6 to 999x999: %s" % text)
    return int(match[1]), int(match[2])


def parse_keys(text):
    """The words of --keys as (word, function of a receiver on a virtual loop) pairs."""
    return [(word, _parse_word(word)) for word in text.split()]


def _parse_word(word):
    wait = re.fullmatch(r"wait:([0-9]{1,6})(ms|s|m|h)", word)
    if wait:
        seconds = int(wait[1]) * {"ms": 0.001, "s": 1, "m": 60, "h": 3600}[wait[2]]
        return lambda receiver: receiver.loop.advance(seconds)
    press = re.fullmatch(r"(hold:)?([a-z0-9]+)(?:\*([0-9]{1,6}))?", word)
    if not press or press[2] not in KEYS:
        raise UsageError("unknown key: %s (--help lists them)" % word)
    times = int(press[3] or 1)
    presses, repeats = (1, times) if press[1] else (times, 0)  # pressed is held without repeating

    def step(receiver):
        for _ in range(presses):
            receiver.press(press[2], repeats)
            receiver.loop.settle()
    return step


def check_folder(folder):
    """UsageError unless the folder can be used as /etc/enigma2."""
    if not os.path.isdir(folder):
        raise UsageError("--etc: no such folder: %s" % folder)
    if not os.access(folder, os.R_OK | os.X_OK):
        raise UsageError("--etc: not readable: %s" % folder)
    if not _has_lists(folder):
        found = _lists_near(folder)
        raise UsageError("--etc: no channel lists in %s: neither lamedb nor bouquets.tv%s"
                         % (folder, "; there are some in " + found if found else ""))


def _has_lists(folder):
    return any(os.path.exists(os.path.join(folder, name)) for name in LISTS)


def _lists_near(folder):
    """A folder with channel lists below this one or just above it, or None."""
    below = (place for place, _, _ in os.walk(folder))
    places = [*itertools.islice(below, NEARBY), os.path.dirname(os.path.abspath(folder))]
    return next(filter(_has_lists, places), None)


def main():
    """For script/run: answer what needs no receiver."""
    try:
        options = parse(sys.argv[1:])
        if options.etc is not None:
            check_folder(options.etc)
    except UsageError as error:
        print("script/run: %s" % error, file=sys.stderr)
        sys.exit(2)
    except SystemExit:
        sys.exit(HELP_SHOWN)


if __name__ == "__main__":
    main()
