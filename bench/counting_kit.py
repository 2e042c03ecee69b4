"""A kit whose GUI runs under valgrind, which counts the instructions between two marks. The copy refers to the kit for all but
the GUI's own program."""

import glob
import os
import re
import shutil

from .count import MARK, total

TOOLS = "/usr/libexec/valgrind"
PARTS = "/media/hdd/part"  # a place that the box's file system has from the start


def make(kit, folder):
    """Make the kit in `folder`; False where there is no valgrind."""
    tools = [path for name in ("callgrind-*-linux", "vgpreload_core-*-linux.so", "default.supp")
             for path in glob.glob(os.path.join(TOOLS, name))]
    if not tools or not shutil.which("valgrind"):
        return False
    for name in os.listdir(kit):
        if name != "bin":
            os.symlink(os.path.join(kit, name), os.path.join(folder, name))
    programs = os.path.join(folder, "bin")
    shutil.copytree(os.path.join(kit, "bin"), programs)
    os.rename(os.path.join(programs, "enigma2"), os.path.join(programs, "enigma2.counted"))
    for path in tools:
        shutil.copy(path, programs)
    with open(os.path.join(programs, "enigma2"), "w") as file:
        file.write("#!/bin/sh\nexec env VALGRIND_LIB=/usr/local/bin valgrind --tool=callgrind --dump-before=%s "
                   "--callgrind-out-file=%s /usr/local/bin/enigma2.counted\n" % (MARK, PARTS))
    os.chmod(os.path.join(programs, "enigma2"), 0o755)
    return True


def counted(host):
    """The instructions between each first and second mark so far."""
    parts = sorted(glob.glob(host.path(PARTS) + ".*"), key=lambda path: int(re.search(r"\d+$", path).group(0)))
    return [total(path) for path in parts[1::2]]
