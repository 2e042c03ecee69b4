"""Imports the compiled module under its name, `Veltro`, with the view of the host that it needs."""

from __future__ import absolute_import

import contextlib
import importlib
import sys
import types

from . import bridge, layouts, texts

NAME = "Veltro"
PACKAGE = __name__.rpartition(".")[0]

# The host modules that the compiled module imports. They are imported here first, in the ordinary way: one that came in
# later, beneath the stand-ins, would take names from them and keep them.
HOST_MODULES = (
    "enigma", "Screens.Screen", "Screens.ChannelSelection", "Components.Label", "Components.ActionMap",
    "Components.GUIComponent", "Components.config", "Components.ConfigList", "Components.FileList",
    "Components.Sources.StaticText", "Components.Pixmap", "Screens.MessageBox", "Screens.ChoiceBox", "Tools.LoadPixmap",
    "Tools.Notifications", "skin", "os")

_loaded = None


def load():
    """The compiled module. The first call imports it; one that fails raises, and the next call tries again."""
    global _loaded
    if _loaded is None:
        for name in HOST_MODULES:
            importlib.import_module(name)
        with _stand_ins(bridge.changes()):
            module = _import(sys.modules[PACKAGE].__path__)
        texts.install(module)
        layouts.install(module)
        bridge.extend(module)
        _loaded = module
    return _loaded


@contextlib.contextmanager
def _stand_ins(changes):
    """Put changed copies of host modules in their places: {module: {name: value}}. Then all is as it was before."""
    before = dict((name, sys.modules[name]) for name in changes if name in sys.modules)
    for name in changes:
        sys.modules[name] = _changed_copy(name, changes[name])
    try:
        yield
    finally:
        for name in changes:
            if name in before:
                sys.modules[name] = before[name]
            else:
                del sys.modules[name]


def _changed_copy(name, changes):
    copy = types.ModuleType(name)
    if sys.modules.get(name) is not None:  # None says that there is no such module
        vars(copy).update(vars(sys.modules[name]))
    vars(copy).update(changes)
    if "__all__" in vars(copy):
        copy.__all__ = sorted(set(copy.__all__).union(changes))
    return copy


def _import(folders):
    """Import the binary that lies in one of `folders`.

    It stays in sys.modules, where an import by its name finds it, unless something else has that name already. This
    package is no such thing: its own name has the host's folders in front.
    """
    other = sys.modules.pop(NAME, None)
    try:
        return _find_and_load(list(folders))
    finally:
        if other is not None:
            sys.modules[NAME] = other


if sys.version_info[0] == 2:
    import imp

    def _find_and_load(folders):
        return imp.load_module(NAME, *imp.find_module(NAME, folders))
else:
    from importlib.machinery import PathFinder
    from importlib.util import module_from_spec

    def _find_and_load(folders):
        spec = PathFinder.find_spec(NAME, folders)
        if spec is None:
            raise ImportError("no module %s for this Python in %s" % (NAME, ", ".join(folders)))
        module = module_from_spec(spec)
        sys.modules[NAME] = module
        try:
            spec.loader.exec_module(module)
        except BaseException:
            sys.modules.pop(NAME, None)
            raise
        return module
