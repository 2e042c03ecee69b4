"""The list of settings, and the part of a screen that changes them with the remote."""

from Components.ActionMap import ActionMap, NumberActionMap
from Components.ListComponent import ListComponent
from Components.Sources.StaticText import StaticText
from Components.config import (ConfigBoolean, ConfigElement, KEY_0, KEY_BACKSPACE, KEY_DELETE, KEY_LEFT, KEY_NUMBERS,
                               KEY_RIGHT, KEY_TIMEOUT)
from Screens.MessageBox import MessageBox
from enigma import eListboxPythonConfigContent, eTimer
from receiver import running

NUMBER_ENTRY_MS = 1000


def getSelectionChoices(element):
    """What a selection element offers: ([(text, value), ...], index of the current value)."""
    return [(element.description[value], value) for value in element.choices], element.getIndex()


class ConfigList(ListComponent):
    """Rows are tuples (label, element, ...); getConfigListEntry makes them."""

    def __init__(self, list, session=None):
        super().__init__(eListboxPythonConfigContent())
        self.session = session
        self.current = None
        self.timer = eTimer()
        self.timer.callback.append(self.timeout)
        self.onSelectionChanged.append(self._handOver)
        self.list = list

    @property
    def list(self):
        return self._list

    @list.setter
    def list(self, rows):
        self.timer.stop()
        self._list = rows
        self.l.setList(rows)
        for row in rows:
            assert len(row) < 2 or isinstance(row[1], ConfigElement), "no config element: %r" % (row,)

    def handleKey(self, key, callback=None):
        """Let the current element deal with a key; `callback` is called when that changed its value."""
        row = self.getCurrent()
        if row is None or len(row) < 2 or not row[1].enabled:
            return
        row[1].handleKey(key, callback)
        if key in KEY_NUMBERS:
            self.timer.start(NUMBER_ENTRY_MS, True)

    def timeout(self):
        self.handleKey(KEY_TIMEOUT)

    def isChanged(self):
        return any(row[1].isChanged() for row in self.list if len(row) > 1)

    def _handOver(self):
        if self.current is not None and len(self.current) > 1:
            self.current[1].onDeselect(self.session)
        self.current = self.getCurrent()
        if self.current is not None and len(self.current) > 1:
            self.current[1].onSelect(self.session)


class ConfigListScreen:
    """Mixed into a screen: the "config" list, the keys that change a value, and leaving with or without saving.

    on_change -- called without arguments after a change of the selected value by a key
    """

    def __init__(self, list, session=None, on_change=None, fullUI=False):
        self.entryChanged = on_change or (lambda: None)
        self["config"] = ConfigList(list, session or self.session)
        self._describes = running.gui.profile.describes_rows
        if self._describes and "description" not in self:
            self["description"] = StaticText()
        move = self["config"]
        self["navigationActions"] = ActionMap(["NavigationActions"], {
            "up": move.up, "down": move.down, "left": self.keyLeft, "right": self.keyRight,
            "pageUp": move.pageUp, "pageDown": move.pageDown,
            "top": lambda: move.moveToIndex(0), "bottom": lambda: move.moveToIndex(len(move.list) - 1)}, prio=1)
        self["editConfigActions"] = NumberActionMap(["SetupActions"], {
            "deleteBackward": lambda: self._handleKey(KEY_BACKSPACE), "deleteForward": lambda: self._handleKey(KEY_DELETE),
            **{str(digit): self.keyNumberGlobal for digit in range(10)}}, prio=1)
        self.onLayoutFinish.append(self._takeOverKeys)
        self["config"].onSelectionChanged.append(self._describe)

    def keyLeft(self):
        self._handleKey(KEY_LEFT)

    def keyRight(self):
        self._handleKey(KEY_RIGHT)

    def keySelect(self):
        """OK, for screens that bind it: yes becomes no, and no yes."""
        row = self["config"].getCurrent()
        if row is not None and len(row) > 1 and isinstance(row[1], ConfigBoolean):
            self._handleKey(KEY_RIGHT)

    def keyNumberGlobal(self, number):
        self._handleKey(KEY_0 + number)

    def keySave(self):
        for row in self["config"].list:
            row[1].save()
        self.close()

    def keyCancel(self):
        """Leave; ask first if that loses a change."""
        if self["config"].isChanged():
            self.session.openWithCallback(self.cancelConfirm, MessageBox, _("Really close without saving settings?"),
                                          default=False)
        else:
            self.close()

    def cancelConfirm(self, confirmed):
        if not confirmed:
            return
        for row in self["config"].list:
            if len(row) > 1:
                row[1].cancel()
        self.close()

    def _handleKey(self, key):
        if running.gui.profile.on_change_always:
            self["config"].handleKey(key)
            self.entryChanged()
        else:
            self["config"].handleKey(key, self.entryChanged)
        self._describe()

    def _takeOverKeys(self):
        # The list must not follow the arrows a second time.
        self["config"].native_keys.setEnabled(False)
        self._describe()

    def _describe(self):
        """Show the help text of the current row, which is its third field."""
        if not self._describes:
            return
        row = self["config"].getCurrent()
        self["description"].text = row[2] if row is not None and len(row) > 2 and isinstance(row[2], str) else ""
