"""The list of settings, and the part of a screen that changes them with the remote."""

from functools import partial

from Components.ActionMap import ActionMap
from Components.ListComponent import ListComponent
from Components.Sources.StaticText import StaticText
from Components.config import ConfigYesNo, KEY_0, KEY_BACKSPACE, KEY_DELETE, KEY_LEFT, KEY_RIGHT
from Screens.MessageBox import MessageBox
from enigma import eTimer
from receiver import running
from receiver.picture import Row

NUMBER_ENTRY_MS = 1000


def getSelectionChoices(element):
    """What a selection element offers: ([(text, value), ...], index of the current value)."""
    return [(element.description[value], value) for value in element.choices], element.getIndex()


def _element(row):
    """The element of a row; None for a heading, which has none, and for no row at all."""
    return row[1] if row is not None and len(row) > 1 else None


def _paint(row):
    element = _element(row)
    if element is None:
        return Row(str(row[0]), kind="heading")
    switch = element.value if isinstance(element.value, bool) else None
    return Row(str(row[0]), str(element.getText()), kind="setting", switch=switch, marked=element.marked())


class ConfigList(ListComponent):
    """Rows are tuples (label, element, ...); getConfigListEntry makes them."""

    def __init__(self, list, session=None):
        super().__init__(list, paint=_paint, selectable=_element)
        self._edited = None
        self._timer = eTimer()
        self._timer.callback.append(self._typingEnds)
        self.onSelectionChanged.append(self._typingEnds)

    def handleKey(self, key, callback=None):
        """Let the current element deal with a key; `callback` is called when that changed its value."""
        self._edited = _element(self.getCurrent())
        if self._edited is not None:
            self._edited.handleKey(key, callback)
            self._timer.start(NUMBER_ENTRY_MS, True)

    def elements(self):
        return [row[1] for row in self.list if len(row) > 1]

    def isChanged(self):
        return any(element.isChanged() for element in self.elements())

    def _typingEnds(self):
        if self._edited is not None:
            self._edited.endTyping()


class ConfigListScreen:
    """Mixed into a screen: the "config" list, the keys that change a value, and leaving with or without saving.

    on_change -- called without arguments after a change of the selected value by a key
    """

    def __init__(self, list, session=None, on_change=None):
        self.entryChanged = on_change or (lambda: None)
        config = self["config"] = ConfigList(list, session or self.session)
        config.native_keys.setEnabled(False)  # the list must not follow the arrows a second time
        self["navigationActions"] = ActionMap(["NavigationActions"], {
            "up": config.up, "down": config.down,
            "left": partial(self._handleKey, KEY_LEFT), "right": partial(self._handleKey, KEY_RIGHT),
            "pageUp": config.pageUp, "pageDown": config.pageDown, "top": config.moveTop, "bottom": config.moveEnd}, prio=1)
        self["editConfigActions"] = ActionMap(["SetupActions"], {
            "deleteBackward": partial(self._handleKey, KEY_BACKSPACE), "deleteForward": partial(self._handleKey, KEY_DELETE),
            **{str(digit): partial(self._handleKey, KEY_0 + digit) for digit in range(10)}}, prio=1)
        if running.gui.profile.describes_rows:
            self["description"] = StaticText()
            self.onLayoutFinish.append(self._describe)
            config.onSelectionChanged.append(self._describe)

    def keySelect(self):
        """OK, for screens that bind it: yes becomes no, and no yes."""
        if isinstance(_element(self["config"].getCurrent()), ConfigYesNo):
            self._handleKey(KEY_RIGHT)

    def keyCancel(self):
        """Leave; ask first if that loses a change."""
        if self["config"].isChanged():
            self.session.openWithCallback(self.cancelConfirm, MessageBox, "Really close without saving settings?", default=False)
        else:
            self.close()

    def cancelConfirm(self, confirmed):
        if confirmed:
            for element in self["config"].elements():
                element.cancel()
            self.close()

    def _handleKey(self, key):
        if running.gui.profile.on_change_always:
            self["config"].handleKey(key)
            self.entryChanged()
        else:
            self["config"].handleKey(key, self.entryChanged)

    def _describe(self):
        """Show the help text of the current row, which is its third field."""
        row = self["config"].getCurrent()
        self["description"].text = row[2] if row is not None and len(row) > 2 else ""
