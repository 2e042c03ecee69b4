"""The EPG cache: emptying it, in memory and on disk."""

from __future__ import absolute_import

import errno
import os
import struct

from Components.config import config
from enigma import eEPGCache

# Where hosts put the cache when they can't write its file, and look for it when that is missing.
IN_FLASH = "/epg.dat"
MAGIC = 0x98765432

# What a host has instead of clearDB, the best first. All forget every event and leave the file alone.
CLEARING = ("clear", "flushEPG")


def changes():
    """An EPG cache that can be cleared, for hosts whose own can't."""
    return {} if hasattr(eEPGCache, "clearDB") else {"enigma": {"eEPGCache": EPGCache}}


class EPGCache(object):
    """The host's EPG cache with one operation more."""

    def __init__(self, cache):
        self._cache = cache

    @staticmethod
    def getInstance():
        return EPGCache(eEPGCache.getInstance())

    def __getattr__(self, name):
        return getattr(self._cache, name)

    def clearDB(self):
        """Forget every event, also those on disk: a host that has little to save saves nothing, without a word, and
        the old file would come back at the next start. OSError when the file can be neither removed nor emptied."""
        clearing = [getattr(self._cache, name) for name in CLEARING if hasattr(self._cache, name)]
        clearing[0]()
        for path in _files():
            _remove(path)


def _files():
    """Everything that the host might load instead of an empty cache."""
    path = config.misc.epgcache_filename.value
    if os.path.isdir(path):
        path = os.path.join(path, "epg.dat")
    # While it reads a file the host calls it .loading; one that it could not read keeps that name.
    chosen = [path, path + ".loading"]
    return chosen + [copy for copy in (IN_FLASH, IN_FLASH + ".loading") if copy not in chosen and _is_cache(copy)]


def _is_cache(path):
    """Nobody chose that name in the root folder, so a look into the file comes before its end."""
    try:
        with open(path, "rb") as copy:
            return copy.read(4) in (struct.pack("<I", MAGIC), struct.pack(">I", MAGIC))
    except (IOError, OSError):
        return False


def _remove(path):
    path = os.path.realpath(path)  # a link stays: the user has put it there, and the host writes through it
    try:
        os.unlink(path)
    except OSError as error:
        if error.errno != errno.ENOENT:
            open(path, "wb").close()
