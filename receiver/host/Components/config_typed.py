"""The elements whose value is typed: numbers and text. Hosts offer them from `Components.config`."""
from Components.config_elements import (
    ConfigElement, KEY_BACKSPACE, KEY_DELETE, KEY_END, KEY_HOME, KEY_LEFT, KEY_NUMBERS, KEY_RIGHT, getKeyNumber)


class ConfigInteger(ConfigElement):
    """A whole number within limits. Digits type it, LEFT and RIGHT move it by `step` (to a multiple of it), HOME and
    END to the limits. Unlike the zero-padded fields of boxes it shows the plain number."""

    def __init__(self, default, limits=(0, 9999999999), step=1):
        self.limits = limits
        self.step = step
        self._typed = None             # digits typed so far; None: the next digit starts a new number
        super().__init__(self.normalize(default))

    def normalize(self, value):
        return min(max(int(value), self.limits[0]), self.limits[1])

    def fromstring(self, text):
        return self.normalize(text)

    def getText(self):
        return self._typed or str(self.value)

    def getMulti(self, selected):
        if not selected:
            return ("text", self.getText())
        text = self.getText()
        return ("mtext", text, () if self._typed else tuple(range(len(text))))

    def applyKey(self, key):
        if key in KEY_NUMBERS:
            self._type((self._typed or "") + str(getKeyNumber(key)), str(getKeyNumber(key)))
        elif key in (KEY_DELETE, KEY_BACKSPACE):
            self._type(self.getText()[:-1], "")
        else:
            self._typed = None
            self._move(key)

    def _type(self, digits, restart):
        """Show `digits`, or begin anew with `restart` when they exceed the limit; they count as soon as they are a
        number within the limits."""
        digits = digits.lstrip("-0") or digits[-1:]
        if int(digits or 0) > self.limits[1]:
            digits = restart
        if self.limits[0] <= int(digits or 0) <= self.limits[1]:
            self.value = int(digits or 0)
        self._typed = digits

    def _move(self, key):
        if key == KEY_RIGHT:
            self.value = (self.value // self.step + 1) * self.step
        elif key == KEY_LEFT:
            self.value = -(-self.value // self.step + 1) * self.step
        elif key in (KEY_HOME, KEY_END):
            self.value = self.limits[key == KEY_END]

    def onDeselect(self, session):
        self._typed = None

    def load(self):
        self._typed = None
        super().load()


class ConfigNumber(ConfigInteger):
    """A whole number from 0 up."""

    def __init__(self, default=0):
        super().__init__(default)


class ConfigText(ConfigElement):
    """A line of text with a cursor. LEFT, RIGHT, HOME and END move it, digits are typed, DELETE and BACKSPACE delete.

    fixed_size and visible_width are taken because hosts' code passes them; they have no effect here.
    """

    def __init__(self, default="", fixed_size=True, visible_width=False):
        super().__init__(default)
        self.marked_pos = 0

    def normalize(self, value):
        return str(value)

    def getMulti(self, selected):
        return ("mtext", self.value + " ", (self.marked_pos,)) if selected else ("text", self.value)

    def applyKey(self, key):
        at = self.marked_pos = min(self.marked_pos, len(self.value))
        if key in KEY_NUMBERS:
            self._replace(at, at, str(getKeyNumber(key)))
        elif key == KEY_DELETE:
            self._replace(at, at + 1, "")
        elif key == KEY_BACKSPACE and at:
            self._replace(at - 1, at, "")
        else:
            moves = {KEY_LEFT: max(at - 1, 0), KEY_RIGHT: min(at + 1, len(self.value)), KEY_HOME: 0,
                     KEY_END: len(self.value)}
            self.marked_pos = moves.get(key, at)

    def _replace(self, start, end, text):
        self.marked_pos = start + len(text)
        self.value = self.value[:start] + text + self.value[end:]
