"""The bridge: what the compiled module's host lacks, or does in another way than the module needs.

Each file is one concern. Its `changes` looks at what the host can do, never at who it is, and returns
{host module: {name: what the compiled module shall find there}}; nothing where the host has it all. The host's own
modules stay as they are.
"""

from __future__ import absolute_import

import sys

from .. import texts
from . import (
    blacklist_editor, cache_file, chooser, eit_blacklist, epg_cache, guard, keys, look, names, picker, picker_labels,
    row_help, services, settings_keys, settings_list, settings_screen)

WHOLESALE = "Screens.ChannelSelection"

# What images need on top of the module's own screens: {class of the module: mixin}, each of one concern.
SCREENS = (settings_screen.SCREENS, settings_keys.SCREENS, look.SCREENS, chooser.SCREENS, eit_blacklist.SCREENS,
           blacklist_editor.SCREENS, picker.SCREENS, picker_labels.SCREENS)


def start():
    """When the GUI starts, before anybody needs the compiled module."""
    cache_file.start()
    epg_cache.recover()


def acts_by_itself():
    """Whether anything of the module or the bridge has work to do before the user opens a screen: the timer, an EPG client
    whose host must not save, a blacklist in force."""
    return any(keys.is_set(path) for path in keys.AT_WORK) or eit_blacklist.is_at_work()


def changes():
    """All that must be changed for this host; {} for one that was made for the module."""
    found = {}
    _collect(found, names, epg_cache, keys, picker)
    if found:
        # The host was not made for the module, so it is a box like any other: an error that leaves a handler ends its
        # GUI, its settings lists show no help text of their own, and not every text may get to it.
        _collect(found, guard, row_help, settings_list, services, chooser)
        found.setdefault(WHOLESALE, {}).update(_imported_by_the_channel_list(found))
    return found


def _collect(found, *concerns):
    for concern in concerns:
        for module, names_of_module in concern.changes().items():
            found.setdefault(module, {}).update(names_of_module)


def _imported_by_the_channel_list(found):
    """The module copies every name of the channel list's, also those which that has imported, and some of them replace
    what came from their own modules before. So they must be the same there."""
    there = vars(sys.modules[WHOLESALE])
    same = {}
    for module, changed in found.items():
        own = vars(sys.modules[module]) if module != WHOLESALE and sys.modules.get(module) else {}
        same.update((name, changed[name]) for name in changed if name in own and there.get(name) is own[name])
    return same


def extend(module):
    """Put the mixins of SCREENS before the module's own screens, under the names by which it opens them: it looks its
    classes up when it opens one, and skins and front displays find a screen by its class's name."""
    if not guard.on:
        return
    texts.replace(look.WORDS)
    for name in sorted(set(name for screens in SCREENS for name in screens)):
        mixins = tuple(screens[name] for screens in SCREENS if name in screens)
        setattr(module, name, type(name, mixins + (getattr(module, name),), {"__module__": module.__name__}))
