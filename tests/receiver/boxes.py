"""A throw-away etc folder and a recorded console for the tests of the receiver's data side."""
import os
import tempfile
import unittest
from unittest import mock

from receiver.data import env

SAMPLE = os.path.join(os.path.dirname(os.path.abspath(env.__file__)), os.pardir, "sample")


class BoxTest(unittest.TestCase):
    """Each test has its own `etc` folder, chosen in `env`; `console` collects the console lines."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.etc = os.path.join(folder.name, "box settings")
        self.root = os.path.join(folder.name, "root")
        self.hdd = os.path.join(self.root, "media", "hdd")
        os.mkdir(self.etc)
        self.console = []
        for name in ("etc", "root"):
            self.addCleanup(setattr, env, name, getattr(env, name))
        env.configure(self.etc, self.root)
        log = mock.patch.object(env, "log", self.console.append)
        log.start()
        self.addCleanup(log.stop)

    def write(self, name, data):
        """Write a file of the etc folder; text goes out as UTF-8, line ends as they are. Its path."""
        path = os.path.join(self.etc, name)
        os.makedirs(os.path.dirname(path), exist_ok=True)
        with open(path, "wb") as file:
            file.write(data if isinstance(data, bytes) else data.encode())
        return path

    def read(self, name):
        """The bytes of a file of the etc folder."""
        with open(os.path.join(self.etc, name), "rb") as file:
            return file.read()

    def complaint(self, *words):
        """Assert that exactly one console line was printed, with these words in it."""
        self.assertEqual(len(self.console), 1, self.console)
        for word in words:
            self.assertIn(word, self.console[0])
