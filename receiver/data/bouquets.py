"""Reader of bouquets.tv, bouquets.radio and the userbouquet files they link.

A file that is missing, a broken line or an endless chain of links costs a console line, not the list.
"""
import os
import re

from . import env
from .files import Complaints, read_lines
from .reference import eServiceReference

_FROM_BOUQUET = re.compile(r'FROM BOUQUET "([^"]*)"')


def bouquet_file(ref):
    """Name of the file that a directory reference links, without folders; "" when it links none."""
    quoted = _FROM_BOUQUET.search(ref.getPath())
    return os.path.basename(quoted.group(1) if quoted else ref.getPath())


class Bouquet:
    """One bouquet file: its `name` ("" when it has none) and its `services`, eServiceReferences with the names that the
    file gives them; markers and links to further bouquets are among them."""

    def __init__(self):
        self.name = ""
        self.services = []


class Bouquets:
    """All bouquets of an etc folder that can be reached from bouquets.tv and bouquets.radio, by file name."""

    ROOTS = ("bouquets.tv", "bouquets.radio")

    def __init__(self, folder):
        """Read them. Each file is read once, so bouquets that contain each other do no harm."""
        self._folder = folder
        self.files = {}
        waiting = list(self.ROOTS)
        for name in waiting:                      # grows while it is walked
            if name not in self.files:
                bouquet = self.files[name] = self._read(name)
                waiting += [bouquet_file(ref) for ref in bouquet.services if ref.flags & ref.canDescent]

    def find(self, ref):
        """The Bouquet that a directory reference links, or None."""
        return self.files.get(bouquet_file(ref)) if ref.flags & ref.canDescent else None

    def _read(self, name):
        paths = [os.path.join(self._folder, folder, name) for folder in ("alternatives", "bouquets", "")]
        path = next(filter(os.path.exists, paths), paths[-1])
        try:
            return _parse(path, read_lines(path))
        except (OSError, ValueError) as error:    # a file name may hold anything, a zero byte too
            env.log("[receiver] bouquet not read: %s" % error)
            return Bouquet()


def _parse(path, lines):
    bouquet, complaints = Bouquet(), Complaints(path)
    described = None                              # the service that a description would name
    for number, line in enumerate(lines, 1):
        if not line:
            # Boxes stop here too; a user who wonders where the rest went deserves to know.
            if number < len(lines):
                complaints.add(number, "an empty line ends the bouquet, %d lines are not read" % (len(lines) - number))
            break
        line = line.removesuffix("\r")
        word, _, text = line.partition(" ")
        word = word.rstrip(":")
        if word == "#SERVICE":
            described = eServiceReference.read(text)
            if not described.valid():
                complaints.add(number, "is no service reference")
            elif described.flags & described.canDescent and not bouquet_file(described):
                complaints.add(number, "is a bouquet without a file name")
            else:
                bouquet.services.append(described)
        elif word == "#DESCRIPTION" and described:
            described.keepName(text)
            described = None
        elif word == "#NAME":
            bouquet.name = text
        elif line and not line.startswith("#"):
            complaints.add(number, "is no bouquet line")
    complaints.close()
    return bouquet
