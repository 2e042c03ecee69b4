"""Draws a picture as text: on a screen of character cells of any size, for a terminal or for a printout."""

import functools
import re
import textwrap

from prompt_toolkit.application import DummyApplication
from prompt_toolkit.application.current import set_app
from prompt_toolkit.formatted_text.utils import fragment_list_width
from prompt_toolkit.layout import FormattedTextControl, Window, WindowAlign
from prompt_toolkit.layout.mouse_handlers import MouseHandlers
from prompt_toolkit.layout.screen import Screen, WritePosition
from prompt_toolkit.utils import get_cwidth
from prompt_toolkit.widgets import Frame

SMALLEST = (20, 6)
KEYS = {"key_red": ("R", "#e5383b"), "key_green": ("G", "#2fa84f"), "key_yellow": ("Y", "#f2b705"),
        "key_blue": ("B", "#3a86ff")}
ICONS = {"parent": "◂ ", "folder": "▪ ", "bouquet": "▪ ", "file": "  ", "service": "  "}
ALIGN = {"center": WindowAlign.CENTER, "right": WindowAlign.RIGHT}
DIM = "#93a1b5"
BELOW = " nobold nounderline #4c5563 bg:#07090d"  # the look of what is not the screen on top
UNPRINTABLE = re.compile("[\x00-\x1f\x7f-\x9f\ud800-\udfff]")

_no_application = functools.cache(DummyApplication)  # every window asks for one, and it takes long to make


def printable(text):
    """The text in one line, without anything that a terminal would take as a command."""
    return UNPRINTABLE.sub("\ufffd", text.replace("\n", " ").replace("\t", " "))


def cut(text, columns):
    """The text, or as much of it as fits with an ellipsis."""
    text = printable(text)
    if get_cwidth(text) <= columns:
        return text
    while text and get_cwidth(text) > columns - 1:
        text = text[:-1]
    return text + "…" if columns > 0 else ""


def wrap(text, columns):
    """The text in lines of at most `columns`; words longer than that are broken."""
    return [line for paragraph in text.split("\n") for line in textwrap.wrap(printable(paragraph), max(1, columns)) or [""]]


def text(picture, columns, lines):
    """The picture as text alone."""
    screen = Screen()
    with set_app(_no_application()):
        TextTv(lambda: picture).write_to_screen(screen, MouseHandlers(), WritePosition(0, 0, columns, lines))
    return "\n".join("".join(screen.data_buffer[line][column].char for column in range(columns)).rstrip()
                     for line in range(lines))


class TextTv(Window):
    """Shows what `picture()` returns, as a container of prompt_toolkit. The last line is the receiver's own."""

    def __init__(self, picture):
        super().__init__(style="bg:#000000")
        self._picture = picture

    def write_to_screen(self, screen, mouse_handlers, write_position, parent_style="", erase_bg=True, z_index=None):
        columns, lines = max(write_position.width, SMALLEST[0]), max(write_position.height, SMALLEST[1])

        def show(window, left, top, right, bottom):
            place = WritePosition(left, top, right - left, bottom - top)
            window.write_to_screen(screen, mouse_handlers, place, "", True, None)

        picture = self._picture()
        super().write_to_screen(screen, mouse_handlers, write_position, parent_style, erase_bg, z_index)
        for view in picture.screens:
            screen.append_style_to_content(BELOW)
            for window, place in _ScreenDrawer(picture, view, columns, lines - 1).windows():
                show(window, *place)
        info = "   ".join(" ".join(filter(None, pair)) for pair in picture.info)
        show(_window([(DIM, cut(info, columns - 2))], "bg:#000000"), 1, lines - 1, columns - 1, lines)


def _window(fragments, style="", align="left"):
    return Window(FormattedTextControl(fragments), style=style, align=ALIGN.get(align, WindowAlign.LEFT))


def _is_filled(box):
    return box.background and not box.background.endswith("00", 7)


class _ScreenDrawer:
    """Draws one screen: its parts are windows of prompt_toolkit, each with its place."""

    def __init__(self, picture, screen, columns, lines):
        self.picture, self.view = picture, screen
        self.horizontal, self.vertical = columns / picture.width, lines / picture.height

    def place(self, box):
        """The cells of a box, at least one: left, top, right, bottom. Boxes that touch never overlap."""
        left, top = int(box.x * self.horizontal + 0.5), int(box.y * self.vertical + 0.5)
        return (left, top, max(int((box.x + box.width) * self.horizontal + 0.5), left + 1),
                max(int((box.y + box.height) * self.vertical + 0.5), top + 1))

    def windows(self):
        """(window, place) of all that is to be drawn, in this order."""
        view = self.view
        window = Window(style="bg:" + view.background[:7])
        if view.width < self.picture.width or view.height < self.picture.height:
            window = Frame(window, style="%s bg:%s" % (DIM, view.background[:7])).container
        yield window, self.place(view)
        for box in filter(_is_filled, view.boxes):
            if box.width * self.horizontal >= 2:  # one that is narrower is too small for cells
                yield self.panel(box)
        for box in view.boxes:
            if box.rows is not None:
                yield self.list(box)
            elif box.text:
                yield self.label(box)

    def background(self, box):
        """The colour below a box: its own, that of a panel that it is on, or the screen's."""
        x, y = box.x + box.width / 2, box.y + box.height / 2
        filled = [other.background for other in filter(_is_filled, self.view.boxes)
                  if other.x <= x < other.x + other.width and other.y <= y < other.y + other.height]
        return [self.view.background, *filled][-1][:7]

    def panel(self, box):
        """A filled shape, or a line where it is flat."""
        if box.height * self.vertical >= 0.5:
            return Window(style="bg:" + box.background[:7]), self.place(box)
        (left, _, right, _), top = self.place(box), int(box.y * self.vertical)
        style = "%s bg:%s" % (box.background[:7], self.view.background[:7])
        return Window(char="─", style=style), (left, top, right, top + 1)

    def label(self, box):
        left, top, right, bottom = self.place(box)
        columns, lines, key = right - left, bottom - top, []
        if box.role in KEYS:
            letter, color = KEYS[box.role]
            key, columns = [("bold #000000 bg:" + color, "[%s]" % letter), ("", " ")], columns - 4
        texts = wrap(box.text, columns) if box.wrap else [box.text]
        texts = texts[-lines:] if box.valign == "bottom" else texts[:lines]
        top += {"center": (lines - len(texts)) // 2, "bottom": lines - len(texts)}.get(box.valign, 0)
        style = "%s bg:%s %s" % (box.foreground[:7], self.background(box), "bold" if box.font_size >= 28 else "")
        fragments = [*key, ("", "\n".join(cut(text, columns) for text in texts))]
        return _window(fragments, style, box.halign), (left, top, right, top + len(texts))

    def list(self, box):
        """As many of the rows as there are lines, the selected one among them, and the scroll bar."""
        left, top, right, bottom = self.place(box)
        lines = bottom - top
        skip = min(max(0, box.selected - box.first - lines // 2), max(0, len(box.rows) - lines))
        rows = box.rows[skip:skip + lines]
        bar, fragments = [""] * len(rows), []
        if box.scrollbar and box.total > len(rows):
            thumb = max(1, len(rows) * len(rows) // box.total)
            start = (box.first + skip) * (len(rows) - thumb) // (box.total - len(rows))
            bar = [" █" if start <= line < start + thumb else " │" for line in range(len(rows))]
        for row, mark in zip(rows, bar):
            fragments += [*self.row(row, box, right - left - len(mark)), (DIM, mark + "\n")]
        return _window(fragments, "bg:" + self.background(box)), (left, top, right, bottom)

    def row(self, row, box, columns):
        """The fragments of one row: the cursor, its label, and at the right its value with the state of a switch."""
        style, dim = box.foreground[:7], DIM
        if row.selected:
            style = dim = "bold %s bg:%s" % (box.selected_foreground[:7], box.selected_background[:7])
        value = []
        if row.value:
            color = dim if row.switch is False else style
            text = cut(row.value, columns // 2)
            value = [(style, "◂ " if row.selected else "  "),
                     *((color + " underline" * (place in row.marked), char) for place, char in enumerate(text)),
                     (color, {None: "  ", True: " ●", False: " ○"}[row.switch]), (style, " ▸" if row.selected else "  ")]
        label = ICONS.get(row.kind, "") + row.label
        label = {"choice": "%-2s %s" % (row.shortcut[:1], label), "marker": "── %s ──" % label}.get(row.kind, label)
        room = columns - 2 - fragment_list_width(value)
        label = cut(label, room - 1)
        return [(style, "▶ " if row.selected else "  "), (dim if row.kind in ("marker", "heading") else style, label),
                (style, " " * (room - get_cwidth(label))), *value]
