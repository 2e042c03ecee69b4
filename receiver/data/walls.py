"""The walls of the box. Code that runs `inside()` them sees the root folder as /, and writes nowhere else.

On a box plug-ins work with open and os. So those are what is changed, for the thread that runs the GUI and only while it
does: paths are those of the box, a pipe or a huge file is an error instead of a hang, and what is not the receiver's own is
read only. Files of the PC that the GUI needs (Python's, this project's) are where they are.
"""
import builtins
import contextlib
import errno
import functools
import io
import os
import stat
import threading

from . import env

LARGEST = 16 << 20  # bytes of a file that is read as a whole
EPG_MAGIC = b"PC-EPG"
OWN_FILES = ("settings", "blacklist_dvb_epg", "blacklist.eit")  # with whatever suffix, while they are written

_state = threading.local()
made = set()  # files and folders of the PC that this run has made

# Functions of os that have paths, at the first place if PLACES has no other: those that read, those that change what is there,
# and those that change what a link there leads to.
READ = ("stat", "lstat", "access", "listdir", "scandir", "readlink", "statvfs", "listxattr", "getxattr")
CHANGE = ("remove", "unlink", "rmdir", "rename", "replace", "link", "symlink")
FOLLOW = ("mkdir", "mkfifo", "mknod", "chmod", "chown", "utime", "truncate", "setxattr", "removexattr")
PLACES = {"rename": (0, 1), "replace": (0, 1), "link": (0, 1), "symlink": (1,)}
NAMES = ("path", "src", "file"), ("dst", "flags", "mode")  # of the first argument and of the second


@contextlib.contextmanager
def inside(on=True):
    """What the block does with files, it does in the box."""
    before, _state.on = getattr(_state, "on", False), on
    try:
        yield
    finally:
        _state.on = before


def outside():
    """The block works with the PC's files; for the receiver's own code, which GUI code has called."""
    return inside(False)


def for_writing(path, follow=True):
    """The PC's path to write at. OSError when that is not the receiver's to change, for instance behind a link that leads
    out of the root. `follow` tells whether a link at the path itself is followed."""
    with outside():
        place = env.real(path)
        if place == os.devnull:
            return place
        place = os.path.realpath(place) if follow else os.path.join(os.path.realpath(os.path.dirname(place)),
                                                                    os.path.basename(place))
        if not env.within(place, env.root):
            if not env.within(place, env.etc):
                raise OSError(errno.EROFS, "lies outside the receiver's folders and is left alone", os.fsdecode(path))
            if os.path.lexists(place) and not _is_own(place):
                raise OSError(errno.EPERM, "was not made by this receiver and is left alone", os.fsdecode(path))
        return place


def check_readable(path):
    """OSError unless there is a file of usual size; where there is nothing at all, opening it says so."""
    with contextlib.suppress(FileNotFoundError, NotADirectoryError):
        info = os.stat(path)
        if not stat.S_ISREG(info.st_mode) and not stat.S_ISDIR(info.st_mode) and path not in ("/dev/null", "/dev/urandom"):
            raise OSError(errno.EINVAL, "is a pipe or a device, not a file", path)
        if info.st_size > LARGEST and stat.S_ISREG(info.st_mode):
            raise OSError(errno.EFBIG, "has %d MB, more than any file of a box" % (info.st_size >> 20), path)


def _is_own(place):
    """Whether a file of a user's folder is one that the receiver keeps there."""
    if place in made or os.path.basename(place).startswith(OWN_FILES):
        return True
    return not os.path.islink(place) and is_epg_file(place)


def is_epg_file(place):
    """Whether at a path of the PC there is an EPG file of a receiver, or an empty one."""
    with contextlib.suppress(OSError):
        if os.path.isfile(place):
            with open(place, "rb") as file:
                return file.read(len(EPG_MAGIC)) in (EPG_MAGIC, b"")
    return False


def _at(path, keywords):
    """A path as it is or, where it is in the directory of a descriptor, the PC's path that it stands for."""
    folder = keywords.pop("dir_fd", None)
    return path if folder is None else os.path.join(os.readlink("/proc/self/fd/%d" % folder), os.fsdecode(path))


def _wrapped(function, writes, places=(0,), follow=True, check=lambda path: None):
    """A function that takes paths of the box inside. `writes(arguments)` tells whether it changes what is at these places."""
    @functools.wraps(function)
    def call(*arguments, **keywords):
        if not getattr(_state, "on", False):
            return function(*arguments, **keywords)
        with outside():
            arguments, new = list(arguments), []
            for place, names in enumerate(NAMES):
                arguments += [keywords.pop(name) for name in names if name in keywords and len(arguments) == place]
            writing = writes(arguments)
            for place in places:
                if len(arguments) > place and not isinstance(arguments[place], int):
                    path = _at(arguments[place], keywords)
                    path = arguments[place] = for_writing(path, follow) if writing else env.real(path)
                    check(path)
                    new += [path] if writing and not os.path.lexists(path) else []
            result = function(*arguments, **keywords)
            made.update(filter(os.path.lexists, new))
            return result
    return call


def _build():
    for name in READ:
        setattr(os, name, _wrapped(getattr(os, name), lambda arguments: False, PLACES.get(name, (0,))))
    for name in CHANGE + FOLLOW:
        setattr(os, name, _wrapped(getattr(os, name), lambda arguments: True, PLACES.get(name, (0,)), name in FOLLOW))
    writing = os.O_WRONLY | os.O_RDWR | os.O_CREAT | os.O_TRUNC
    os.open = _wrapped(os.open, lambda arguments: arguments[1] & writing, check=check_readable)
    builtins.open = io.open = _wrapped(open, lambda arguments: set(*arguments[1:2]) & set("wax+"), check=check_readable)


_build()
