"""The directory chooser: its own layout, what GREEN would take from the first moment on, the directory that one is in as a
choice, and nothing that is none."""

from __future__ import absolute_import

import traceback

from Components import FileList as host

from .. import skin_screens
from ..texts import translate as _
from .readable import is_readable

WIDGETS = ("filelist", "driverfile")


def changes():
    """A list of files whose first row is the directory that it shows, with those that can be chosen."""
    if not hasattr(host, "FileList"):
        return {}
    return {"Components.FileList": {"FileList": type("FileList", (OwnRow, Usable, host.FileList), {})}}


class Chooser(object):
    def __init__(self, *arguments, **keywords):
        super(Chooser, self).__init__(*arguments, **keywords)
        title = _("EPG Path :").rstrip(": ")
        self.setTitle(title)
        if "title" in self:  # which some skins show
            self["title"].text = title
        self.skinName = [name for name in self.skinName if self._is_for_us(name)]
        self.onLayoutFinish.append(self.showChoice)

    @staticmethod
    def _is_for_us(name):
        """Skins have a layout by one of our names for another screen, in which the choice is not to be seen."""
        screens = skin_screens.loaded()
        return name not in screens or all(skin_screens.has(screens, name, widget) for widget in WIDGETS)

    def showChoice(self):
        try:
            self.updateFile()
        except Exception:  # an empty list; the first key that asks for more says so
            print("[Veltro] nothing is selected:\n" + traceback.format_exc())


class Usable(object):
    """The host's list of files without those whose names it could neither paint nor store as a path."""

    def changeDir(self, directory, select=None):
        super(Usable, self).changeDir(directory, select)
        rows = _rows(self)
        usable = [row for row in rows if not isinstance(row[0][0], str) or is_readable(row[0][0])]
        if len(usable) < len(rows):
            rows[:] = usable
            self.l.setList(rows)
            places = [index for index, row in enumerate(rows) if select is not None and row[0][0] == select]
            if places:
                self.moveToIndex(places[0])


class OwnRow(object):
    """The host's list of files with a row for the directory itself. Without it nothing inside an empty directory could be chosen but
    the one above."""

    def changeDir(self, directory, *arguments, **keywords):
        super(OwnRow, self).changeDir(directory, *arguments, **keywords)
        try:
            if directory:
                self._put_in(directory)
        except Exception:  # a host whose rows are made in another way
            print("[Veltro] no row for %r:\n%s" % (directory, traceback.format_exc()))

    def _put_in(self, directory):
        rows = _rows(self)
        selected = self.getSelectionIndex() if getattr(self, "instance", None) else 0
        rows.insert(0, _row_for(directory, rows))
        self.l.setList(rows)
        # Whoever comes from a directory below stays on it; who has just entered stands on the first row.
        self.moveToIndex(selected + 1 if selected else 0)

    def canDescent(self):
        """One is there already: OK takes it."""
        selected = self.getSelection()
        if selected and selected[0] and selected[0] == self.getCurrentDirectory():
            return False
        return super(OwnRow, self).canDescent()


def _rows(files):
    """The rows of a list of files, under whichever name the host has them."""
    return next((rows for rows in (getattr(files, name, None) for name in ("list", "fileList")) if rows), [])


def _row_for(directory, rows):
    """A row like the list's first one for a directory, with other words. A row is ((path, is a directory, ...), cells of
    (type, ...)); a cell of text has the text as its last text."""
    model = [row for row in rows if row[0][1] and row[0][0]][0]
    cells = [model[0].__class__((directory,) + tuple(model[0][1:]))]
    for cell in model[1:]:
        texts = [index for index, value in enumerate(cell) if isinstance(value, str)]
        if texts:
            cell = cell[:texts[-1]] + (directory.rstrip("/") or "/",) + cell[texts[-1] + 1:]
        cells.append(cell)
    return model.__class__(cells)


SCREENS = {"DirChoose": Chooser}
