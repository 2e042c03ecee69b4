"""Components.config of a box: elements with a value, a stored text and notifiers."""

import sys

PYTHON2 = sys.version_info[0] == 2


class ConfigElement(object):
    def __init__(self, default=None):
        self.default = self._value = self.last_value = default
        self.saved_value = None
        self._notifiers, self._final = [], []

    @property
    def value(self):
        return self._value

    @value.setter
    def value(self, value):
        changed, self._value = value != self._value, value
        if changed or PYTHON2:  # old hosts tell every assignment
            for notifier in self._notifiers:
                notifier(self)

    def save(self):
        self.saved_value = None if self.value == self.default else str(self.value)
        if self.value != self.last_value or PYTHON2:
            self.last_value = self.value
            for notifier in self._final:
                notifier(self)

    def load(self):
        if self.saved_value is not None:
            self._value = self.last_value = type(self.default)(self.saved_value)

    def cancel(self):
        self.value = self.default if self.saved_value is None else type(self.default)(self.saved_value)

    def addNotifier(self, notifier, initial_call=True, immediate_feedback=True):
        (self._notifiers if immediate_feedback else self._final).append(notifier)
        if initial_call:
            notifier(self)

    def disableSave(self):
        pass


class ConfigYesNo(ConfigElement):
    def __init__(self, default=False):
        ConfigElement.__init__(self, default)


class ConfigText(ConfigElement):
    def __init__(self, default="", fixed_size=True):
        ConfigElement.__init__(self, default)


class ConfigSelection(ConfigElement):
    def __init__(self, choices, default=None):
        self._describe(choices)
        ConfigElement.__init__(self, self.choices[0] if default is None else default)

    def _describe(self, choices):
        pairs = [choice if isinstance(choice, tuple) else (choice, choice) for choice in choices]
        self.choices = [value for value, _ in pairs]
        self.description = dict(pairs)

    @property
    def value(self):
        return self._value

    @value.setter
    def value(self, value):
        """What is no choice becomes the default, without a word."""
        ConfigElement.value.fset(self, value if value in self.choices else self.default)

    def setChoices(self, choices, default=None):
        """A value that is none of them gives way; what is stored stays."""
        self._describe(choices)
        self.default = self.choices[0] if default is None else default
        if self.value not in self.choices:
            self.value = self.default

    def load(self):
        if self.saved_value in self.choices:
            self._value = self.last_value = self.saved_value

    def getIndex(self):
        return self.choices.index(self.value)


class ConfigNothing(ConfigSelection):
    def __init__(self):
        ConfigSelection.__init__(self, [("", "")])


class ConfigSubsection(object):
    """Takes elements and subsections only, and gives a new element the text stored under its name."""

    def __init__(self, stored=None):
        self.__dict__["_stored"] = stored or {}

    def __setattr__(self, name, value):
        assert isinstance(value, (ConfigElement, ConfigSubsection)), name
        self.__dict__[name] = value
        if isinstance(value, ConfigElement) and name in self._stored:
            value.saved_value = self._stored[name]
            value.load()


class ConfigFile(object):
    def __init__(self):
        self.saves = 0

    def save(self):
        self.saves += 1
