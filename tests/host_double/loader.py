"""Loads the compiled module as a host does, by the import statement, with its start-up run anew each time."""

import atexit
import os
import shutil
import sys
import tempfile

NAME = "Veltro"
PYTHON2 = sys.version_info[0] == 2


def build_folder():
    """The folder that holds the binary: VELTRO_BUILD, or where the build puts it."""
    return os.path.abspath(os.environ.get("VELTRO_BUILD") or os.path.join("build", "py27" if PYTHON2 else "py3"))


_links = []


def _fresh_folder():
    """Python 2.7 runs the start-up of an extension once per path name, so each load gets a path name of its own."""
    if not _links:
        _links.append(tempfile.mkdtemp(prefix="veltro-"))
        atexit.register(shutil.rmtree, _links[0])
    folder = os.path.join(_links[0], str(len(_links)))
    os.mkdir(folder)
    os.symlink(os.path.join(build_folder(), NAME + ".so"), os.path.join(folder, NAME + ".so"))
    _links.append(folder)
    return folder


def forget():
    """Drop the module, so that the next import of it is a first one."""
    sys.modules.pop(NAME, None)


def load():
    """Import the module on the host that is installed now. Whether it stands in sys.modules then is its own affair."""
    folder = _fresh_folder() if PYTHON2 else build_folder()
    forget()
    sys.path.insert(0, folder)
    try:
        return __import__(NAME)
    finally:
        sys.path.remove(folder)
