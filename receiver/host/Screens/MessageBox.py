"""A message, or a question to be answered with yes or no."""

from Components.ActionMap import ActionMap
from Components.Label import Label
from Components.MenuList import MenuList
from Screens.Screen import Screen
from enigma import eTimer


class MessageBox(Screen):
    """Closes with True or False for a question, with True for a message that was seen.

    timeout -- seconds after which it closes with the answer that is selected; -1: never
    default -- the answer selected at first
    """

    TYPE_YESNO, TYPE_INFO, TYPE_WARNING, TYPE_ERROR, TYPE_MESSAGE = range(5)
    TITLES = ("Question", "Information", "Warning", "Error", "Message")

    def __init__(self, session, text, type=TYPE_YESNO, timeout=-1, default=True):
        Screen.__init__(self, session)
        self.setTitle(self.TITLES[type])
        self["text"] = Label(text)
        self["list"] = MenuList([("yes", True), ("no", False)] if type == self.TYPE_YESNO else [])
        self["list"].visible = type == self.TYPE_YESNO
        self["list"].moveToIndex(0 if default else 1)
        self.onLayoutFinish.append(self.shrinkList)
        self["actions"] = ActionMap(["OkCancelActions"], {"ok": self.ok, "cancel": lambda: self.close(False)}, -1)
        self.timer = eTimer()
        self.timer.callback.append(self.ok)
        if timeout > 0:
            self.timer.start(timeout * 1000, True)

    def ok(self):
        answer = self["list"].getCurrent()
        self.close(answer[1] if answer else True)
