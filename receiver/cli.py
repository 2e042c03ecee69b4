"""Runs the receiver as the command line says: in a browser, in a terminal, or with keys on a clock of its own. Each of these
has a library that takes a while to load: only the one that is needed is imported.
"""

import asyncio
import contextlib
import fcntl
import hashlib
import logging
import os
import shutil
import signal
import subprocess
import sys
from pathlib import Path

from receiver.app import Receiver
from receiver.data import env
from receiver.layout import RESOLUTIONS
from receiver.loop import VirtualLoop
from receiver.options import UsageError, check_folder, parse
from receiver.places import HERE
from receiver.profile import PROFILES

SAMPLE = HERE / "sample"


def run_script(receiver, options):
    """Press the keys on a clock of the receiver's own, and print what the TV shows or write it as a PNG."""
    from receiver import text_tv

    def show(heading=""):
        print(heading + text_tv.text(receiver.picture(), *(options.size or (100, 37))))

    each = options.pictures == "all"
    receiver.switch_on()
    receiver.loop.settle()
    if each:
        show()
    for word, step in options.steps:
        step(receiver)
        if each:
            show("\n> %s\n\n" % word)
    if options.shot is not None:
        write_shot(receiver, options.shot)
    elif not each:
        show()
    receiver.switch_off()
    sys.stdout.flush()


def write_shot(receiver, path):
    """Write the picture as a PNG, and switch the receiver off."""
    from receiver.web import camera, html
    document = html.document(html.fragment(receiver.picture()), camera.PAGES, "picture")
    receiver.switch_off()
    try:
        with camera.browser() as browser:
            Path(path).write_bytes(camera.photograph(browser, document, *RESOLUTIONS[receiver.resolution]))
    except OSError as error:
        raise UsageError("--shot: %s: %s" % (path, error.strerror)) from error
    print("The picture is in %s" % os.path.abspath(path))


def run_browser(receiver, port):
    """The TV in a browser, which is opened if there is a desktop."""
    from aiohttp.http_exceptions import HttpProcessingError
    from receiver.web.server import Server
    # What is no request (https, a port scan) is answered, and not worth a trace.
    logging.getLogger("aiohttp.server").addFilter(
        lambda record: not (record.exc_info and isinstance(record.exc_info[1], HttpProcessingError)))

    def ready(address):
        print("The TV is at %s   Ctrl-C ends it" % address, flush=True)
        if (os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY")) and shutil.which("xdg-open"):
            subprocess.Popen(["xdg-open", address], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL, start_new_session=True)

    Server(receiver).run(port, ready)


@contextlib.contextmanager
def open_box(chosen):
    """(etc, root) of the receiver's box for a folder given with --etc, or for None. No other receiver gets it meanwhile.

    UsageError when another one has it, or when it can't be made.
    """
    boxes = Path(os.environ.get("VELTRO_BOXES") or HERE.parent / "build" / "box")
    try:
        if chosen is None:
            root = boxes / "sample"
            etc = root / "etc" / "enigma2"
            if not etc.exists():
                shutil.copytree(SAMPLE, etc)
        else:
            check_folder(chosen)
            etc = Path(chosen).resolve()
            root = boxes / ("%s-%s" % (etc.name, hashlib.sha256(os.fsencode(etc)).hexdigest()[:8]))
        env.configure(etc, root)
        lock = os.open(etc, os.O_RDONLY | os.O_DIRECTORY)
    except OSError as error:
        raise UsageError("the box's folder can't be made: %s: %s" % (error.filename, error.strerror)) from error
    with contextlib.ExitStack() as stack:
        stack.callback(os.close, lock)
        try:
            fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        except BlockingIOError:
            raise UsageError("another receiver has this folder: %s" % etc) from None
        except OSError:
            pass  # a file system without locks
        yield str(etc), str(root)


def run(options):
    """Run the receiver as the options say."""
    scripted = options.keys is not None or options.shot is not None
    if options.terminal and not (sys.stdin.isatty() and sys.stdout.isatty()):
        raise UsageError("--terminal needs a terminal; --keys works without one")
    new_loop = VirtualLoop if scripted else asyncio.new_event_loop
    with open_box(options.etc) as (etc, root), contextlib.closing(new_loop()) as loop:
        receiver = Receiver(loop, etc, root, PROFILES[options.host], options.resolution)
        if not (options.terminal and sys.stderr.isatty()):  # where it would disturb the picture
            receiver.console.on_line = lambda line: print(line, file=sys.stderr, flush=True)
        if scripted:
            run_script(receiver, options)
        elif options.terminal:
            from receiver.terminal import Terminal
            Terminal(receiver).run()
        else:
            run_browser(receiver, options.port)


def main(command_line=None):
    """The program. A locale that lacks some of the characters gets others in their place."""
    for stream in (sys.stdout, sys.stderr):
        if hasattr(stream, "reconfigure"):
            stream.reconfigure(errors="replace")
    try:
        run(parse(command_line))
    except UsageError as error:
        print("script/run: %s" % error, file=sys.stderr)
        sys.exit(2)
    except KeyboardInterrupt:
        sys.exit(128 + signal.SIGINT)
    except BrokenPipeError:
        # Whoever read the pictures has seen enough; the interpreter must not complain at its end either.
        os.dup2(os.open(os.devnull, os.O_WRONLY), sys.stdout.fileno())
