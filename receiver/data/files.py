"""Reading and writing whole files so that no byte and no old file gets lost."""
import os
import shutil

from . import env


def decode(data):
    """Bytes of a box's text file as str; bytes that are no UTF-8 survive as surrogates."""
    return data.decode("utf-8", "surrogateescape")


def encode(text):
    """The exact bytes that `decode` got."""
    return text.encode("utf-8", "surrogateescape")


def write_atomically(path, data):
    """Replace the file at `path` by `data` (bytes): after a crash at any moment it holds the old or the new content.

    A link is followed, the old file's mode is kept. OSError when it fails; the old file is then untouched and no
    temporary file is left.
    """
    path = os.path.realpath(path)
    temporary = path + ".writing"
    try:
        with open(temporary, "wb") as file:
            file.write(data)
            file.flush()
            os.fsync(file.fileno())
        if os.path.exists(path):
            shutil.copymode(path, temporary)
        os.replace(temporary, path)
    except BaseException:
        _remove(temporary)
        raise
    _sync_folder(os.path.dirname(path))


def _remove(path):
    try:
        os.unlink(path)
    except OSError:
        pass


def _sync_folder(path):
    """Make a rename durable. A file system that can't do that has already done what it can."""
    try:
        folder = os.open(path, os.O_RDONLY)
    except OSError:
        return
    try:
        os.fsync(folder)
    except OSError:
        pass
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


def read_lines(path):
    """The lines of a text file without their LF or CRLF, each as (text, length in bytes with its line end).

    Only "\\n" ends a line: names may hold any other control character. OSError when the file can't be read.
    """
    with open(path, "rb") as file:
        raw = file.read().split(b"\n")
    last = raw.pop()
    lines = [(decode(line[:-1] if line.endswith(b"\r") else line), len(line) + 1) for line in raw]
    if last:
        lines.append((decode(last), len(last)))
    return lines
