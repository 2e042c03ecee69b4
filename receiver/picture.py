"""The picture: what the TV shows, as plain data. It is made from the open screens and knows nothing of what draws it.

Coordinates are pixels of the skin's resolution, from the picture's top left corner. Colours are "#rrggbb", or
"#rrggbbaa" where the skin asks for transparency (aa 00 is invisible, as in CSS).
"""

from dataclasses import dataclass, replace

WIDTH, HEIGHT = 1280, 720


@dataclass(frozen=True)
class Row:
    """One row of a list."""

    label: str
    value: str = ""
    kind: str = ""        # "setting", "heading", "folder", "parent", "file", "bouquet", "service", "marker", "choice"
    switch: bool = None   # the state of a yes/no value, None for any other
    marked: tuple = ()    # positions of the value's characters that are being edited
    shortcut: str = ""    # the remote's key that picks this row
    selected: bool = False


@dataclass
class Box:
    """A rectangle of the picture with its text, or with its list; in a layout, which nothing is in yet, it stands where it is
    in the screen.

    `role` is the widget's name in the screen ("status", "key_red" ...); "title" for titles, "panel" for plain shapes. `rows`
    are the visible rows of a list, the first of them is row `first` of `total`; None for what is no list.
    """

    role: str
    x: int
    y: int
    width: int
    height: int
    text: str = ""
    font: str = "Regular"
    font_size: int = 20
    foreground: str = "#ffffff"
    background: str = None
    halign: str = "left"
    valign: str = "top"
    wrap: bool = True
    rows: list = None
    first: int = 0
    total: int = 0
    selected: int = 0
    row_height: int = 30
    selected_foreground: str = "#ffffff"
    selected_background: str = "#2255aa"
    scrollbar: bool = False
    component: str = None   # what of the screen's it shows, None for a plain shape
    source: bool = False    # whether that is a source (source= and render=), not a widget (name=)
    z: int = 0


@dataclass
class ScreenView:
    """One open screen, or its layout. `name` is the layout's name, `title` the window's title."""

    name: str
    title: str
    x: int
    y: int
    width: int
    height: int
    background: str
    boxes: list


@dataclass
class Picture:
    """The open screens, the lowest first, and the receiver's own lines of information as (label, text) pairs."""

    screens: list
    info: list
    width: int = WIDTH
    height: int = HEIGHT

    @property
    def top(self):
        return self.screens[-1]


def make(screens, width=WIDTH, height=HEIGHT):
    """The views of these open screens, the lowest first. What a full-size screen hides is left out."""
    visible = []
    for screen in reversed(screens):
        visible.insert(0, view(screen.layout, screen.getTitle(), screen))
        if visible[0].width >= width and visible[0].height >= height:
            break
    return visible


def view(layout, title, components):
    """One screen as its layout and its components' present state make it."""
    boxes = [_box(element, layout, components) for element in layout.boxes]
    return replace(layout, title=title, boxes=[box for box in boxes if box is not None])


def _box(element, layout, components):
    box = replace(element, x=layout.x + element.x, y=layout.y + element.y)
    if box.component is None:
        return box
    component = components.get(box.component)
    if component is None or not component.visible:
        return None
    box.role = "title" if box.component == "Title" else box.component
    listbox = component.instance
    if listbox is None:
        box.text = component.text
    else:
        box.text, box.rows, box.first = "", list(listbox.visible()), listbox.first
        box.total, box.selected = len(listbox.rows), listbox.cursor
    return box
