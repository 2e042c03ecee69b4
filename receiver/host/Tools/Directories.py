"""Where a box keeps its files, by purpose."""

import os

from receiver.data import env
from receiver.places import HERE, PLUGIN_FOLDERS

SCOPE_CONFIG, SCOPE_SKIN, SCOPE_PLUGINS = env.ETC, str(HERE / "skin"), str(PLUGIN_FOLDERS[0].parent)


def resolveFilename(scope, base=""):
    """The full path of a file; an absolute one stays as it is."""
    return os.path.join(scope, base)
