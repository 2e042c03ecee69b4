"""The path of the EPG file on hosts that build it anew at every start from a directory and a name of their own."""

from __future__ import absolute_import

import os

from Components import config as host
from enigma import eEPGCache


def is_rebuilt(misc):
    """Whether the host builds the path from other keys, so that a path stored in its key would be lost."""
    return hasattr(misc, "epgcachepath") and hasattr(misc, "epgcachefilename")


class CacheFile(object):
    """Stands for the host's element `config.misc.epgcache_filename`.

    A directory that the host offers is stored in the host's own two keys. Any other is kept in keys of ours, together
    with the path that the host would build: whenever it does, the kept one takes its place. So a directory that the
    user chooses later in the host's own menu counts again.
    """

    def __init__(self, misc):
        self._misc = misc
        self._built = self._key("veltro_epgcache_instead_of")
        self._chosen = self._key("veltro_epgcache_filename")
        if self._stands_in():
            eEPGCache.getInstance().load()  # the host has read its own file
        misc.epgcache_filename.addNotifier(self._stands_in, initial_call=False)

    def _key(self, name):
        if not hasattr(self._misc, name):
            setattr(self._misc, name, host.ConfigText(default="", fixed_size=False))
        return getattr(self._misc, name)

    @property
    def value(self):
        return self._misc.epgcache_filename.value

    @value.setter
    def value(self, path):
        element = self._misc.epgcache_filename
        if not self._chosen.value:
            self._built.value = element.value
        self._chosen.value = path
        element.value = path
        eEPGCache.getInstance().setCacheFile(path)  # as hosts do that have this key alone

    def save(self):
        path = self.value
        if self._host_takes(path) or path == self._built.value:
            self._built.value = self._chosen.value = ""
        for element in (self._built, self._chosen, self._misc.epgcache_filename):
            element.save()

    def __getattr__(self, name):
        return getattr(self._misc.epgcache_filename, name)

    def _host_takes(self, path):
        """Store the path in the host's keys, if it offers the directory. They build the same path from then on."""
        directory = os.path.join(os.path.dirname(path), "")
        offered = [choice for choice in self._misc.epgcachepath.choices if os.path.join(choice, "") == directory]
        if not offered:
            return False
        self._built.value = self._chosen.value = ""
        self._misc.epgcachefilename.value, self._misc.epgcachepath.value = "epg", offered[0]
        for element in (self._misc.epgcachefilename, self._misc.epgcachepath):  # each may make the host build the path
            element.save()
        return True

    def _stands_in(self, *_):
        """Put the kept path in the place of the one that the host has built; whether that was the case."""
        built, chosen = self._built.value, self._chosen.value
        if self.value != built or chosen in ("", built):
            return False
        self._misc.epgcache_filename.value = chosen
        eEPGCache.getInstance().setCacheFile(chosen)
        return True
