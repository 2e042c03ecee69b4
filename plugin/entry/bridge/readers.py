"""Whether the host acts on a setting: some images keep one in their tree that their code has long forgotten."""

from __future__ import absolute_import

import sys
import types

PLACES = ("Screens.", "Plugins.")  # a setting is defined among the components, and acted on by a screen or a plug-in

_asked = {}  # name: who asks for it, the modules that were looked through, and how many there were then


def has_reader(name):
    """Whether code of a screen or a plug-in that is loaded asks for an attribute of this name."""
    found, seen, count = _asked.get(name, ([], set(), 0))
    if not found and count != len(sys.modules):  # who asks may have been loaded meanwhile
        new = [each for each in list(sys.modules) if each not in seen and each.startswith(PLACES)]
        seen.update(new)
        found.extend(each for each in new if any(_asks(code, name) for code in _codes(each)))
        _asked[name] = found, seen, len(sys.modules)
    return bool(found)


def _codes(module_name):
    module = sys.modules[module_name]
    for value in list(vars(module).values()) if module is not None else ():
        if getattr(value, "__module__", None) != module_name:
            continue  # imported from elsewhere
        members = vars(value).values() if isinstance(value, _CLASSES) else [value]
        for code in [getattr(member, "__code__", None) for member in list(members)]:
            if isinstance(code, types.CodeType):
                yield code


_CLASSES = (type, getattr(types, "ClassType", type))  # Python 2.7 has classes of two kinds


def _asks(code, name):
    return name in code.co_names or any(_asks(each, name) for each in code.co_consts if isinstance(each, types.CodeType))
