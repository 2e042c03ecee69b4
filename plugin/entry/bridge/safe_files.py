"""Files that are not lost: what is there stays until what takes its place is whole."""

from __future__ import absolute_import

import contextlib
import os
import shutil

ASIDE = ".veltro-aside"
BESIDE = ".veltro-new"


def write_whole(path, data):
    """Write bytes to a file: beside it first, then under its name. A link stays, and its file is written.

    OSError or IOError if that fails; the file is then as it was.
    """
    path = os.path.realpath(path)
    beside = path + BESIDE
    try:
        with open(beside, "wb") as file:
            file.write(data)
            file.flush()
            os.fsync(file.fileno())
        if os.path.exists(path):
            shutil.copymode(path, beside)
        os.rename(beside, path)
    except (IOError, OSError):
        remove(beside)
        raise


@contextlib.contextmanager
def aside(path, is_whole):
    """A file is out of the way while something writes a new one in its place; it comes back if that is not whole.

    is_whole -- tells by its path whether the new file is; a path without a file is not
    """
    path = os.path.realpath(path)
    try:
        os.rename(path, path + ASIDE)
    except OSError:
        pass  # there is none, or the disk can't be written, and then nothing can happen to it
    try:
        yield
    finally:
        come_back(path, is_whole)


def come_back(path, is_whole):
    """End what `aside` has begun; also after a power failure in between. Whether the old file is back."""
    path = os.path.realpath(path)
    if not os.path.exists(path + ASIDE):
        return False
    if is_whole(path):
        remove(path + ASIDE)
        return False
    os.rename(path + ASIDE, path)
    return True


def remove(path):
    """Remove a file if there is one and that can be done."""
    try:
        os.unlink(path)
    except OSError:
        pass
