"""The keys of the settings list that hosts' keymaps and lists would turn into something else.

A keymap of our own names them. Hosts have RED in a context together with EXIT, so the module's map cannot tell the two
apart; and their lists offer the choices of a row that has none.
"""

from __future__ import absolute_import, print_function

import time
import traceback

import enigma
from Components import config as host
from Components.ActionMap import ActionMap

from . import guard

CONTEXT = "VeltroSettingsActions"
PRIORITY = -3  # the module's own map has -2

# Codes of the remote control, the same on every box: RED, OK and ENTER, then MENU, PVR, FILE, LIST and MEDIA, the digits.
KEYS = {"leave": (398,), "select": (352, 28), "choices": (139, 393, 144, 395, 226)}
KEYS.update((str(number), (11 if number == 0 else number + 1,)) for number in range(10))
PRESSED = 1

MANY = 40  # so many choices are no longer looked through in a list
PAUSE = 2  # seconds after which a digit begins a new number

_bound = None  # whether the keymap is there; None before it was tried


def _bind():
    """Make the keymap, on hosts that take bindings."""
    global _bound
    if _bound is None:
        maps = enigma.eActionMap.getInstance() if hasattr(enigma, "eActionMap") else None
        _bound = hasattr(maps, "bindKey")
        try:
            for action, codes in KEYS.items() if _bound else ():
                for code in codes:
                    maps.bindKey("Veltro", "generic", code, PRESSED, CONTEXT, action)
        except Exception:  # a host that takes them in another form; the screen works without
            print("[Veltro] no keymap of our own:\n" + traceback.format_exc())
            _bound = False
    return _bound


class Keymap(ActionMap):
    """Hands every action of our keymap on. A table of handlers would be checked by the host, one by one, at each opening."""

    def __init__(self, press):
        ActionMap.__init__(self, [CONTEXT], {}, PRIORITY)
        self._press = press

    def action(self, context, action):
        """Called by the host; 0 leaves the key to the next map."""
        return 0 if self._press(action) == 0 else 1


class SettingsKeys(object):
    """The settings screen's keys. What returns 0 leaves the key to the next map."""

    _typed = (None, "", 0)

    def __init__(self, *arguments, **keywords):
        super(SettingsKeys, self).__init__(*arguments, **keywords)
        if _bind():
            self["veltro_keys"] = Keymap(guard.guarded(self.pressKey))

    def pressKey(self, action):
        """Do what the action of our keymap stands for."""
        handlers = {"leave": self.keyCancel, "select": self.selectRow, "choices": self.offerChoices}
        return handlers[action]() if action in handlers else self.typeDigit(int(action))

    def selectRow(self):
        """OK on a yes/no row does what it does in the host's own setup; a number that is typed needs no list."""
        element = self._element()
        boolean = getattr(host, "ConfigBoolean", host.ConfigYesNo)
        if isinstance(element, boolean):
            before = element.value
            for name in ("keySelect", "keyOK"):
                if hasattr(self, name):
                    getattr(self, name)()
                    break
            if element.value != before:
                self.changedEntry()
            return 1
        return 1 if _is_typed(element) and len(element.choices) > MANY else 0

    def offerChoices(self):
        """MENU and its like: only rows that have choices are the host's."""
        element = self._element()
        choices = getattr(element, "choices", ())
        return 0 if 1 < len(choices) <= MANY or isinstance(element, host.ConfigText) else 1

    def typeDigit(self, digit):
        """A digit goes on with the number that is being typed; the nearest choice to it is the value."""
        element = self._element()
        if not _is_typed(element):
            return 0
        of, typed, at = self._typed
        now = time.time()
        typed = typed + str(digit) if of is element and 0 <= now - at < PAUSE else str(digit)
        numbers = [(int(choice), choice) for choice in element.choices]
        if int(typed) > max(numbers)[0]:
            typed = str(digit)
        self._typed = element, typed, now
        before = element.value
        element.value = min((abs(number - int(typed)), number, choice) for number, choice in numbers)[2]
        if element.value != before:
            self.changedEntry()
        return 1

    def _element(self):
        row = self["config"].getCurrent()
        return row[1] if row is not None and len(row) > 1 else None


def _is_typed(element):
    """Whether a selection offers nothing but numbers, and shows them as what they are."""
    if not isinstance(element, host.ConfigSelection) or len(element.choices) < 2:
        return False
    return all(str(choice).isdigit() and str(choice) in element.description[choice] for choice in element.choices)


SCREENS = {"Veltro": SettingsKeys}
