"""The elements of the configuration tree: what all have in common, and those with a fixed set of values. Hosts offer
them from `Components.config`."""
import builtins

from receiver.data import env

(KEY_LEFT, KEY_RIGHT, KEY_OK, KEY_DELETE, KEY_BACKSPACE, KEY_HOME, KEY_END, KEY_TOGGLEOW, KEY_ASCII,
 KEY_TIMEOUT) = range(10)
KEY_NUMBERS = range(12, 22)
KEY_0, KEY_9 = KEY_NUMBERS[0], KEY_NUMBERS[9]


def getKeyNumber(key):
    """The digit 0 to 9 of a number key."""
    return KEY_NUMBERS.index(key)


def translate(text):
    """`text` in the user's language. The empty text stays empty: catalogues answer it with their header."""
    return getattr(builtins, "_", str)(text) if text else ""


class ConfigElement:
    """One setting. Subclasses say what values there are, how they are stored, shown and changed by keys."""

    def __init__(self, default):
        self.default = default
        self.saved_value = None        # stored text; None: the default
        self.save_disabled = False
        self.save_forced = False
        self.enabled = True
        self.path = ""                 # where it was last put into the tree, for messages
        self._value = self._told = default
        self._notifiers = []
        self._final_notifiers = []

    # What a subclass overrides

    def normalize(self, value):
        """`value` as this element can hold it."""
        return value

    def tostring(self, value):
        """The stored text of a value."""
        return str(value)

    def fromstring(self, text):
        """The value of a stored text; ValueError when there is none."""
        return text

    def getText(self):
        """What the row shows."""
        return self.tostring(self.value)

    def getMulti(self, selected):
        """How to paint the row: ("text", text), or ("mtext", text, marked positions) while it is edited."""
        return ("text", self.getText())

    def applyKey(self, key):
        """Change the value for one of the KEY_ constants; keys that mean nothing here change nothing."""

    # What all have in common

    @property
    def value(self):
        """The current value. Assigning a different one tells the notifiers."""
        return self._value

    @value.setter
    def value(self, value):
        value = self.normalize(value)
        if value != self._value:
            self._value = value
            for notifier in list(self._notifiers):
                notifier(self)

    def handleKey(self, key, callback=None):
        """Apply a key; `callback()` only when the value changed."""
        before = self.value
        self.applyKey(key)
        if callback and self.value != before:
            callback()

    def load(self):
        """Take the saved text, or the default. Text that has no meaning is reported and stays until the next save()."""
        value = self.default
        if self.saved_value is not None:
            try:
                value = self.fromstring(self.saved_value)
            except ValueError:
                env.log("[receiver] settings: %s can't be %r, using the default" % (self.path, self.saved_value))
        self.value = value

    def save(self):
        """Make the current value the saved one, in memory; `configfile.save()` writes the file."""
        is_default = self.value == self.default and not self.save_forced
        self.saved_value = None if is_default or self.save_disabled else self.tostring(self.value)
        if self._told != self.value:
            self._told = self.value
            for notifier in list(self._final_notifiers):
                notifier(self)

    def cancel(self):
        """Go back to the saved value."""
        self.load()

    def isChanged(self):
        """True when the value is not the saved one."""
        saved = self.tostring(self.default) if self.saved_value is None else self.saved_value
        return not self.save_disabled and self.tostring(self.value) != saved

    def disableSave(self):
        """Never store this element."""
        self.save_disabled = True

    def addNotifier(self, notifier, initial_call=True, immediate_feedback=True):
        """Call `notifier(element)` at each change, or, without immediate feedback, when a change is saved; with
        `initial_call` also now."""
        (self._notifiers if immediate_feedback else self._final_notifiers).append(notifier)
        if initial_call:
            notifier(self)

    def removeNotifier(self, notifier):
        """Take a notifier away; one that is not there is ignored."""
        for notifiers in (self._notifiers, self._final_notifiers):
            if notifier in notifiers:
                notifiers.remove(notifier)

    def onSelect(self, session):
        """The row was entered."""

    def onDeselect(self, session):
        """The row was left."""


class ConfigBoolean(ConfigElement):
    """Yes or no. Not a selection: OK on its row opens no pop-up, LEFT, RIGHT and OK of the host toggle it."""

    def __init__(self, default=False, descriptions=("no", "yes")):
        super().__init__(bool(default))
        self.descriptions = descriptions

    def normalize(self, value):
        return bool(value)

    def tostring(self, value):
        return "True" if value else "False"

    def fromstring(self, text):
        # Old images write lower case, and people edit this file.
        return text.lower() in ("1", "enable", "on", "true", "yes")

    def getText(self):
        return translate(self.descriptions[self.value])

    def applyKey(self, key):
        if key in (KEY_LEFT, KEY_RIGHT, KEY_OK):
            self.value = not self.value
        elif key in (KEY_HOME, KEY_END):
            self.value = key == KEY_END


class ConfigYesNo(ConfigBoolean):
    """A boolean that says yes and no."""


class ConfigSelection(ConfigElement):
    """One of some values.

    choices -- values, or (value, text to show) pairs, or a dict of these; order is kept.
    default -- one of the values; the first without it.
    """

    wraparound = True

    def __init__(self, choices, default=None):
        self._define(choices)
        super().__init__(self._known(default))

    def _define(self, choices):
        pairs = choices.items() if isinstance(choices, dict) else choices
        pairs = [pair if isinstance(pair, tuple) else (pair, str(pair)) for pair in pairs]
        self.choices = [value for value, _ in pairs]
        self.description = dict(pairs)

    def _known(self, value):
        return value if value in self.choices else self.choices[0]

    def setChoices(self, choices, default=None):
        """Replace the choices; a value that is no longer there gives way to the default."""
        self._define(choices)
        self.default = self._known(default)
        self.value = self.value

    def getIndex(self):
        """Position of the current value among the choices."""
        return self.choices.index(self.value)

    def normalize(self, value):
        return value if value in self.choices else self.default

    def fromstring(self, text):
        for value in self.choices:
            if self.tostring(value) == text:
                return value
        raise ValueError(text)

    def getText(self):
        return self.description[self.value]

    def applyKey(self, key):
        last = len(self.choices) - 1
        step = {KEY_LEFT: -1, KEY_RIGHT: 1}.get(key, 0)
        index = {KEY_HOME: 0, KEY_END: last}.get(key, self.getIndex() + step)
        index = index % (last + 1) if self.wraparound else min(max(index, 0), last)
        self.value = self.choices[index]


class ConfigNothing(ConfigSelection):
    """No value at all: for rows that only carry an action."""

    def __init__(self):
        super().__init__([("", "")])


class ConfigSelectionNumber(ConfigSelection):
    """A number from `min` to `max` in steps, as a selection: OK offers all of them."""

    def __init__(self, min, max, stepwidth, default=None, wraparound=False):
        self.wraparound = wraparound
        super().__init__(list(range(min, max + 1, stepwidth)), default)
        self.save_forced = True  # boxes store its default as well
