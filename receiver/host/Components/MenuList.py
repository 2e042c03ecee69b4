"""A plain list to choose from."""

from Components.ListComponent import ListComponent
from enigma import eListboxPythonStringContent


class MenuList(ListComponent):
    """Rows are texts, or tuples whose first field is the text."""

    def __init__(self, list, enableWrapAround=True, content=eListboxPythonStringContent):
        super().__init__(content())
        self.wrap = enableWrapAround
        self.setList(list)

    def setList(self, list):
        self.list = list
        self.l.setList(list)
