"""A text on the screen, as a widget."""

from Components.GUIComponent import GUIComponent


class Label(GUIComponent):
    def __init__(self, text=""):
        self.text = text
