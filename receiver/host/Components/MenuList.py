"""A plain list to choose from."""

from Components.ListComponent import ListComponent


class MenuList(ListComponent):
    """Rows are texts, or tuples whose first field is the text; `what` may say otherwise."""

    def __init__(self, list, **what):
        super().__init__(**what)
        self.setList(list)
