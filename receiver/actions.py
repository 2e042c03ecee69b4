"""Keys become actions here: the keymap file, and the bindings that the open screens have made."""

from collections import defaultdict
from dataclasses import dataclass
import xml.etree.ElementTree as ElementTree

MAKE, REPEAT, BREAK = "m", "r", "b"

# The codes that a remote control sends, and the bits of what happens to a key, for bindings that a plug-in makes.
CODES = {103: "up", 108: "down", 105: "left", 106: "right", 352: "ok", 28: "ok", 174: "exit", 398: "red", 399: "green",
         400: "yellow", 401: "blue", 139: "menu", 358: "info", 365: "epg", 377: "tv", 385: "radio", 402: "channelup",
         403: "channeldown", 412: "previous", 407: "next", 388: "text", 11: "0",
         **{number + 1: str(number) for number in range(1, 10)}}
FLAGS = {1: MAKE, 2: BREAK, 4: REPEAT}
KEYS = tuple(dict.fromkeys(CODES.values()))

# The keys that letters of a keyboard stand for: with Shift, and where no list searches for what is typed.
LETTERS = {"t": "tv", "r": "radio", "m": "menu", "i": "info", "e": "epg"}


def read_keymap(*paths):
    """{context: {(key, flag): action}}. A context is the last file's that has it, unless that says that it extends the one
    before. ValueError for a key that the remote does not have."""
    keymap = defaultdict(dict)
    for path in paths:
        for context in ElementTree.parse(path).getroot().iter("map"):
            actions = keymap[context.get("context")]
            if not context.get("extends"):
                actions.clear()
            for entry in context.iter("key"):
                key = entry.get("id").removeprefix("KEY_").lower()
                if key not in KEYS:
                    raise ValueError("%s: the remote has no key %s" % (path, entry.get("id")))
                actions.update({(key, flag): entry.get("mapto") for flag in entry.get("flags", MAKE)})
    return keymap


@dataclass
class _Binding:
    context: str
    priority: int
    function: object
    made: str = None  # the key whose press it has seen


class ActionMaps:
    """The bindings of the GUI, known to screens as eActionMap. keymap -- as of `read_keymap`"""

    def __init__(self, keymap):
        self._keymap = keymap
        self._bindings = []
        self.typed = ""

    def bindKey(self, domain, device, code, flags, context, action):
        """A line of a keymap. A key that this remote does not have is none of its business."""
        for bit, flag in FLAGS.items():
            if flags & bit and code in CODES:
                self._keymap[context][CODES[code], flag] = action

    def bindAction(self, context, priority, function):
        self._bindings.append(_Binding(context, priority, function))

    def unbindAction(self, context, function):
        for binding in self._bindings:
            if binding.context == context and binding.function == function:
                self._bindings.remove(binding)
                return

    def deliver(self, key, flag):
        """Offer one key event to the bindings, by priority and then by age, until one answers non-zero. True if one did.

        Who gets it is fixed before the first call: a screen opened by this key must not see it. Repeats and
        releases go only to bindings that saw the press.
        """
        candidates = []
        for binding in sorted(self._bindings, key=lambda binding: binding.priority):
            if flag == MAKE:
                binding.made = key
            action = self._keymap[binding.context].get((key, flag))
            if action is not None and binding.made == key:
                candidates.append((binding, action))
        return any(binding.function(binding.context, action) for binding, action in candidates)

    def type(self, char):
        """Offer a typed character, which is then `typed`, to the bindings that ask for text. True if one took it."""
        self.typed = char
        bindings = [binding for binding in self._bindings if binding.context == "InputAsciiActions"]
        return any(binding.function(binding.context, "gotAsciiCode") for binding in bindings)
