"""Takes from the host modules what the chosen image does not have, before a plug-in can see it."""

import importlib
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


def _cache_class(profile):
    """The EPG cache with the habits of images and what Python sees of it there."""
    cache = eEPGCache.getInstance()

    class ImageCache:
        saving = True

        def setCacheFile(self, path):
            cache.setCacheFile(path)

        def load(self):
            cache.load()

        def save(self):
            if self.saving and cache.size() >= profile.smallest_cache:
                cache.save()

        def setSave(self, on):
            self.saving = bool(on)

        def reloadEITConfig(self, which):
            """Read the blacklist (2), the whitelist (1) or both anew. Nothing is broadcast here that they could hold back."""

        def clear(self):
            cache.clearDB()

        flushEPG = clear

    for name in {"setSave", "reloadEITConfig", "clear", "flushEPG"}.difference(profile.cache_methods):
        delattr(ImageCache, name)
    instance = ImageCache()
    ImageCache.getInstance = staticmethod(lambda: instance)
    return ImageCache
