"""A text for the layout to draw."""

from Components.Sources.Source import Source


class StaticText(Source):
    def __init__(self, text=""):
        self.text = text
