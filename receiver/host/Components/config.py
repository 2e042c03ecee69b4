"""The host's configuration tree: elements with a value, a default and a stored text, grouped under `config`.

    config.usage.epg = ConfigSubsection()
    config.usage.epg.eit = ConfigYesNo(default=True)     # takes the stored text at once when the file has one
    config.usage.epg.eit.value = False                   # tells the notifiers
    config.usage.epg.eit.save()                          # into the tree; cancel() goes back to what was saved
    configfile.save()                                    # into the settings file
"""
from Components.config_elements import *  # noqa: F401,F403 (offered from here)
from Components.config_tree import Config, ConfigFile, ConfigSubsection  # noqa: F401


def getConfigListEntry(*fields):
    """One row of a settings list: the given fields (label, element, ...) as a tuple; at least one."""
    assert fields, "a row needs at least one field"
    return fields


config = Config()
configfile = ConfigFile(config)
