"""The widgets of screens. Their events bear the name under which they are registered, before that their class's."""

from .configuration import ConfigElement
from .recorder import Strict, recorder


class Widget(Strict):
    def __init__(self):
        self._name = type(self).__name__


class Label(Widget):
    """Components.Label, a text line. `text` and `setText` are the same thing, here as on a box."""

    settable = ("text",)

    def __init__(self, *text):
        Widget.__init__(self)
        recorder.call("Label", *text)
        self._text = text[0] if text else ""

    def setText(self, text):
        recorder.call(self._name + ".setText", text)
        self._text = text

    def getText(self):
        return self._text

    text = property(getText, setText)


class StaticText(Widget):
    """Components.Sources.StaticText: a text that a layout shows."""

    def __init__(self, text=""):
        Widget.__init__(self)
        recorder.call("StaticText", text)
        self._text = text

    @property
    def text(self):
        return self._text


class ActionMap:
    """Components.ActionMap: contexts, actions, priority. A classic class on Python 2.7, as on boxes of that time."""

    def __init__(self, contexts, actions, *priority):
        recorder.call("ActionMap", contexts, sorted(actions), *priority)
        self._contexts, self._actions, self._priority = contexts, actions, priority


class ListInstance(Strict):
    """The list on the picture, which moves the selection."""

    def __init__(self, widget):
        self._widget = widget

    @property
    def moveUp(self):
        recorder.look("instance.moveUp")
        return "moveUp"

    @property
    def moveDown(self):
        recorder.look("instance.moveDown")
        return "moveDown"

    def moveSelection(self, direction):
        recorder.call(self._widget._name + ".instance.moveSelection", direction)
        step = {"moveUp": -1, "moveDown": 1}[direction]
        self._widget._index = (self._widget._index + step) % len(self._widget._rows)


class ListContent(Strict):
    """The widget's `l`: what the list shows."""

    def __init__(self, widget):
        self._widget = widget

    def setList(self, rows):
        recorder.call(self._widget._name + ".l.setList", rows)
        self._widget._show(rows)

    def getCurrentSelection(self):
        recorder.call(self._widget._name + ".l.getCurrentSelection")
        return self._widget._current()


class ConfigList(Widget):
    """Components.ConfigList. `_index` is the selected row, `_shown` a copy of the rows at the last redraw."""

    settable = ("list",)
    _index = 0

    def __init__(self, list):
        Widget.__init__(self)
        recorder.call("ConfigList", list)
        self._content, self._instance = ListContent(self), ListInstance(self)
        self._show(list)

    def _show(self, rows):
        self._rows, self._shown = rows, rows[:]

    def _current(self):
        return self._rows[self._index] if 0 <= self._index < len(self._rows) else None

    @property
    def list(self):
        recorder.look(self._name + ".list")
        return self._rows

    @list.setter
    def list(self, rows):
        recorder.call(self._name + ".list =", rows)
        assert all(len(row) < 2 or isinstance(row[1], ConfigElement) for row in rows), "no element in a row"
        self._show(rows)

    @property
    def l(self):
        recorder.look(self._name + ".l")
        return self._content

    @property
    def instance(self):
        recorder.look(self._name + ".instance")
        return self._instance

    def getCurrent(self):
        recorder.call(self._name + ".getCurrent")
        return self._current()


class FileList(Widget):
    """Components.FileList over `listings`: directory -> [(path, is a directory), ...]. A page has `PAGE` rows."""

    PAGE = 10
    listings = {}

    def __init__(self, *arguments, **keywords):
        Widget.__init__(self)
        recorder.call("FileList", *arguments, **keywords)
        self._enter(arguments[0])

    def _enter(self, directory):
        self._entries, self._index = self.listings.get(directory, []), 0

    def _move(self, key, step):
        recorder.call("%s.%s" % (self._name, key))
        self._index = max(0, min(self._index + step, len(self._entries) - 1))

    def getSelection(self):
        recorder.call(self._name + ".getSelection")
        return self._entries[self._index] if self._entries else None

    def canDescent(self):
        recorder.call(self._name + ".canDescent")
        return bool(self._entries) and self._entries[self._index][1]

    def descent(self):
        recorder.call(self._name + ".descent")
        self._enter(self._entries[self._index][0])

    def up(self):
        self._move("up", -1)

    def down(self):
        self._move("down", 1)

    def pageUp(self):
        self._move("pageUp", -self.PAGE)

    def pageDown(self):
        self._move("pageDown", self.PAGE)
