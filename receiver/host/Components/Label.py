"""A text on the screen."""

from Components.GUIComponent import GUIComponent
from enigma import eLabel


class Label(GUIComponent):
    """A text widget. The text may be set before the widget exists."""

    def __init__(self, text=""):
        super().__init__()
        self._text = ""
        self.setText(text)

    def createWidget(self):
        return eLabel()

    def setText(self, text):
        self._text = "" if text is None else str(text)

    def getText(self):
        return self._text

    text = property(getText, setText)
