"""A pop-up list of choices, each with a key of its own."""

from Components.ActionMap import NumberActionMap
from Components.Label import Label
from Components.ListComponent import ListComponent
from Screens.Screen import Screen
from enigma import eListboxPythonMultiContent
from receiver.picture import Row

COLORS = ["red", "green", "yellow", "blue"]
KEYS = [*"1234567890", *COLORS]


class ChoiceBox(Screen):
    """Closes with the chosen entry of `list`, or with None.

    list -- entries (text, value, ...); a text of "--" is a separator
    keys -- the names of the keys that choose the entries, "" for none
    selection -- index of the entry selected at first
    """

    def __init__(self, session, title="", list=[], keys=None, selection=0, skin_name=[], reorderConfig="",
                 windowTitle=None):
        Screen.__init__(self, session)
        names = [skin_name] if isinstance(skin_name, str) else [*skin_name]
        self.skinName = [*names, "ChoiceBox"]
        self.setTitle(windowTitle or _("Select"))
        self["text"] = Label(title)
        self.selection = selection
        keys = ([*keys] if keys is not None else KEYS) + [""] * len(list)
        self.entries = [(key, entry) for key, entry in zip(keys, list)]
        self["list"] = ListComponent(eListboxPythonMultiContent(self._paint, self._selectable))
        self["list"].l.setList(self.entries)
        self["actions"] = NumberActionMap(["OkCancelActions", "NumberActions", "ColorActions", "MenuActions"], {
            "ok": self.go, "cancel": self.cancel, "menu": self.cancel,
            **{digit: self.keyNumber for digit in "0123456789"},
            **{color: lambda color=color: self.goKey(color) for color in COLORS}}, prio=-1)
        self.onLayoutFinish.append(self._select)

    def go(self):
        row = self["list"].getCurrent()
        self.close(row and row[1])

    def keyNumber(self, number):
        self.goKey(str(number))

    def goKey(self, key):
        for index, (name, entry) in enumerate(self.entries):
            if name == key:
                self["list"].moveToIndex(index)
                self.close(entry)
                return

    def cancel(self):
        self.close(None)

    def _select(self):
        self.shrinkList("list")
        self["list"].moveToIndex(self.selection)

    def _selectable(self, row):
        return row[1][0] != "--"

    def _paint(self, row):
        key, entry = row
        return Row(str(entry[0]), kind="choice" if self._selectable(row) else "heading", shortcut=key)
