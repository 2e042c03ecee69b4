"""A picture on the screen. The receiver keeps its place but draws none."""

from Components.GUIComponent import GUIComponent
from enigma import ePixmap


class Pixmap(GUIComponent):
    text = ""

    def createWidget(self):
        return ePixmap()
