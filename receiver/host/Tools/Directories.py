"""Where a box keeps its files, by purpose."""

import os

from receiver.data import env
from receiver.places import HERE

SCOPE_CONFIG, SCOPE_SKIN, SCOPE_CURRENT_SKIN, SCOPE_PLUGINS = range(4)


def resolveFilename(scope, base="", path_prefix=None):
    """The full path of a file; an absolute one stays as it is."""
    folder = {SCOPE_CONFIG: env.ETC, SCOPE_PLUGINS: str(HERE.parent / "plugin")}.get(scope, str(HERE / "skin"))
    return os.path.join(folder, base)


def fileExists(path, mode="r"):
    return os.access(path, os.W_OK if "w" in mode else os.R_OK)
