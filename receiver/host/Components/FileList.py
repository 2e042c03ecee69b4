"""A list of a directory's entries on the box's file system."""

import os
import re

from Components.ListComponent import ListComponent
from enigma import eListboxPythonMultiContent
from receiver.picture import Row

PARENT = "<Parent directory>"


def _paint(row):
    (path, is_directory), name = row
    return Row(name, kind="parent" if name == PARENT else "folder" if is_directory else "file")


class FileList(ListComponent):
    """Rows are ((path, is a directory), shown name): first the parent, then directories, then files, by name.

    A directory's path ends with a slash; a file's is its bare name. A directory that can't be read looks empty.
    """

    def __init__(self, directory, showDirectories=True, showFiles=True, showMountpoints=True, matchingPattern=None,
                 useServiceRef=False, inhibitDirs=False, inhibitMounts=False, isTop=False, enableWrapAround=False,
                 additionalExtensions=None):
        super().__init__(eListboxPythonMultiContent(_paint))
        self.wrap = enableWrapAround
        del self.native_keys.actions["moveTop"], self.native_keys.actions["moveEnd"]  # its screen would not hear of the move
        self.showDirectories, self.showFiles, self.matchingPattern = showDirectories, showFiles, matchingPattern
        self.inhibitDirs, self.isTop = inhibitDirs or [], isTop
        self.changeDir(directory)

    def changeDir(self, directory, select=None):
        """List `directory` and put the cursor on the entry with the path `select`, else on the first."""
        self.current_directory = directory
        self.list = self._rows(directory) if directory else []
        self.l.setList(self.list)
        self.l.moveTo(next((index for index, row in enumerate(self.list) if row[0][0] == select), 0))

    def _rows(self, directory):
        try:
            names = sorted(os.listdir(directory), key=os.fsencode)
        except OSError:
            names = []
        # Plain joining, as on boxes: a start directory without its last slash gives entries that are not there.
        folders = {name for name in names if os.path.isdir(directory + name)}
        rows = []
        if self.showDirectories and directory != "/" and not self.isTop:
            rows.append((("/".join(directory.rstrip("/").split("/")[:-1]) + "/", True), PARENT))
        if self.showDirectories:
            rows += [((directory + name + "/", True), name) for name in names if name in folders
                     and directory + name not in self.inhibitDirs]
        if self.showFiles:
            rows += [((name, False), name) for name in names if name not in folders
                     and (self.matchingPattern is None or re.search(self.matchingPattern, name))]
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
