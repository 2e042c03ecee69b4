"""A test with a box and a temporary folder; what is printed is kept in `console`."""

import os
import shutil
import sys
import tempfile
import unittest

from tests.entry.box import BINARY, PYTHON2, Box

try:
    from StringIO import StringIO  # takes bytes and text alike, as 2.7 prints both
except ImportError:
    from io import StringIO


class BoxTest(unittest.TestCase):
    facts = {}
    plugin = None

    def setUp(self):
        self.folder = tempfile.mkdtemp()
        self.addCleanup(shutil.rmtree, self.folder)
        self.box = Box(**self.facts)
        self.box.install()
        self.addCleanup(self.box.remove)
        self._stdout, sys.stdout = sys.stdout, StringIO()
        self.addCleanup(setattr, sys, "stdout", self._stdout)

    @property
    def console(self):
        return sys.stdout.getvalue()

    @property
    def config(self):
        return self.box.config

    def path(self, *names):
        return os.path.join(self.folder, *names)

    def write(self, name, data=b"old events"):
        with open(self.path(name), "wb") as file:
            file.write(data)
        return self.path(name)

    def import_entry(self, *folders):
        """Import the plug-in's entry, once, without loading the compiled module."""
        self.plugin = self.plugin or self.box.plugin(*folders)
        return self.plugin

    def load(self):
        """The compiled module on this box."""
        if PYTHON2 and not os.path.exists(BINARY):
            self.skipTest("no binary for Python 2.7: its headers are not here")
        self.import_entry()
        self.module = self.plugin.load()
        return self.module


def text_of(data):
    """A text as hosts have it: bytes on Python 2.7, and on 3 what is no UTF-8 as lone surrogates."""
    return data if PYTHON2 else data.decode("utf-8", "surrogateescape")


def press(screen, name, action):
    """Have one of a screen's action maps deal with an action, as the host does; 0: it leaves the key to others."""
    return screen[name].action(screen[name].contexts[0], action)
