"""Takes from the host modules what the chosen image does not have, before a plug-in can see it."""

import importlib
import os
import sys

from receiver.data.epg_cache import eEPGCache


def imitate(profile):
    """Make the freshly imported host modules those of an image. The next import of them starts from scratch."""
    for name in [name for name, module in sys.modules.items() if module is None]:
        del sys.modules[name]  # what an image before this one did not have
    for what in profile.missing:
        module, _, path = what.partition(":")
        if path:
            _remove(importlib.import_module(module), path)
        else:
            sys.modules[module] = None  # the import of such a module fails
    if "clearDB" not in profile.cache_methods:  # else it has the receiver's own, which can do everything
        importlib.import_module("enigma").eEPGCache = _cache_class(profile)


def _remove(owner, path):
    *owners, name = path.split(".")
    for each in owners:
        owner = getattr(owner, each)
    delattr(owner, name)


class _ImageCache:
    """The EPG cache with the habits of images. `_cache_class` leaves in it what the chosen one has."""

    ALWAYS = ("getInstance", "load", "save", "setCacheFile")

    @classmethod
    def getInstance(cls):
        return cls._instance

    def __init__(self, profile):
        self._cache = eEPGCache.getInstance()
        self._profile = profile
        self._saving = True

    def setCacheFile(self, path):
        self._cache.setCacheFile(path)

    def load(self):
        path = self._cache.cacheFile()
        if not self._profile.renames_while_loading or not os.path.isfile(path) or self._cache.isForeign():
            self._cache.load()
            return
        os.rename(path, path + ".loading")
        self._cache.setCacheFile(path + ".loading")
        self._cache.load()
        readable = self._cache.fileCounts() is not None
        self._cache.setCacheFile(path)
        if readable:
            os.rename(path + ".loading", path)

    def save(self):
        if self._saving and self._cache.size() >= self._profile.smallest_cache:
            self._cache.save()

    def setSave(self, on):
        self._saving = bool(on)

    def reloadEITConfig(self, which):
        """Read the blacklist (2), the whitelist (1) or both anew. Nothing is broadcast here that they could hold back."""

    def clearDB(self):
        self._cache.clearDB()

    clear = flushEPG = clearDB


def _cache_class(profile):
    offered = _ImageCache.ALWAYS + profile.cache_methods
    shown = {name: value for name, value in vars(_ImageCache).items() if name in offered or name.startswith("__init")}
    shown["_instance"] = None
    cls = type("eEPGCache", (), shown)
    cls._instance = cls(profile)
    return cls
