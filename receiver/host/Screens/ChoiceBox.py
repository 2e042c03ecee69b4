"""A pop-up list of choices, each with a key of its own."""

from functools import partial

from Components.ActionMap import ActionMap
from Components.Label import Label
from Components.MenuList import MenuList
from Screens.Screen import Screen
from receiver.picture import Row

KEYS = [*"1234567890", "red", "green", "yellow", "blue"]


def _paint(row):
    key, entry = row
    return Row(str(entry[0]), kind="choice", shortcut=key)


class ChoiceBox(Screen):
    """Closes with the chosen entry of `list`, or with None.

    list -- entries (text, value, ...)
    keys -- the names of the keys that choose the entries, "" for none
    selection -- index of the entry selected at first
    """

    def __init__(self, session, title="", list=(), keys=None, selection=0):
        Screen.__init__(self, session)
        self.setTitle("Select")
        self["text"] = Label(title)
        keys = [*(KEYS if keys is None else keys), *[""] * len(list)]
        self["list"] = MenuList([*zip(keys, list)], paint=_paint)
        self["list"].moveToIndex(selection)
        self["actions"] = ActionMap(["OkCancelActions", "NumberActions", "ColorActions", "MenuActions"], {
            "ok": self.go, "cancel": partial(self.close, None), "menu": partial(self.close, None),
            **{key: partial(self.goKey, key) for key in KEYS}}, prio=-1)
        self.onLayoutFinish.append(self.shrinkList)

    def go(self):
        row = self["list"].getCurrent()
        self.close(row and row[1])

    def goKey(self, key):
        for name, entry in self["list"].list:
            if name == key:
                self.close(entry)
                return
