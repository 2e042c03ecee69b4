"""The path of the EPG file. The host's own keys are the one truth; nothing of it is kept beside them.

Some hosts have the whole path in one key. Others build it, at every start and whenever one of them is saved, from a
directory of their choices and a name; a directory that they do not offer is added to the choices, after a restart too.
"""

from __future__ import absolute_import

import os
import shutil

from Components import config as host
from enigma import eEPGCache

from . import safe_files

NAME = "epg.dat"  # the file's name in the module's eyes
OLD_KEYS = ("veltro_epgcache_filename", "veltro_epgcache_instead_of")  # of version 1.0


def path():
    """The file that the host reads and writes."""
    stored = host.config.misc.epgcache_filename.value
    return os.path.join(stored, NAME) if _is_directory(stored) else stored


def shown():
    """The file as the module knows it: the directory, and always the same name."""
    return os.path.join(os.path.dirname(path()), NAME)


def _is_directory(stored):
    """Whether it is not a file's path. With the usual ending it is one, which saves a look at a disk that may sleep."""
    return not stored.endswith(".dat") and os.path.isdir(stored)


def start():
    """When the GUI starts: make a directory count that the host has stored and does not offer."""
    misc = host.config.misc
    _take_over(misc)
    if _is_built(misc):
        _offer_stored()
        misc.epgcachepath.addNotifier(_offer_stored, initial_call=False)  # it may make its choices anew


class CacheFile(object):
    """Stands for the host's element `config.misc.epgcache_filename`.

    Its value has the name that the module knows. The host may have another one, which stays when the directory changes.
    """

    def __init__(self, is_client):
        self._is_client = is_client

    @property
    def value(self):
        return shown()

    @value.setter
    def value(self, chosen):
        """Make the chosen directory count at once. What is in memory goes there, unless there is a file already: it
        may be the very reason for the choice. A client writes no EPG file."""
        before = path()
        _choose(os.path.dirname(chosen))
        if not self._is_client() and not os.path.exists(path()):
            _fill(before)

    def save(self):
        misc = host.config.misc
        if _is_built(misc):
            # When it builds the path the host saves its cache, over whatever file is there.
            existed = os.path.exists(path())
            with safe_files.aside(path(), lambda new: False):
                misc.epgcachepath.save()
            if self._is_client() and not existed:
                safe_files.remove(path())
        misc.epgcache_filename.save()
        host.configfile.save()  # what is chosen stays so when the power fails

    def __getattr__(self, name):
        return getattr(host.config.misc.epgcache_filename, name)


def _is_built(misc):
    """Whether the host builds the path from other keys, so that a path stored in its key would be lost."""
    return hasattr(misc, "epgcachepath") and hasattr(misc, "epgcachefilename")


def _choose(directory):
    misc = host.config.misc
    if _is_built(misc):
        misc.epgcachepath.value = _offer(os.path.join(directory, ""))
    _use(directory)


def _use(directory):
    new = os.path.join(directory, os.path.basename(path()) or NAME)
    host.config.misc.epgcache_filename.value = new
    eEPGCache.getInstance().setCacheFile(new)  # not every host does that by itself


def _fill(before):
    eEPGCache.getInstance().save()
    if not os.path.exists(path()) and os.path.exists(before):  # too little in memory
        try:
            shutil.copyfile(before, path())
        except (IOError, OSError) as error:
            print("[Veltro] the EPG file was not copied: %s" % error)


def _offer(directory):
    """The host's choice for the directory, a new one if there is none."""
    element = host.config.misc.epgcachepath
    choices = list(element.choices)
    for choice in choices:
        if os.path.normpath(choice) == os.path.normpath(directory):
            return choice
    described = [(choice, element.description[choice]) for choice in choices]
    element.setChoices(described + [(directory, directory)], default=element.default)
    return directory


def _offer_stored(*element):
    """A choice that the host has stored and does not offer is one all the same: it comes back at once."""
    key = host.config.misc.epgcachepath
    stored = key.saved_value
    if stored and stored not in list(key.choices):
        choice = _offer(stored)
        if choice == stored:
            key.load()  # not by assignment: the host must know it as the last one that it has acted upon
        else:
            key.value = choice
        _use(stored)
        eEPGCache.getInstance().load()  # the host has read another file, or none


def _take_over(misc):
    """Version 1.0 kept a directory that the host does not offer in two keys of its own, and the path that the host
    would build; it counted while the host built that one."""
    stored = getattr(getattr(misc, "content", None), "stored_values", OLD_KEYS)
    if not any(name in stored for name in OLD_KEYS):
        return
    for name in OLD_KEYS:
        setattr(misc, name, host.ConfigText(default="", fixed_size=False))
    chosen, built = [getattr(misc, name) for name in OLD_KEYS]
    if chosen.value and built.value == misc.epgcache_filename.value:
        element = CacheFile(lambda: True)
        element.value = chosen.value
        element.save()
    for key in (chosen, built):
        key.value = ""
        key.save()
