"""A text for the layout to draw."""

from Components.Sources.Source import Source


class StaticText(Source):
    def __init__(self, text="", filter=lambda text: text):
        self._filter = filter
        self._text = filter(text)

    def setText(self, text):
        self._text = self._filter(text)

    def getText(self):
        return self._text

    text = property(getText, setText)

    @property
    def boolean(self):
        return bool(self._text)
