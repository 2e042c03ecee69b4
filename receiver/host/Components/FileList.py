"""A list of a directory's entries on the box's file system."""

import os

from Components.ListComponent import ListComponent
from receiver.picture import Row

PARENT = "<Parent directory>"
TYPE_TEXT = 0


def _row(path, is_directory, name):
    """A row as boxes have it: what it stands for, then the cells that are painted."""
    return [(path, is_directory), (TYPE_TEXT, name)]


def _paint(row):
    (_, is_directory), (_, name) = row
    return Row(name, kind="parent" if name == PARENT else "folder" if is_directory else "file")


class FileList(ListComponent):
    """First the parent, then directories, then files, by name.

    A directory's path ends with a slash; a file's is its bare name. A directory that can't be read looks empty.
    """

    def __init__(self, directory, showDirectories=True, showFiles=True, showMountpoints=True, inhibitDirs=None,
                 inhibitMounts=None):
        super().__init__(paint=_paint, wrap=False)
        del self.native_keys.actions["moveTop"], self.native_keys.actions["moveEnd"]  # its screen would not hear of the move
        self.showDirectories, self.showFiles = showDirectories, showFiles
        self.changeDir(directory)

    def changeDir(self, directory, select=None):
        """List `directory` and put the cursor on the entry with the path `select`, else on the first."""
        self.current_directory = directory
        self.setList(self._rows(directory) if directory else [])
        self.l.moveTo(next((index for index, row in enumerate(self.list) if row[0][0] == select), 0))

    def _rows(self, directory):
        try:
            names = sorted(os.listdir(directory), key=os.fsencode)
        except OSError:
            names = []
        # Plain joining, as on boxes: a start directory without its last slash gives entries that are not there.
        folders = {name for name in names if os.path.isdir(directory + name)}
        rows = []
        if self.showDirectories and directory != "/":
            rows.append(_row(os.path.dirname(directory.rstrip("/")).rstrip("/") + "/", True, PARENT))
        if self.showDirectories:
            rows += [_row(directory + name + "/", True, name) for name in names if name in folders]
        if self.showFiles:
            rows += [_row(name, False, name) for name in names if name not in folders]
        return rows

    def getSelection(self):
        """(path, is a directory) of the row under the cursor; None in an empty list."""
        row = self.getCurrent()
        return row and row[0]

    def canDescent(self):
        return bool(self.getSelection() and self.getSelection()[1])

    def descent(self):
        """Enter the directory under the cursor. Coming back up, the cursor stands on the directory left."""
        if self.canDescent():
            self.changeDir(self.getSelection()[0], select=self.current_directory)

    def getCurrentDirectory(self):
        return self.current_directory
