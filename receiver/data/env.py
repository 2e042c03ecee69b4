"""The folders of this run: the box's file system is a root folder on the PC. And the receiver's console.

    env.configure(etc="/home/me/enigma2", root="build/box/me")   # before anything else of receiver.data is used
    env.real("/media/hdd/epg.dat")                               # where that is on this PC
"""
import os
import re
import sys

from ..places import HERE, PLUGIN_FOLDERS

ETC = "/etc/enigma2"
EPG_FILE = "/media/hdd/epg.dat"
FOLDERS = (ETC, "/media/hdd", "/media/usb", "/home/root", "/tmp")  # of every box

# Paths that mean the same in the GUI and on the PC; the GUI can't write there.
SHARED = (str(HERE.parent), *map(str, PLUGIN_FOLDERS), sys.prefix, sys.base_prefix, "/usr", "/proc", "/dev/null", "/dev/urandom")

_root = _etc = None
_sink = print


def configure(etc, root):
    """Choose the folders of this run and make what the root lacks. OSError when that fails.

    etc -- the folder that plays /etc/enigma2; it may lie outside the root
    root -- the folder that plays /
    """
    global _root, _etc
    _root, _etc = os.path.realpath(root), os.path.realpath(etc)
    for folder in FOLDERS:
        os.makedirs(_root + folder, exist_ok=True)


def etc():
    """The PC's folder that plays /etc/enigma2. RuntimeError before `configure`: a PC's own /etc stays untouched."""
    return _chosen(_etc)


def root():
    """The PC's folder that plays /."""
    return _chosen(_root)


def real(path):
    """Where a path of the box is on this PC. A path that is already one of the PC's stays."""
    path = "/" + os.path.normpath(os.path.join("/", os.fsdecode(path))).lstrip("/")
    if within(path, etc(), root(), *SHARED):
        return path
    return etc() + path[len(ETC):] if within(path, ETC) else root() + path


def within(path, *folders):
    """Whether a normalized path is one of the folders or lies below one."""
    return any(path == folder or path.startswith(folder.rstrip("/") + "/") for folder in folders)


def log(line):
    """Print one line on the console. Bytes that are no UTF-8 (file names, service names) are shown as escapes."""
    _sink(str(line).encode("utf-8", "backslashreplace").decode("utf-8"))


def set_log(sink):
    """Send console lines to `sink(line)`; None gives them back to standard output."""
    global _sink
    _sink = sink or print


def _chosen(folder):
    if folder is None:
        raise RuntimeError("the receiver's folders are not chosen yet: call env.configure first")
    return folder


class eEnv:
    """The host's view of where things are installed."""

    @staticmethod
    def resolve(text):
        """Expand ${sysconfdir} and environment variables in `text`; "" when a variable is unknown."""
        values = dict(os.environ, sysconfdir="/etc")
        if any(name not in values for name in re.findall(r"\$\{(\w+)\}", text)):
            return ""
        return re.sub(r"\$\{(\w+)\}", lambda match: values[match.group(1)], text)
