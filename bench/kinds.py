"""What is measured beside each other: the compiled module; the plain Python of floor.py; and the same compiled by Cython."""

import os
import sys

NAMES = ("module", "floor", "cython")


def _load_module(host):
    return host.load(recording_files=False)


def _load_floor(host):
    sys.modules.pop("bench.floor", None)
    with host.modules.installed():
        import bench.floor
        return bench.floor


def _load_cython(host):
    with host.modules.installed():
        import floor_cython
        # It is loaded once in a process, and takes the names of the first host. Only these differ from one to the next.
        floor_cython.config = host.modules.modules["Components.config"].config
        return floor_cython


LOADERS = {"module": _load_module, "floor": _load_floor, "cython": _load_cython}


def there():
    """The kinds to measure: VELTRO_FLOOR_CYTHON is the folder of the compiled floor, unset where there is none."""
    folder = os.environ.get("VELTRO_FLOOR_CYTHON")
    if not folder:
        return NAMES[:2]
    if folder not in sys.path:
        sys.path.append(folder)
    return NAMES
