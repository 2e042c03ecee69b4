"""The file world of the module: `open` of the built-ins, `path` and `unlink` of os, and the console."""

import io
import os

from .recorder import Strict, recorder

real_open = open


class RecordingFile(Strict):
    """A real file, of which one sees what is done to it and whose every step can fail."""

    def __init__(self, real):
        self._real = real

    def read(self, *size):
        recorder.call("file.read")
        return self._real.read(*size)

    def readline(self):
        recorder.call("file.readline")
        return self._real.readline()

    def readlines(self):
        recorder.call("file.readlines")
        return self._real.readlines()

    def __iter__(self):
        recorder.look("file.__iter__")
        return self

    def __next__(self):
        recorder.look("file.__next__")
        return next(self._real)

    next = __next__

    def write(self, text):
        recorder.call("file.write", text)
        return self._real.write(text)

    def close(self):
        """The file is closed whatever happens, for that is what a failing close leaves behind."""
        self._real.close()
        recorder.call("file.close")

    def __enter__(self):
        return self

    def __exit__(self, *error):
        self.close()


def recording_open(*arguments, **keywords):
    recorder.call("open", *arguments, **keywords)
    return RecordingFile(real_open(*arguments, **keywords))


class Path(Strict):
    @staticmethod
    def exists(path):
        recorder.call("path.exists", path)
        return os.path.exists(path)


def unlink(path):
    recorder.call("unlink", path)
    os.unlink(path)


def system(command):
    raise AssertionError("nothing in the module runs a command: %r" % command)


class Console(object):
    """Stands in for sys.stdout. Every write is a call of its own."""

    def write(self, text):
        recorder.call("console", text)


def read_bytes(path):
    with io.open(path, "rb") as file:
        return file.read()


def write_bytes(path, data):
    with io.open(path, "wb") as file:
        file.write(data)
