"""The list widget: rows, a cursor on them, and the page of them that is seen."""

from dataclasses import replace
from itertools import chain, islice

from receiver.picture import Row


class eListbox:
    """The widget and its content in one; plug-ins have them as `instance` and `l` of a list.

    paint -- makes a picture's `Row` of a row; without it that is the row's first field
    selectable -- true for a row that the cursor may stand on
    wrap -- whether the cursor goes from the last row to the first
    """

    moveUp, moveDown, moveTop, moveEnd, pageUp, pageDown = range(6)

    def __init__(self, paint=lambda row: Row(row[0]), selectable=lambda row: True, wrap=True):
        self.paint, self._selectable, self.wrap = paint, selectable, wrap
        self.rows, self.cursor = [], 0
        self.first, self.page = 0, 10
        self.onMoved = []  # called after each move of the cursor

    def setList(self, rows):
        """Show these rows. The cursor stays on its line, or goes to the last one if the list became shorter."""
        self.rows = rows
        self.moveTo(min(self.cursor, max(0, len(rows) - 1)))

    def getCurrentSelection(self):
        return self.rows[self.cursor] if self.cursor < len(self.rows) else None

    def selectable(self, index):
        return self._selectable(self.rows[index])

    def moveTo(self, index):
        """Put the cursor on a row, or on the next one that can be selected."""
        candidates = chain(range(index, len(self.rows)), range(index - 1, -1, -1))
        before, self.cursor = self.cursor, next(filter(self.selectable, candidates), 0)
        if self.cursor != before:
            for function in list(self.onMoved):
                function()

    def moveSelection(self, direction):
        """Move as one of this class's constants says. Rows that can't be selected are passed over."""
        step = 1 if direction in (self.moveDown, self.pageDown, self.moveTop) else -1
        everything = range(len(self.rows))[::step]
        way = range(self.cursor + step, len(self.rows) if step > 0 else -1, step)
        rows = self.page if direction in (self.pageUp, self.pageDown) else 1
        if direction in (self.moveTop, self.moveEnd):
            way = everything
        elif rows == 1 and self.wrap:
            way = chain(way, everything)
        for index in list(islice(filter(self.selectable, way), rows))[-1:]:
            self.moveTo(index)

    def window(self):
        """The first visible row: the page follows the cursor, and no line stays empty while there are rows above."""
        top = self.cursor if any(map(self.selectable, range(self.cursor))) else 0  # a heading is seen with its first row
        self.first = min(max(self.first, self.cursor - self.page + 1), top, max(0, len(self.rows) - self.page))
        return self.first

    def visible(self):
        """The painted rows of the page. Only in the selected one something is being edited."""
        first = self.window()
        for index, row in enumerate(self.rows[first:first + self.page], first):
            here = index == self.cursor
            row = self.paint(row)
            yield replace(row, selected=here, marked=row.marked if here else ())
