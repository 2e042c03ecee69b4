"""The bridge: what the compiled module's host lacks, or does in another way than the module needs.

Each file is one concern. Its `changes` looks at what the host can do, never at who it is, and returns
{host module: {name: what the compiled module shall find there}}; nothing where the host has it all. The host's own
modules stay as they are.
"""

from __future__ import absolute_import

from . import epg_cache, guard, keys, names, picker, settings_list


def changes():
    """All that must be changed for this host; {} for one that was made for the module."""
    found = {}
    _collect(found, names, epg_cache, keys, picker)
    if found:
        # The host was not made for the module, so it is a box like any other: an error that leaves a handler ends its
        # GUI, and its settings lists show no help text.
        _collect(found, guard, settings_list)
    return found


def _collect(found, *concerns):
    for concern in concerns:
        for module, names_of_module in concern.changes().items():
            found.setdefault(module, {}).update(names_of_module)
