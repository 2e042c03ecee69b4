"""The folders of this run: the box's file system is a root folder on the PC. And the receiver's console.

    env.configure(etc="/home/me/enigma2", root="build/box/me")   # before anything else of receiver.data is used
    env.real("/media/hdd/epg.dat")                               # where that is on this PC
"""
import os
import sys

from ..places import HERE, PLUGIN_FOLDERS

ETC = "/etc/enigma2"
EPG_FILE = "/media/hdd/epg.dat"
FOLDERS = (ETC, "/media/hdd", "/media/usb", "/home/root", "/tmp")  # of every box

# Paths that mean the same in the GUI and on the PC; the GUI can't write there.
SHARED = (str(HERE.parent), *map(str, PLUGIN_FOLDERS), sys.prefix, sys.base_prefix, "/usr", "/proc", "/dev/null", "/dev/urandom")

etc = root = None  # this run's folders on the PC that play /etc/enigma2 and /


def configure(etc_folder, root_folder):
    """Choose the folders of this run, and make what the root lacks. OSError when that fails. One may be outside the other."""
    global etc, root
    etc, root = os.path.realpath(etc_folder), os.path.realpath(root_folder)
    for folder in FOLDERS:
        os.makedirs(root + folder, exist_ok=True)


def real(path):
    """Where a path of the box is on this PC. A path that is already one of the PC's stays. Before `configure` an error."""
    path = "/" + os.path.normpath(os.path.join("/", os.fsdecode(path))).lstrip("/")
    if within(path, etc, root, *SHARED):
        return path
    return etc + path[len(ETC):] if within(path, ETC) else root + path


def within(path, *folders):
    """Whether a normalized path is one of the folders or lies below one."""
    return any(path == folder or path.startswith(folder.rstrip("/") + "/") for folder in folders)


def log(line):
    """Print one line on the console. Bytes that are no UTF-8 (file names, service names) are shown as escapes."""
    print(str(line).encode("utf-8", "backslashreplace").decode("utf-8"))


class OnlyOne:
    """A class of which the process has one instance."""

    _instance = None

    @classmethod
    def getInstance(cls):
        """The one of the process."""
        if cls._instance is None:
            cls._instance = cls()
        return cls._instance


class eEnv:
    """The host's view of where things are installed."""

    @staticmethod
    def resolve(text):
        """The path that `text` means, which begins with ${sysconfdir}."""
        return text.replace("${sysconfdir}", "/etc")
