"""What the EPG key opens, wherever the host keeps that, and once it does: some make the setting with their info bar."""

from __future__ import absolute_import

from importlib import import_module

from Components import config as host

from ..texts import translate as _

# The host's own settings, and the one that says by names of functions what the key does.
SETTINGS = ("usage.defaultEPGType", "plisettings.PLIEPG_mode")
KEY = "misc.hotkey.epg"
FUNCTIONS = "Screens.Hotkey"
AS_SET = "as set"

_of_key = None


def find(tree):
    """The element for the row, None where the host has none (yet). tree -- finds an element by its path"""
    global _of_key
    for path in SETTINGS:
        found = tree(path)
        if found is not None:
            return found
    key = tree(KEY)
    if key is None:
        return None
    if _of_key is None or _of_key.key is not key:
        _of_key = KeyFunction(key)
    _of_key.refresh()
    return _of_key


class KeyFunction(host.ConfigSelection):
    """The function of the EPG key as one of the host's EPG screens.

    The user may have given the key any function, or several: that is a choice of its own, and it is kept beside, so that
    it can be chosen again. Nothing reaches the key before the row is saved.
    """

    def __init__(self, key):
        self.key = key
        if not hasattr(host.config.misc, "veltro_epg_key"):
            host.config.misc.veltro_epg_key = host.ConfigText(default="", fixed_size=False)
        self.own = host.config.misc.veltro_epg_key
        self.seen = None
        host.ConfigSelection.__init__(self, [(AS_SET, "")], default=AS_SET)

    def refresh(self):
        """Follow the host: the screens that it offers, and what the key has been given elsewhere."""
        screens = _screens()
        if self.key.value not in [name for name, text in screens]:
            self.own.value = self.key.value
            own = True
        else:
            own = bool(self.own.value)
        state = screens, own, self.key.value
        if self.seen != state:
            self.seen = state
            choices = screens + [(AS_SET, _("As set for the key"))] * own
            self.setChoices(choices, default=choices[0][0])
            self.cancel()

    def load(self):
        """The key has what is stored."""

    def save(self):
        if self.isChanged():
            self.key.value = self.own.value if self.value == AS_SET else self.value
        for element in (self.key, self.own):
            element.save()

    def cancel(self):
        self.value = self._of_the_key()

    def isChanged(self):
        return self.value != self._of_the_key()

    def _of_the_key(self):
        return self.key.value if self.key.value in list(self.choices) else AS_SET


def _screens():
    """The EPG screens that the host offers for keys, as choices."""
    try:
        functions = import_module(FUNCTIONS)
        if not functions.hotkey.functions:
            functions.getHotkeyFunctions()
        found = [(name, text) for text, name, group in functions.hotkey.functions if group == "EPG"]
    except (ImportError, AttributeError, ValueError):  # a host that keeps them in another way
        found = []
    return found or [("Infobar/openSingleServiceEPG", _("Single EPG")), ("Infobar/openMultiServiceEPG", _("Multi EPG")),
                     ("Infobar/openEventView", _("Event view"))]
