"""A receiver to test with: switch it on, press keys, look at the picture. Its clock is virtual: nothing waits."""

import contextlib
import importlib
import io
import os
import shutil
import tempfile
import unittest
from dataclasses import replace
from pathlib import Path
from unittest import mock

from receiver import cli, options
from receiver.app import Receiver
from receiver.places import HERE
from receiver.loop import VirtualLoop
from receiver.profile import PROFILES

SAMPLE = HERE / "sample"


class TvTest(unittest.TestCase):
    """A test with a receiver, switched off, whose etc folder is a copy of the sample. `image` names its profile."""

    image = "full"

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.root = Path(folder.name) / "box"
        self.etc = self.root / "etc" / "enigma2"
        self.hdd = self.root / "media" / "hdd"
        shutil.copytree(SAMPLE, self.etc)
        boxes = mock.patch.dict(os.environ, VELTRO_BOXES=os.path.join(folder.name, "boxes"))
        boxes.start()
        self.addCleanup(boxes.stop)
        self.receiver = self.new_receiver()

    def new_receiver(self, **facts):
        """Another receiver with the same etc folder, on a host with other `facts` (fields of its profile)."""
        loop = VirtualLoop()
        self.addCleanup(loop.close)
        self.receiver = Receiver(loop, str(self.etc), str(self.root), replace(PROFILES[self.image], **facts))
        self.addCleanup(self.receiver.switch_off)
        return self.receiver

    def switch_on(self):
        self.receiver.switch_on()
        self.receiver.loop.settle()

    def restart(self):
        """Switch off and on, with all that has to survive in the files."""
        self.receiver.switch_off()
        self.new_receiver()
        self.switch_on()

    def press(self, keys):
        """Press keys, written as for --keys."""
        for _, step in options.parse_keys(keys):
            step(self.receiver)

    def run_in_gui(self, function, *arguments):
        """Call something the way the main loop does. Returns what it returns."""
        results = []
        self.receiver.guard(lambda: results.append(function(*arguments)))
        self.receiver.loop.settle()
        return results[0] if results else None

    def open(self, screen, *arguments, **kwargs):
        """Open a host screen on top. Returns the list into which the values go that it closes with."""
        results = []
        session = self.receiver._gui.session
        self.run_in_gui(lambda: session.openWithCallback(lambda *values: results.append(values), screen, *arguments,
                                                         **kwargs))
        return results

    @property
    def picture(self):
        return self.receiver.picture()

    @property
    def top(self):
        return self.picture.top

    def text(self, role):
        """The text of the top screen's box with this role; None when there is no such box."""
        return next((box.text for box in self.top.boxes if box.role == role), None)

    @property
    def list(self):
        """The top screen's list."""
        return next(box for box in self.top.boxes if box.rows is not None)

    @property
    def labels(self):
        return [row.label for row in self.list.rows]

    @property
    def selected(self):
        """The selected row, None in an empty list."""
        rows = [row for row in self.list.rows if row.selected]
        self.assertLessEqual(len(rows), 1)
        return rows[0] if rows else None

    def row(self, label):
        """The row with this label."""
        return next(row for row in self.list.rows if row.label == label)

    def go_to(self, label):
        """Move down to the row with this label."""
        for _ in range(self.list.total):
            if self.selected.label.startswith(label):
                return
            self.press("down")
        self.fail("no row %r in %r" % (label, self.labels))

    def assertShows(self, title):
        self.assertIsNone(self.receiver.crash)
        self.assertEqual(self.top.title, title)

    def info(self, label):
        return dict(self.picture.info)[label]


def host(module):
    """A host module of the receiver that runs now."""
    return importlib.import_module(module)


def value(path):
    """The value of a configuration key of the receiver that runs now."""
    element = host("Components.config").config
    for name in path.split("."):
        element = getattr(element, name)
    return element.value


def run_cli(*arguments):
    """Run the command line in this process: (exit code, standard output, standard error)."""
    out, err = io.StringIO(), io.StringIO()
    code = 0
    with contextlib.redirect_stdout(out), contextlib.redirect_stderr(err):
        try:
            cli.main(list(arguments))
        except SystemExit as exit:
            code = exit.code or 0
    return code, out.getvalue(), err.getvalue()


def has_module():
    return any((HERE.parent / os.environ.get("VELTRO_BUILD", "build/py3")).glob("Veltro*.so"))
