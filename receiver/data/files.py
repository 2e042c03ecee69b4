"""Reading and writing whole files so that no byte and no old file gets lost."""
import contextlib
import os
import shutil

from . import env, walls


def decode(data):
    """Bytes of a box's text file as str; bytes that are no UTF-8 survive as surrogates."""
    return data.decode("utf-8", "surrogateescape")


def encode(text):
    """The exact bytes that `decode` got."""
    return text.encode("utf-8", "surrogateescape")


def read_file(path):
    """The bytes of a file. OSError when it can't be read, also when it is a pipe, a device or gigantic."""
    with walls.outside():
        path = env.real(path)
        walls.check_readable(path)
        with open(path, "rb") as file:
            return file.read(walls.LARGEST)


def read_lines(path):
    """The lines of a text file without their "\\n"; only that ends a line, names may hold any other control character."""
    lines = decode(read_file(path)).removeprefix("\ufeff").split("\n")
    return lines if lines[-1] else lines[:-1]


def write_atomically(path, data):
    """Replace the file at `path` by `data` (bytes): after a crash at any moment it holds the old or the new content.

    A link inside the root is followed, the old file's mode is kept. OSError when it fails; the old file is then untouched
    and no temporary file is left.
    """
    path = walls.for_writing(path)
    temporary = path + ".writing"
    with walls.outside():
        with contextlib.suppress(FileNotFoundError):
            os.unlink(temporary)  # a crash has left it, or it is a link that must not be followed
        try:
            with open(temporary, "xb") as file:
                file.write(data)
                file.flush()
                os.fsync(file.fileno())
            if os.path.exists(path):
                shutil.copymode(path, temporary)
            os.replace(temporary, path)
        except BaseException:
            with contextlib.suppress(OSError):
                os.unlink(temporary)
            raise
        _sync_folder(os.path.dirname(path))
        walls.made(path)


def _sync_folder(path):
    """Make a rename durable. A file system that can't do that has already done what it can."""
    with contextlib.suppress(OSError):
        folder = os.open(path, os.O_RDONLY)
        try:
            os.fsync(folder)
        finally:
            os.close(folder)


class Complaints:
    """Console lines about one file: "lamedb:12: ...". The first few in full, then a count, so that a file of rubbish
    can't drown the console."""

    LIMIT = 10

    def __init__(self, path):
        self.path = path
        self.count = 0

    def add(self, line_number, text):
        """Report a broken line (1-based; 0 for the file as a whole)."""
        self.count += 1
        if self.count <= self.LIMIT:
            place = "%s:%d" % (self.path, line_number) if line_number else self.path
            env.log("[receiver] %s: %s" % (place, text))

    def close(self):
        """Report how many lines were not printed."""
        if self.count > self.LIMIT:
            env.log("[receiver] %s: %d more broken lines" % (self.path, self.count - self.LIMIT))
