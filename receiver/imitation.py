"""Takes from the host modules what the chosen image does not have, before a plug-in can see it."""

import functools
import importlib
import sys

from receiver.data.epg_cache import eEPGCache


def imitate(profile):
    """Make the freshly imported host modules those of an image, until `gui.forget_modules`."""
    for what in profile.missing:
        module, _, path = what.partition(":")
        if path:
            *owners, name = path.split(".")
            delattr(functools.reduce(getattr, owners, importlib.import_module(module)), name)
        else:
            sys.modules[module] = None  # the import of such a module fails
    if "clearDB" not in profile.cache_methods:  # else it has the receiver's own, which can do everything
        importlib.import_module("enigma").eEPGCache = _cache_class(profile)


def _cache_class(profile):
    """The EPG cache with the habits of images and what Python sees of it there."""
    cache = eEPGCache.getInstance()
    saving = True

    def set_save(on):
        nonlocal saving
        saving = bool(on)

    def save():
        if saving and cache.size() >= profile.smallest_cache:
            cache.save()

    methods = {"load": cache.load, "save": save, "setCacheFile": cache.setCacheFile}
    others = {"setSave": set_save, "clear": cache.clearDB, "flushEPG": cache.clearDB,
              "reloadEITConfig": lambda which: None}  # nothing is broadcast here that a blacklist could hold back
    methods.update((name, others[name]) for name in profile.cache_methods)
    image_cache = type("eEPGCache", (), {name: staticmethod(method) for name, method in methods.items()})
    image_cache.getInstance = staticmethod(image_cache)  # it holds nothing, so a new one is as good
    return image_cache
