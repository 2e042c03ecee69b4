"""Reading and writing whole files so that no byte and no old file gets lost."""
import contextlib
import os
import shutil

from . import env, walls

MOST_COMPLAINTS = 10  # about one file


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


def parse_file(path, parse):
    """What `parse(lines, broken)` makes of a text file, or of no lines where it can't be read.

    What it adds to `broken`, (number of a line, what about it) pairs, are console lines. The first few in full, then a count,
    so that a file of rubbish can't drown the console.
    """
    broken = []
    try:
        lines = read_lines(path)
    except (OSError, ValueError) as error:  # a bouquet's file name may hold anything, a zero byte too
        env.log("[receiver] %s: not read: %s" % (path, reason(error)))
        return parse([], [])
    result = parse(lines, broken)
    for number, text in broken[:MOST_COMPLAINTS]:
        env.log("[receiver] %s:%d: %s" % (path, number, text))
    if len(broken) > MOST_COMPLAINTS:
        env.log("[receiver] %s: %d more broken lines" % (path, len(broken) - MOST_COMPLAINTS))
    return result


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
        walls.made.add(path)


def reason(error):
    """Why reading or writing failed, without the path."""
    return getattr(error, "strerror", None) or error
