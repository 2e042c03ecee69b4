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
_made = set()  # files and folders that this run has made

# Functions of os by what they do: the positions of their paths, and whether a link there is followed.
READS = {"stat": (0,), "lstat": (0,), "listdir": (0,), "scandir": (0,), "readlink": (0,), "statvfs": (0,),
         "listxattr": (0,), "getxattr": (0,)}
CHANGES = {"remove": (0,), "unlink": (0,), "rmdir": (0,), "rename": (0, 1), "replace": (0, 1), "link": (0, 1), "symlink": (1,)}
FOLLOWS = {"mkdir": (0,), "mkfifo": (0,), "mknod": (0,), "chmod": (0,), "chown": (0,), "utime": (0,), "truncate": (0,),
           "setxattr": (0,), "removexattr": (0,)}


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


def made(path):
    """Remember that this run has made what is at a path of the PC."""
    _made.add(path)


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
    if place in _made or os.path.basename(place).startswith(OWN_FILES):
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


def _wrapped(function, positions, translate):
    @functools.wraps(function)
    def call(*arguments, **keywords):
        if not getattr(_state, "on", False):
            return function(*arguments, **keywords)
        with outside():
            arguments = list(arguments)
            for position in positions:
                if len(arguments) > position and not isinstance(arguments[position], int):
                    arguments[position] = translate(_at(arguments[position], keywords))
            result = function(*arguments, **keywords)
            if translate is not env.real:
                made(arguments[positions[-1]])
            return result
    return call


def _opening(function, writes):
    """`function` opens files; `writes(its flags)` tells whether to write."""
    @functools.wraps(function)
    def call(path, flags, *arguments, **keywords):
        if getattr(_state, "on", False) and not isinstance(path, int) and keywords.get("opener") is None:
            with outside():
                path = _at(path, keywords)
                path = for_writing(path) if writes(flags) else env.real(path)
                if writes(flags) and not os.path.exists(path):
                    made(path)
                check_readable(path)
        with outside():
            return function(path, flags, *arguments, **keywords)
    return call


def _access(function):
    @functools.wraps(function)
    def call(path, mode, **keywords):
        if not getattr(_state, "on", False):
            return function(path, mode, **keywords)
        with outside():
            try:
                return function(for_writing(path) if mode & os.W_OK else env.real(path), mode, **keywords)
            except OSError:
                return False
    return call


def _build():
    for table, translate in ((READS, env.real), (CHANGES, functools.partial(for_writing, follow=False)),
                             (FOLLOWS, for_writing)):
        for name, positions in table.items():
            setattr(os, name, _wrapped(getattr(os, name), positions, translate))
    os.access = _access(os.access)
    os.open = _opening(os.open, lambda flags: flags & (os.O_WRONLY | os.O_RDWR | os.O_CREAT | os.O_TRUNC))
    opened = _opening(open, lambda mode: set(mode) & set("wax+"))
    builtins.open = io.open = lambda file, mode="r", *rest, **keywords: opened(file, mode, *rest, **keywords)


_build()
