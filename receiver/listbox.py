"""The list widget: a cursor over rows, its page, and what each kind of row shows."""

from itertools import chain, islice

from receiver.picture import Row


class ListContent:
    """Rows and the cursor on them. The cursor lives here, so it works before any widget shows the list."""

    def __init__(self):
        self.rows = []
        self.cursor = 0
        self.listbox = None

    def setList(self, rows):
        """Show these rows. The cursor stays on its line, or goes to the last one if the list became shorter."""
        self.rows = rows if isinstance(rows, list) else []
        self.moveTo(min(self.cursor, max(0, len(self) - 1)))

    def __len__(self):
        return len(self.rows)

    def getCurrentSelection(self):
        return self.rows[self.cursor] if self.cursor < len(self.rows) else None

    def getCurrentSelectionIndex(self):
        return self.cursor

    def selectable(self, index):
        return True

    def paint(self, index):
        """What the row shows, as a picture's `Row`."""
        row = self.rows[index]
        return Row(str(row[0]) if isinstance(row, (tuple, list)) else str(row))

    def moveTo(self, index):
        """Put the cursor on a row, or on the next one that can be selected; tell the widget if that is a move."""
        candidates = chain(range(index, len(self)), range(index - 1, -1, -1))
        target = next((place for place in candidates if self.selectable(place)), 0)
        moved = target != self.cursor
        self.cursor = target
        if moved and self.listbox is not None:
            self.listbox.selectionChanged()


class StringContent(ListContent):
    pass


class ConfigContent(ListContent):
    """Rows of a settings list: (label, config element, ...). A row without an element is a heading."""

    def selectable(self, index):
        return len(self.rows[index]) > 1

    def paint(self, index):
        row = self.rows[index]
        if not isinstance(row, tuple):  # boxes paint nothing else
            return Row("")
        if len(row) < 2:
            return Row(str(row[0]), kind="heading")
        _, text, *marks = row[1].getMulti(index == self.cursor)
        switch = row[1].value if isinstance(row[1].value, bool) else None
        return Row(str(row[0]), str(text), kind="setting", switch=switch, marked=tuple(*marks))


class FunctionContent(ListContent):
    """Rows that a function of the widget paints."""

    def __init__(self, paint, selectable=None):
        super().__init__()
        self._paint = paint
        self._selectable = selectable

    def selectable(self, index):
        return self._selectable is None or self._selectable(self.rows[index])

    def paint(self, index):
        return self._paint(self.rows[index])


class eListbox:
    """The widget on the screen: moves the cursor of its content by rows and pages."""

    moveUp, moveDown, moveTop, moveEnd, pageUp, pageDown, justCheck = range(7)

    def __init__(self, content):
        self.content = content
        content.listbox = self
        self.selectionChanged = lambda: None
        self.page = 10
        self.first = 0
        self.wrap = True

    def setWrapAround(self, wrap):
        self.wrap = wrap

    def getCurrentIndex(self):
        return self.content.cursor

    def moveSelectionTo(self, index):
        if 0 <= index < len(self.content):
            self.content.moveTo(index)

    def moveSelection(self, direction):
        """Move as one of this class's constants says. Rows that can't be selected are passed over."""
        content, step = self.content, 1 if direction in (self.moveDown, self.pageDown, self.moveTop) else -1
        everything = range(len(content))[::step]
        ahead = range(content.cursor + step, len(content) if step > 0 else -1, step)
        one = [ahead, everything] if self.wrap else [ahead]
        ways, steps = {
            self.moveUp: (one, 1), self.moveDown: (one, 1),
            self.pageUp: ([ahead], self.page), self.pageDown: ([ahead], self.page),
            self.moveTop: ([everything], 1), self.moveEnd: ([everything], 1)}.get(direction, ([], 0))
        for way in ways:
            rows = list(islice(filter(content.selectable, way), steps))
            if rows:
                content.moveTo(rows[-1])
                return

    def window(self):
        """The first visible row: the page follows the cursor, and no line stays empty while there are rows above."""
        cursor, count = self.content.cursor, len(self.content)
        top = cursor if any(map(self.content.selectable, range(cursor))) else 0  # a heading is seen with its first row
        self.first = min(max(self.first, cursor - self.page + 1), top, max(0, count - self.page))
        return self.first
