"""The elements of the configuration tree: settings with their values, texts and keys. `Components.config` offers them."""

from receiver.data import env

KEY_LEFT, KEY_RIGHT, KEY_DELETE, KEY_BACKSPACE = 0, 1, 3, 4
KEY_NUMBERS = range(12, 22)
KEY_0 = KEY_NUMBERS[0]


def getKeyNumber(key):
    """The digit 0 to 9 of a number key."""
    return KEY_NUMBERS.index(key)


def NoSave(element):
    """The element, which is never stored: here that is any that is not in the tree."""
    return element


class ConfigElement:
    """One setting. Subclasses say what values there are, how they are stored, shown and changed by keys."""

    save_forced = False  # whether the default is stored as well
    path = ""  # where it was last put into the tree, for messages

    def __init__(self, default):
        self.default = default
        self.saved_value = None        # stored text; None: the default
        self._value = self._told = default
        self._notifiers = []           # (function, whether it is called at each change, not at each save)

    def normalize(self, value):
        """`value` as this element can hold it."""
        return value

    def fromstring(self, text):
        """The value of a stored text; ValueError when there is none."""
        return self.normalize(text)

    def getText(self):
        """What the row shows."""
        return str(self.value)

    def marked(self):
        """The positions of the characters that the next key would change, while the row is selected."""
        return ()

    def applyKey(self, key):
        """Change the value for one of the KEY_ constants; keys that mean nothing here change nothing."""

    @property
    def value(self):
        """The current value. Assigning a different one tells the notifiers."""
        return self._value

    @value.setter
    def value(self, value):
        value = self.normalize(value)
        if value != self._value:
            self._value = value
            self._notify(True)

    def handleKey(self, key, callback=None):
        """Apply a key; `callback()` only when the value changed."""
        before = self.value
        self.applyKey(key)
        if callback and self.value != before:
            callback()

    def enter(self, path, texts):
        """Learn its place in a tree, and its stored text if there is one."""
        self.path = path
        if path in texts:
            self.saved_value = texts[path]
            self.load()

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
        self.saved_value = str(self.value) if self.value != self.default or self.save_forced else None
        if self._told != self.value:
            self._told = self.value
            self._notify(False)

    def cancel(self):
        """Go back to the saved value."""
        self.load()

    def isChanged(self):
        """True when the value is not the saved one."""
        saved = str(self.default) if self.saved_value is None else self.saved_value
        return str(self.value) != saved

    def addNotifier(self, notifier, initial_call=True, immediate_feedback=True):
        """Call `notifier(element)` at each change, or, without immediate feedback, when a change is saved; with
        `initial_call` also now."""
        self._notifiers.append((notifier, immediate_feedback))
        if initial_call:
            notifier(self)

    def removeNotifier(self, notifier):
        """Take a notifier away; one that is not there is ignored."""
        self._notifiers = [each for each in self._notifiers if each[0] != notifier]

    def _notify(self, immediate):
        for notifier, when in list(self._notifiers):
            if when == immediate:
                notifier(self)

    def endTyping(self):
        """The next digit begins anew: there was a pause, or the row was left."""


class ConfigYesNo(ConfigElement):
    """Yes or no. Not a selection: OK on its row opens no pop-up."""

    def __init__(self, default=False):
        super().__init__(default)

    def fromstring(self, text):
        # Old images write lower case, and people edit this file.
        return text.lower() in ("1", "enable", "on", "true", "yes")

    def getText(self):
        return "yes" if self.value else "no"

    def applyKey(self, key):
        if key in (KEY_LEFT, KEY_RIGHT):
            self.value = not self.value


class ConfigSelection(ConfigElement):
    """One of some values.

    choices -- values, or (value, text to show) pairs
    default -- one of the values; the first without it.
    """

    wraparound = True

    def __init__(self, choices, default=None):
        super().__init__(self._take(choices, default))

    def _take(self, choices, default):
        """Take these choices. Returns the default among them."""
        self.description = dict(choice if isinstance(choice, tuple) else (choice, str(choice)) for choice in choices)
        self.choices = list(self.description)
        return default if default in self.choices else self.choices[0]

    def setChoices(self, choices, default=None):
        """Replace the choices; a value that is no longer there gives way to the default."""
        self.default = self._take(choices, default)
        self.value = self.value

    def getIndex(self):
        """Position of the current value among the choices."""
        return self.choices.index(self.value)

    def normalize(self, value):
        return value if value in self.choices else self.default

    def fromstring(self, text):
        return self.choices[[str(value) for value in self.choices].index(text)]

    def getText(self):
        return self.description[self.value]

    def applyKey(self, key):
        index, count = self.getIndex() + {KEY_LEFT: -1, KEY_RIGHT: 1}.get(key, 0), len(self.choices)
        self.value = self.choices[index % count if self.wraparound else min(max(index, 0), count - 1)]


class ConfigNothing(ConfigSelection):
    """No value at all: for rows that only carry an action."""

    def __init__(self):
        super().__init__([("", "")])


class ConfigSelectionNumber(ConfigSelection):
    """A number from `min` to `max` in steps, as a selection: OK offers all of them. Boxes store its default as well."""

    wraparound, save_forced = False, True

    def __init__(self, min, max, stepwidth, default=None):
        super().__init__(list(range(min, max + 1, stepwidth)), default)


class ConfigInteger(ConfigElement):
    """A whole number up to a limit. Digits type it, LEFT and RIGHT move it by `step` (to a multiple of it). Unlike the
    zero-padded fields of boxes it shows the plain number."""

    _typing = False  # whether the next digit goes on with the number

    def __init__(self, default, limits=(0, 9999999999), step=1):
        self.limits, self.step = limits, step
        super().__init__(default)

    def normalize(self, value):
        return min(max(int(value), self.limits[0]), self.limits[1])

    def marked(self):
        return () if self._typing else tuple(range(len(self.getText())))

    def applyKey(self, key):
        if key in KEY_NUMBERS:
            digit = getKeyNumber(key)
            number = self.value * 10 + digit if self._typing else digit
            self.value = number if number <= self.limits[1] else digit
        elif key in (KEY_DELETE, KEY_BACKSPACE):
            self.value //= 10
        elif key == KEY_RIGHT:
            self.value = (self.value // self.step + 1) * self.step
        elif key == KEY_LEFT:
            self.value = -(-self.value // self.step + 1) * self.step
        self._typing = key not in (KEY_LEFT, KEY_RIGHT)

    def endTyping(self):
        self._typing = False


class ConfigText(ConfigElement):
    """A line of text. No row of the receiver's settings is typed, so keys leave it alone.

    fixed_size is taken because hosts' code passes it; it has no effect here.
    """

    def __init__(self, default="", fixed_size=True):
        super().__init__(default)
