"""Names that hosts have lost, have moved, or never had."""

from __future__ import absolute_import

from importlib import import_module

# What the compiled module expects among the channel list's names, and where it is at home.
CHANNEL_LIST_NAMES = (("eServiceReference", "enigma"), ("eServiceCenter", "enigma"), ("eEnv", "enigma"),
                      ("ServiceReference", "ServiceReference"))

# Modules that must be there and are not used: one is built into the GUI's executable, one came with Python 2.
UNUSED_MODULES = ("_enigma", "new")


def changes():
    """Stand-ins for the names that this host lacks."""
    found = {}
    channel_list = import_module("Screens.ChannelSelection")
    missing = [(name, home) for name, home in CHANNEL_LIST_NAMES if not hasattr(channel_list, name)]
    if missing:
        found["Screens.ChannelSelection"] = dict((name, getattr(import_module(home), name)) for name, home in missing)
    if not hasattr(import_module("Components.ConfigList"), "getSelectionChoices"):
        found["Components.ConfigList"] = {"getSelectionChoices": getSelectionChoices}
    for name in UNUSED_MODULES:
        try:
            import_module(name)
        except ImportError:
            found[name] = {}
    return found


def getSelectionChoices(element):
    """What a selection element offers: ([(text, value), ...], index of its current value)."""
    return [(element.description[value], value) for value in element.choices], element.getIndex()
