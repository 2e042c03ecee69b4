"""Draws a picture as HTML: one fragment, which a page takes over as it is. The looks are in page/tv.css.

Lengths are hundredths of the picture's width (cqw), so that a page can show it at any size. Every text of the picture
passes through `escape`; nothing else of it gets into the fragment but numbers and the skin's colours.
"""

import html
import re
from pathlib import Path

from receiver.actions import KEYS
from receiver.picture import ListBox

PAGE = Path(__file__).resolve().parent / "page"

HEADINGS = ("title", "Title")
COLORS = ("red", "green", "yellow", "blue")
HALIGN = {"center": "center", "right": "flex-end"}
VALIGN = {"center": "center", "bottom": "flex-end"}
CONSOLE_LINES = 200

# Control characters, and what a file name's bytes that are no UTF-8 have become.
UNPRINTABLE = re.compile("[\x00-\x08\x0b-\x1f\x7f-\x9f\ud800-\udfff\ufffe\uffff]")


def escape(text):
    """The text as HTML, for between tags and for attributes in double quotes; what can't be shown becomes U+FFFD."""
    return html.escape(UNPRINTABLE.sub("\ufffd", text))


def document(fragment, base="", kind="page"):
    """The whole page with this fragment in it.

    base -- the URL of this file's folder, for a document that no server serves: it shows, but takes no keys
    kind -- "page", or "picture" for the TV's picture alone
    """
    text = (PAGE / "index.html").read_text(encoding="utf-8")
    if base:
        text = text.replace("<head>", '<head><base href="%s">' % escape(base))
        text = re.sub(r" *<script.*</script>\n", "", text)
    return text.replace('<body class="page">', '<body class="%s">' % kind).replace("<!-- frame -->", fragment)


def fragment(picture, console=()):
    """The picture, and below it what the receiver tells about itself: the EPG cache's state and the console."""
    return '%s<footer class="below">%s%s</footer>' % (_tv(picture), _info(picture.info), _console(list(console)))


def _tv(picture):
    draw = _Drawer(picture)
    screens = [draw.screen(screen, screen is picture.screens[-1]) for screen in picture.screens]
    if not screens:
        screens = ['<div class="off"><p role="status">The receiver is switched off.</p>'
                   '<button type="button" value="on">Switch it on</button></div>']
    return ('<div class="area"><div class="tv" style="aspect-ratio:%d/%d"><div class="scene">%s</div></div></div>'
            '<p class="spoken" role="status">%s</p>'
            % (picture.width, picture.height, "".join(screens), escape(_selected_value(picture))))


def _selected_value(picture):
    """The value of the selected row, which is spoken when it changes."""
    boxes = picture.screens[-1].boxes if picture.screens else ()
    return next((row.value for box in boxes if isinstance(box, ListBox) for row in box.rows if row.selected), "")


def _info(pairs):
    terms = "".join("<div><dt>%s</dt><dd>%s</dd></div>" % (escape(label or "File"), escape(text)) for label, text in pairs)
    return '<dl class="info" aria-label="EPG cache">%s</dl>' % terms


def _console(lines):
    return ('<details class="console"><summary><b>Console</b><span>%s</span></summary>'
            '<div class="lines" role="log" aria-label="Console" tabindex="0"><pre>%s</pre></div></details>'
            % (escape(lines[-1] if lines else ""), escape("\n".join(lines[-CONSOLE_LINES:]))))


class _Drawer:
    """Draws the boxes of one picture."""

    def __init__(self, picture):
        self.picture = picture

    def length(self, pixels):
        return "%.6gcqw" % round(pixels * 100 / self.picture.width, 4)

    def place(self, box, screen=None):
        """Where a box stands in the screen that holds it, or a screen in the picture."""
        x, y = (screen.x, screen.y) if screen else (0, 0)
        return "left:%s;top:%s;width:%s;height:%s" % tuple(map(self.length, (box.x - x, box.y - y, box.width, box.height)))

    def screen(self, screen, top):
        full = screen.width >= self.picture.width and screen.height >= self.picture.height
        boxes = "".join(self.box(box, screen) for box in screen.boxes)
        return '<section class="screen %s" data-name="%s" %s style="%s;background-color:%s">%s</section>' % (
            "full" if full else "window", escape(screen.name),
            'aria-label="%s"' % escape(screen.title) if top else 'aria-hidden="true"',
            self.place(screen), escape(screen.background), boxes)

    def box(self, box, screen):
        if isinstance(box, ListBox):
            return self.list(box, screen)
        return self.label(box, screen) if box.text or box.role != "panel" else self.panel(box, screen)

    def panel(self, box, screen):
        thin = min(box.width, box.height) * 100 < self.picture.width
        return '<div class="panel %s" style="%s;background-color:%s"></div>' % (
            "thin" if thin else "", self.place(box, screen), escape(box.background or "transparent"))

    def label(self, box, screen):
        style = "%s;%s;color:%s;justify-content:%s;align-items:%s" % (
            self.place(box, screen), self.font(box), escape(box.foreground),
            HALIGN.get(box.halign, "flex-start"), VALIGN.get(box.valign, "flex-start"))
        if box.background:
            style += ";background-color:" + escape(box.background)
        kinds = ["label", "wrap" if box.wrap else "line"]
        kinds += ["mono"] if box.font == "Console" else []
        role = {"status": ' role="status"'}.get(box.role, "")
        if box.role in HEADINGS:
            role = ' role="heading" aria-level="1"'
        elif box.text and box.role.startswith("key_") and box.role[4:] in KEYS:
            role = ' data-key="%s"' % box.role[4:]
        return '<div class="%s" data-role="%s"%s style="%s"><span>%s</span></div>' % (
            " ".join(kinds), escape(box.role), role, style, escape(box.text))

    def font(self, box):
        return "font-size:" + self.length(box.font_size)

    def list(self, box, screen):
        colors = "--row:%s;color:%s;--bar:%s;--bar-text:%s" % (
            self.length(box.row_height), escape(box.foreground), escape(box.selected_background),
            escape(box.selected_foreground))
        if box.background:
            colors += ";background-color:" + escape(box.background)
        top = screen is self.picture.top  # the numbers of rows stand for them in one list only
        rows = "".join(self.row(row, box.first + place, box.total, top) for place, row in enumerate(box.rows))
        active = "row-%d" % box.selected if box.total and top else ""
        return ('<div class="list %s" role="listbox" tabindex="0" aria-label="%s" aria-activedescendant="%s" style="%s;%s;%s">'
                '%s</div>%s' % ("scrolling" if self.scrolls(box) else "", escape(screen.title), active, self.place(box, screen),
                                self.font(box), colors, rows, self.scrollbar(box, screen)))

    def scrolls(self, box):
        return box.scrollbar and box.total > len(box.rows)

    def scrollbar(self, box, screen):
        if not self.scrolls(box):
            return ""
        height = 100 * len(box.rows) / box.total
        shown = max(height, 6)
        top = box.first * (100 - shown) / max(1, box.total - len(box.rows))
        return ('<div class="scrollbar" style="%s"><div style="top:%.3f%%;height:%.3f%%"></div></div>'
                % (self.place(box, screen), top, shown))

    def row(self, row, index, total, top):
        kinds = ["row", row.kind or "plain"] + ["selected"] * row.selected
        label = '<span class="text">%s</span>' % escape(row.label)
        if row.kind == "choice":
            label = _keycap(row.shortcut) + label
        elif row.kind in ("folder", "parent", "file", "bouquet", "service"):
            label = '<svg class="icon" aria-hidden="true"><use href="#icon-%s"/></svg>%s' % (row.kind, label)
        return ('<div%s class="%s" role="option" aria-selected="%s" aria-posinset="%d" aria-setsize="%d">%s%s</div>'
                % (' id="row-%d"' % index if top else "", " ".join(kinds), str(row.selected).lower(), index + 1, total, label, _value(row)))


def _keycap(key):
    kind = key if key in COLORS else "digit" if key else "none"
    return '<kbd class="%s">%s</kbd>' % (kind, escape(key if kind == "digit" else ""))


def _value(row):
    if not row.value and row.switch is None:
        return ""
    text = "".join("<mark>%s</mark>" % escape(char) if place in row.marked else escape(char)
                   for place, char in enumerate(row.value))
    switch = "" if row.switch is None else '<span class="switch %s" data-key="right"></span>' % ("on" if row.switch else "")
    return ('<span class="value"><i data-key="left" aria-hidden="true">‹</i><span>%s</span>%s'
            '<i data-key="right" aria-hidden="true">›</i></span>' % (text, switch))
