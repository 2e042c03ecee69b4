"""Whether the host acts on a setting: some images keep one in their tree that their code has long forgotten."""

from __future__ import absolute_import

import sys
import types

PLACES = ("Screens.", "Plugins.")  # a setting is defined among the components, and acted on by a screen or a plug-in

_known = {}


def has_reader(name):
    """Whether code of a screen or a plug-in that is loaded asks for an attribute of this name."""
    if not _known.get(name):  # a plug-in may come later
        _known[name] = any(_asks(code, name) for code in _codes())
    return _known[name]


def _codes():
    for module_name, module in list(sys.modules.items()):
        if module is not None and module_name.startswith(PLACES):
            for value in list(vars(module).values()):
                if getattr(value, "__module__", None) != module_name:
                    continue  # imported from elsewhere
                members = vars(value).values() if isinstance(value, _CLASSES) else [value]
                for code in [getattr(member, "__code__", None) for member in list(members)]:
                    if isinstance(code, types.CodeType):
                        yield code


_CLASSES = (type, getattr(types, "ClassType", type))  # Python 2.7 has classes of two kinds


def _asks(code, name):
    return name in code.co_names or any(_asks(each, name) for each in code.co_consts if isinstance(each, types.CodeType))
