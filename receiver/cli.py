"""Runs the receiver as the command line says: in a browser, in a terminal, or with keys on a clock of its own."""

import asyncio
import contextlib
import logging
import os
import shutil
import signal
import subprocess
import sys
import time
from pathlib import Path

from receiver import text_tv
from receiver.app import Receiver
from receiver.layout import RESOLUTIONS
from receiver.loop import VirtualLoop
from receiver.options import UsageError, open_box, parse
from receiver.profile import PROFILES


def run_keys(receiver, steps, pictures, size):
    """Press the keys on a clock of the receiver's own and print what the TV shows."""
    def show(heading=""):
        print(heading + text_tv.text(receiver.picture(), *size))

    play(receiver, [])
    if pictures == "all":
        show()
    for word, step in steps:
        step(receiver)
        if pictures == "all":
            show("\n> %s\n\n" % word)
    if pictures != "all":
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
    print("The picture is in %s" % os.path.abspath(path))


def run_terminal(receiver):
    """The TV in this terminal. The console would disturb the picture: it goes to standard error if that is a file."""
    from receiver.terminal import Terminal
    if sys.stderr.isatty():
        receiver.console.on_line = lambda line: None
    Terminal(receiver, receiver.loop).run()


def run_browser(receiver, port):
    """The TV in a browser, which is opened if there is a desktop."""
    from aiohttp.http_exceptions import HttpProcessingError
    from receiver.web.server import Server
    server = Server(receiver)
    # What is no request (https, a port scan) is answered, and not worth a trace.
    logging.getLogger("aiohttp.server").addFilter(
        lambda record: not (record.exc_info and isinstance(record.exc_info[1], HttpProcessingError)))

    def ready():
        print("The TV is at %s   Ctrl-C ends it" % server.address, flush=True)
        if (os.environ.get("DISPLAY") or os.environ.get("WAYLAND_DISPLAY")) and shutil.which("xdg-open"):
            subprocess.Popen(["xdg-open", server.address], stdin=subprocess.DEVNULL, stdout=subprocess.DEVNULL,
                             stderr=subprocess.DEVNULL, start_new_session=True)

    receiver.loop.run_until_complete(server.run(port, ready))


def run(options):
    """Run the receiver as the options say."""
    scripted = options.keys is not None or options.shot is not None
    if options.terminal and not (sys.stdin.isatty() and sys.stdout.isatty()):
        raise UsageError("--terminal needs a terminal; --keys works without one")
    etc, root, lock = open_box(options.etc)
    with contextlib.ExitStack() as stack:
        stack.callback(os.close, lock)
        loop = stack.enter_context(contextlib.closing(VirtualLoop() if scripted else asyncio.new_event_loop()))
        start = time.time()
        try:
            receiver = Receiver(loop, etc, root, PROFILES[options.host], options.resolution,
                                now=(lambda: start + loop.time()) if scripted else time.time)
        except OSError as error:
            raise UsageError("the box's folder can't be made: %s: %s" % (error.filename, error.strerror)) from error
        receiver.console.on_line = lambda line: print(line, file=sys.stderr, flush=True)
        if options.shot is not None:
            run_shot(receiver, options.steps, options.shot)
        elif scripted:
            run_keys(receiver, options.steps, options.pictures, options.size or (100, 37))
        elif options.terminal:
            run_terminal(receiver)
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
