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
    TITLES = {TYPE_YESNO: "Question", TYPE_INFO: "Information", TYPE_WARNING: "Warning", TYPE_ERROR: "Error",
              TYPE_MESSAGE: "Message"}

    def __init__(self, session, text, type=TYPE_YESNO, timeout=-1, close_on_any_key=False, default=True,
                 enable_input=True, msgBoxID=None, simple=False, list=[], timeout_default=None):
        Screen.__init__(self, session)
        self.type = type
        self.setTitle(_(self.TITLES[type]))
        self["text"] = Label(text)
        question = type == self.TYPE_YESNO
        self.answers = (list or [(_("yes"), True), (_("no"), False)]) if question else []
        self["list"] = MenuList(self.answers)
        self["list"].setVisible(question)
        self.default = default
        self.onLayoutFinish.append(self._prepare)
        if enable_input:
            self["actions"] = ActionMap(["OkCancelActions"], {"ok": self.ok, "cancel": self.cancel}, -1)
        self.timeout_default = timeout_default
        self.timer = eTimer()
        self.timer.callback.append(self._timeUp)
        if timeout > 0:
            self.timer.start(timeout * 1000, True)

    def ok(self):
        self.close(self["list"].getCurrent()[1] if self.answers else True)

    def cancel(self):
        self.close(False)

    def _prepare(self):
        self.shrinkList("list")
        if self.answers and not self.default:
            self["list"].moveToIndex(len(self.answers) - 1)

    def _timeUp(self):
        if self.timeout_default is not None:
            self.close(self.timeout_default)
        else:
            self.ok()
