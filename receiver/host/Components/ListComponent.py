"""What the lists have in common: the widget with its rows, and the list's own keys."""

from Components.ActionMap import ActionMap
from Components.GUIComponent import GUIComponent
from enigma import eListbox

MOVES = ("moveUp", "moveDown", "moveTop", "moveEnd", "pageUp", "pageDown")


def _mover(name):
    return lambda self: self.instance.moveSelection(getattr(eListbox, name))


class ListComponent(GUIComponent):
    """A list on the screen. Unless its screen says otherwise it follows the arrow keys by itself.

    look -- how its rows are painted and which of them can be selected, see eListbox
    """

    moveUp, moveDown, moveTop, moveEnd, pageUp, pageDown = map(_mover, MOVES)
    up, down = moveUp, moveDown

    def __init__(self, list=(), **look):
        self.l = self.instance = eListbox(**look)  # on boxes the rows are an object of their own
        self.onSelectionChanged = self.l.onMoved
        self.native_keys = ActionMap(["ListActions"], {name: getattr(self, name) for name in MOVES})
        self.setList(list)

    def setList(self, list):
        self.list = list
        self.l.setList(list)

    def applyLayout(self, element):
        self.instance.page = max(1, element.height // element.row_height)

    def getCurrent(self):
        """The selected row, None when there is none."""
        return self.l.getCurrentSelection()

    def getCurrentIndex(self):
        return self.l.cursor

    getSelectionIndex = getCurrentIndex

    def moveToIndex(self, index):
        if 0 <= index < len(self.l.rows):
            self.l.moveTo(index)

    def execBegin(self):
        self.native_keys.execBegin()

    def execEnd(self):
        self.native_keys.execEnd()
