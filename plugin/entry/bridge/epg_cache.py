"""The EPG cache: emptying it, and what the host does not tell of saving and loading it.

Hosts write nothing when they hold little, empty the file before they find that the disk is full, write another one when
the directory is gone, and say nothing in any of these cases.
"""

from __future__ import absolute_import

import errno
import os
import struct

from enigma import eEPGCache

from ..texts import translate as _
from . import cache_file, safe_files
from .readable import readable

# Where hosts put the cache when they can't write its file, and look for it when that is missing.
IN_FLASH = "/epg.dat"
MAGICS = (struct.pack("<I", 0x98765432), struct.pack(">I", 0x98765432))
UNFINISHED = b"UNFINISHED"  # stands in its first bytes until the file is whole

# What a host has instead of clearDB, the best first. All forget every event and leave the file alone.
CLEARING = ("clear", "flushEPG")

_problem = None


def changes():
    """An EPG cache that can be cleared, for hosts whose own can't."""
    return {} if hasattr(eEPGCache, "clearDB") else {"enigma": {"eEPGCache": EPGCache}}


def take_problem():
    """What went wrong when the cache was saved or loaded last, in the user's words, once; None if nothing did."""
    global _problem
    problem, _problem = _problem, None
    return problem


def recover():
    """When the GUI starts: a power failure while the cache was written has left the old file aside."""
    try:
        if safe_files.come_back(cache_file.path(), is_whole):
            cache = eEPGCache.getInstance()
            cache.setCacheFile(cache_file.path())
            cache.load()  # some hosts have read the unfinished one by now
    except OSError as error:
        print("[Veltro] the old EPG file stays aside: %s" % error)


def is_whole(path):
    """Whether there is a file that the host has written to its end. Not every host has the same format."""
    head = _head(path)
    return bool(head) and UNFINISHED not in head


def _is_cache(path):
    """Nobody chose the name of the copy in the root folder, so a look into the file comes before its end."""
    return _head(path)[:4] in MAGICS


def _head(path):
    try:
        with open(path, "rb") as file:
            return file.read(32)
    except (IOError, OSError):
        return b""


class EPGCache(object):
    """The host's EPG cache with one operation more, and with eyes for the others."""

    def __init__(self, cache):
        self._cache = cache
        self._cleared = False

    @staticmethod
    def getInstance():
        return EPGCache(eEPGCache.getInstance())

    def __getattr__(self, name):
        return getattr(self._cache, name)

    def setCacheFile(self, path):
        """Tell the host the path of its file; the module knows only the directory (cache_file)."""
        self._cache.setCacheFile(cache_file.path())

    def save(self):
        global _problem
        path = cache_file.path()
        before, flash = _stamp(path), _stamp(IN_FLASH)
        with safe_files.aside(path, is_whole):
            self._cache.save()
            opened = _stamp(path) not in (None, before)
            saved = opened and is_whole(path)
        if not saved and not self._cleared:  # nothing is left to be saved then
            _problem = _why_not_saved(path, opened, _stamp(IN_FLASH) != flash)

    def load(self):
        global _problem
        path = cache_file.path()
        found = os.path.exists(path)
        self._cache.load()
        if not found and not _is_cache(IN_FLASH):
            _problem = _("There is no EPG file %s.") % readable(path)
        elif found and not is_whole(path):  # hosts rename one that they can't read
            _problem = _("%s can't be read.") % readable(path)

    def clearDB(self):
        """Forget every event, also those on disk: a host that has little to save saves nothing, without a word, and
        the old file would come back at the next start. OSError when the file can be neither removed nor emptied."""
        clearing = [getattr(self._cache, name) for name in CLEARING if hasattr(self._cache, name)]
        clearing[0]()
        for path in _files():
            _remove(path)
        self._cleared = True


def _stamp(path):
    """Tells one state of a file from another; None without a file."""
    try:
        state = os.stat(path)
    except OSError:
        return None
    return state.st_ino, state.st_size, state.st_mtime


def _why_not_saved(path, opened, in_flash):
    if in_flash and _is_cache(IN_FLASH):
        return _("%s can't be written. The EPG data was saved to %s.") % (readable(path), IN_FLASH)
    directory = os.path.dirname(os.path.realpath(path))
    if not os.access(directory, os.W_OK):
        return _("%s can't be written.") % readable(path)
    if opened:
        return _("There is not enough room for %s.") % readable(path)
    return _("Nothing was saved: there is too little EPG data, or the image does not save any.")


def _files():
    """Everything that the host might load instead of an empty cache."""
    path = cache_file.path()
    # While it reads a file the host calls it .loading; one that it could not read keeps that name.
    chosen = [path, path + ".loading"]
    return chosen + [copy for copy in (IN_FLASH, IN_FLASH + ".loading") if copy not in chosen and _is_cache(copy)]


def _remove(path):
    path = os.path.realpath(path)  # a link stays: the user has put it there, and the host writes through it
    if not os.path.exists(path):
        return  # to remove what is not there is an error on a disk that can't be written
    try:
        os.unlink(path)
    except OSError as error:
        if error.errno != errno.ENOENT:
            open(path, "wb").close()
