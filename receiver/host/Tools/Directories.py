"""Where a box keeps its files, by purpose."""

import os

from receiver.places import HERE

SCOPE_SKIN = str(HERE / "skin")


def resolveFilename(scope, base=""):
    """The full path of a file; an absolute one stays as it is."""
    return os.path.join(scope, base)
