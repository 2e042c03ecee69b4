"""Draws a picture as HTML: one fragment, which a page takes over as it is. The templates and the looks are in page/.

Lengths are hundredths of the picture's width (cqw), so that a page can show it at any size. The templates escape every text.
"""

import re
from pathlib import Path

import jinja2

from receiver.actions import KEYS

PAGE = Path(__file__).resolve().parent / "page"
CONSOLE_LINES = 200

# Control characters, and what a file name's bytes that are no UTF-8 have become.
UNPRINTABLE = re.compile("[\x00-\x08\x0b-\x1f\x7f-\x9f\ud800-\udfff\ufffe\uffff]")

_environment = jinja2.Environment(autoescape=True, undefined=jinja2.StrictUndefined)
_environment.globals.update(
    keys=KEYS, colors=("red", "green", "yellow", "blue"), icons=("folder", "parent", "file", "bouquet", "service"),
    align={"center": "center", "right": "flex-end", "bottom": "flex-end"})


def _template(name):
    """A template of the page's folder. Line ends and indentation are nothing between tags, and a blank within one."""
    source = (PAGE / name).read_text(encoding="utf-8")
    return _environment.from_string(re.sub(r"\s*\n\s*", " ", re.sub(r"\s*\n\s*(?=[<{]|$)", "", source)))


_FRAME, _DOCUMENT = _template("frame.html"), _template("index.html")


def document(fragment, base="", kind="page"):
    """The whole page with this fragment in it.

    base -- the URL of this file's folder, for a document that no server serves: it shows, but takes no keys
    kind -- "page", or "picture" for the TV's picture alone
    """
    return _DOCUMENT.render(frame=fragment, base=base, kind=kind)


def fragment(picture, console=()):
    """The picture, and below it what the receiver tells about itself: the EPG cache's state and the console."""
    def length(pixels):
        return "%.6gcqw" % round(pixels * 100 / picture.width, 4)

    def place(box, screen=None):
        """Where a box stands in the screen that holds it, or a screen in the picture."""
        x, y = (screen.x, screen.y) if screen else (0, 0)
        return "left:%s;top:%s;width:%s;height:%s" % tuple(map(length, (box.x - x, box.y - y, box.width, box.height)))

    boxes = picture.top.boxes if picture.screens else ()
    selected = [row.value for box in boxes for row in box.rows or () if row.selected]
    html = _FRAME.render(picture=picture, length=length, place=place, thumb=_thumb, spoken="".join(selected),
                         console=list(console)[-CONSOLE_LINES:])
    return UNPRINTABLE.sub("\ufffd", html)


def _thumb(box):
    """Where a scroll bar's thumb stands in it, which is never too short to be seen."""
    height = max(100 * len(box.rows) / box.total, 6)
    return "top:%.3f%%;height:%.3f%%" % (box.first * (100 - height) / (box.total - len(box.rows)), height)
