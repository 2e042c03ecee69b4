"""What the list widgets have in common: content, cursor, and the list's own keys."""

from Components.ActionMap import ActionMap
from Components.GUIComponent import GUIComponent
from enigma import eListbox


class ListComponent(GUIComponent):
    """A list on the screen. Unless its screen says otherwise it follows the arrow keys by itself."""

    def __init__(self, content):
        super().__init__()
        self.l = content
        self.onSelectionChanged = []
        self.wrap = True
        self.native_keys = ActionMap(["ListActions"], {
            name: lambda name=name: self._move(getattr(eListbox, name))
            for name in ("moveUp", "moveDown", "pageUp", "pageDown", "moveTop", "moveEnd")})

    def createWidget(self):
        return eListbox(self.l)

    def postWidgetCreate(self, instance):
        instance.setWrapAround(self.wrap)
        instance.selectionChanged = self.selectionChanged

    def applyLayout(self, element):
        self.instance.page = max(1, element.box.height // element.box.row_height)

    def selectionChanged(self):
        for function in list(self.onSelectionChanged):
            function()

    def getCurrent(self):
        """The selected row, None when there is none."""
        return self.l.getCurrentSelection()

    def getCurrentIndex(self):
        return self.l.getCurrentSelectionIndex()

    def moveToIndex(self, index):
        self.instance.moveSelectionTo(index)

    def execBegin(self):
        self.native_keys.execBegin()

    def execEnd(self):
        self.native_keys.execEnd()

    def destroy(self):
        self.native_keys.execEnd()
        super().destroy()

    def _move(self, direction):
        self.instance.moveSelection(direction)

    def up(self):
        self._move(eListbox.moveUp)

    def down(self):
        self._move(eListbox.moveDown)

    def pageUp(self):
        self._move(eListbox.pageUp)

    def pageDown(self):
        self._move(eListbox.pageDown)

    moveUp, moveDown = up, down
