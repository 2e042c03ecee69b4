"""Draws a picture as text: a grid of character cells of any size, for a terminal or for a printout."""

import functools
import textwrap
from typing import NamedTuple

from wcwidth import wcswidth, wcwidth

from receiver.picture import ListBox

KEYS = {"key_red": ("R", "#e5383b"), "key_green": ("G", "#2fa84f"), "key_yellow": ("Y", "#f2b705"),
        "key_blue": ("B", "#3a86ff")}
ICONS = {"parent": "◂ ", "folder": "▪ ", "bouquet": "▪ ", "file": "  ", "service": "  "}
DIM = "#93a1b5"


class Cell(NamedTuple):
    """One character with its look; the empty text is the second half of a wide character."""

    text: str = " "
    foreground: str = "#ffffff"
    background: str = "#000000"
    bold: bool = False
    underline: bool = False


def printable(text):
    """The text without anything that a terminal would take as a command."""
    text = text.replace("\n", " ").replace("\t", " ").encode("utf-8", "replace").decode()
    return "".join(char if wcwidth(char) >= 0 else "\ufffd" for char in text)


def cut(text, columns):
    """The text, or as much of it as fits with an ellipsis."""
    if wcswidth(text) <= columns:
        return text
    while text and wcswidth(text) > columns - 1:
        text = text[:-1]
    return text + "…" if columns > 0 else ""


def wrap(text, columns):
    """The text in lines of at most `columns`; words longer than that are broken."""
    return [line for paragraph in text.split("\n") for line in textwrap.wrap(printable(paragraph), columns) or [""]]


class Canvas:
    """A grid of cells."""

    def __init__(self, columns, lines):
        self.columns, self.lines = columns, lines
        self.cells = [[Cell()] * columns for _ in range(lines)]

    def fill(self, left, top, right, bottom, background):
        """Empty a rectangle."""
        left, right = max(0, left), min(right, self.columns)
        for line in self.cells[max(0, top):max(0, bottom)]:
            line[left:right] = [Cell(background=background)] * (right - left)

    def write(self, column, line, text, foreground="#ffffff", background=None, bold=False, underline=False):
        """Write over what is there, on its background if no other is given. Returns the column after the text."""
        cells = self.cells[line] if 0 <= line < self.lines else []
        for char in text:
            size = wcwidth(char)
            if size == 0 and 0 < column <= len(cells):
                cells[column - 1] = cells[column - 1]._replace(text=cells[column - 1].text + char)
            for place in range(max(0, column), min(column + size, len(cells))):
                cells[place] = Cell("" if place > column else char, foreground, background or cells[place].background,
                                    bold, underline)
            column += size
        return column

    def dim(self):
        """Darken all that is there, so that what comes on top stands out."""
        for line in self.cells:
            line[:] = [Cell(cell.text, _darker(cell.foreground), _darker(cell.background)) for cell in line]

    def text(self):
        """The grid without its colours."""
        return "\n".join("".join(cell.text for cell in line).rstrip() for line in self.cells)


@functools.lru_cache
def _darker(color):
    return "#" + "".join("%02x" % (int(color[place:place + 2], 16) // 2) for place in (1, 3, 5))


def draw(picture, columns, lines):
    """The picture on a canvas of that many cells. The last line is the receiver's own."""
    canvas = Canvas(columns, lines)
    drawer = _Drawer(canvas, picture)
    for number, screen in enumerate(picture.screens):
        if number:
            canvas.dim()
        drawer.screen(screen)
    info = "   ".join(" ".join(filter(None, pair)) for pair in picture.info)
    canvas.fill(0, lines - 1, columns, lines, "#000000")
    canvas.write(1, lines - 1, cut(printable(info), columns - 2), foreground=DIM)
    return canvas


class _Drawer:
    def __init__(self, canvas, picture):
        self.canvas, self.write, self.picture, self.background = canvas, canvas.write, picture, "#000000"
        self.horizontal, self.vertical = canvas.columns / picture.width, (canvas.lines - 1) / picture.height

    def rectangle(self, box):
        """The cells of a box, at least one: left, top, right, bottom. Boxes that touch never overlap."""
        left, top = int(box.x * self.horizontal + 0.5), int(box.y * self.vertical + 0.5)
        return (left, top, max(int((box.x + box.width) * self.horizontal + 0.5), left + 1),
                max(int((box.y + box.height) * self.vertical + 0.5), top + 1))

    def screen(self, screen):
        self.background = screen.background[:7]
        left, top, right, bottom = area = self.rectangle(screen)
        self.canvas.fill(*area, self.background)
        if screen.width < self.picture.width or screen.height < self.picture.height:
            for line in range(top, bottom):
                start, fill, end = {top: "╭─╮", bottom - 1: "╰─╯"}.get(line, "│ │")
                self.write(left, line, start + fill * (right - left - 2) + end, foreground=DIM)
        for box in screen.boxes:
            if box.background and not box.background.endswith("00", 7):
                self.panel(box)
        for box in screen.boxes:
            if isinstance(box, ListBox):
                self.list(box)
            elif box.text:
                self.label(box)

    def panel(self, box):
        """A filled shape; one that is flat becomes a line, a narrow one is too small for cells."""
        left, top, right, bottom = self.rectangle(box)
        if box.width * self.horizontal < 2:
            return
        if box.height * self.vertical < 0.5:
            self.write(left, int(box.y * self.vertical), "─" * (right - left), foreground=box.background[:7])
        else:
            self.canvas.fill(left, top, right, bottom, box.background[:7])

    def label(self, box):
        left, top, right, bottom = self.rectangle(box)
        if box.role in KEYS:
            letter, color = KEYS[box.role]
            left = self.write(left, top, "[%s]" % letter, foreground="#000000", background=color, bold=True) + 1
        columns, lines = right - left, bottom - top
        texts = wrap(box.text, columns) if box.wrap else [printable(box.text)]
        texts = texts[-lines:] if box.valign == "bottom" else texts[:lines]
        top += {"center": (lines - len(texts)) // 2, "bottom": lines - len(texts)}.get(box.valign, 0)
        for line, text in enumerate(texts, top):
            text = cut(text, columns)
            space = columns - wcswidth(text)
            self.write(left, line, " " * columns)
            self.write(left + {"center": space // 2, "right": space}.get(box.halign, 0), line, text,
                       foreground=box.foreground[:7], bold=box.font_size >= 28)

    def list(self, box):
        """As many of the rows as there are lines, the selected one among them."""
        left, top, right, bottom = self.rectangle(box)
        lines = bottom - top
        self.canvas.fill(left, top, right, bottom, (box.background or self.background)[:7])
        skip = min(max(0, box.selected - box.first - lines // 2), max(0, len(box.rows) - lines))
        rows = box.rows[skip:skip + lines]
        scroll = box.scrollbar and box.total > len(rows)
        for line, row in enumerate(rows, top):
            self.row(row, box, left, line, right - 2 * scroll)
        if scroll:
            thumb = max(1, len(rows) * len(rows) // box.total)
            start = (box.first + skip) * (len(rows) - thumb) // (box.total - len(rows))
            for line in range(len(rows)):
                self.write(right - 1, top + line, "█" if start <= line < start + thumb else "│", foreground=DIM)

    def row(self, row, box, left, line, right):
        """One row: the cursor, its label, and at the right its value with the state of a switch."""
        foreground = (box.selected_foreground if row.selected else box.foreground)[:7]
        if row.selected:
            self.canvas.fill(left, line, right, line + 1, box.selected_background[:7])
            self.write(left, line, "▶", foreground, bold=True)
        end = self.value(row, left, line, right, foreground) if row.value else right
        label = ICONS.get(row.kind, "") + printable(row.label)
        label = {"choice": "%-2s %s" % (row.shortcut[:1], label), "marker": "── %s ──" % label}.get(row.kind, label)
        self.write(left + 2, line, cut(label, end - 1 - left - 2), bold=row.selected,
                   foreground=DIM if row.kind in ("marker", "heading") else foreground)

    def value(self, row, left, line, right, foreground):
        """The value of a row; returns the column where it begins."""
        value = cut(printable(row.value), (right - left) // 2)
        text = value + {None: "  ", True: " ●", False: " ○"}[row.switch]
        place = right - 2 - wcswidth(text)
        self.write(place, line, text, DIM if row.switch is False and not row.selected else foreground, bold=row.selected)
        for position in row.marked:
            self.write(place + wcswidth(value[:position]), line, value[position:position + 1], foreground,
                       bold=row.selected, underline=True)
        if row.selected:
            self.write(place - 2, line, "◂", foreground)
            self.write(right - 1, line, "▸", foreground)
        return place - 2
