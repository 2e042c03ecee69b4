"""Reader of bouquets.tv, bouquets.radio and the userbouquet files they link.

A file that is missing, a broken line or an endless chain of links costs a console line, not the list.
"""
import os
import re

from .files import parse_file
from .reference import eServiceReference

_FROM_BOUQUET = re.compile(r'FROM BOUQUET "([^"]*)"')


def bouquet_file(ref):
    """Name of the file that a directory reference links, without folders; "" when it links none."""
    quoted = _FROM_BOUQUET.search(ref.getPath())
    return os.path.basename(quoted.group(1) if quoted else ref.getPath())


class Bouquet:
    """One bouquet file: its `name` ("" when it has none) and its `services`, eServiceReferences with the names that the
    file gives them; markers and links to further bouquets are among them."""

    def __init__(self, lines, broken):
        self.name, self.services = "", []
        described = None                              # the service that a description would name
        for number, line in enumerate(lines, 1):
            if not line:
                # Boxes stop here too; a user who wonders where the rest went deserves to know.
                if number < len(lines):
                    broken.append((number, "an empty line ends the bouquet, %d lines are not read" % (len(lines) - number)))
                break
            line = line.removesuffix("\r")
            word, _, text = line.partition(" ")
            word = word.rstrip(":")
            if word == "#SERVICE":
                described = eServiceReference.read(text)
                if described.valid():
                    self.services.append(described)
                else:
                    broken.append((number, "is no service reference"))
            elif word == "#DESCRIPTION" and described:
                described.name = text
                described = None
            elif word == "#NAME":
                self.name = text
            elif line and not line.startswith("#"):
                broken.append((number, "is no bouquet line"))


def read_bouquets(folder):
    """File name -> Bouquet, of all that can be reached from bouquets.tv and bouquets.radio of an etc folder."""
    bouquets, waiting = {}, ["bouquets.tv", "bouquets.radio"]
    for name in waiting:                              # grows while it is walked
        if name not in bouquets:                      # each is read once: those that contain each other do no harm
            paths = [os.path.join(folder, place, name) for place in ("alternatives", "bouquets", "")]
            bouquets[name] = parse_file(next(filter(os.path.exists, paths), paths[-1]), Bouquet)
            waiting += [bouquet_file(ref) for ref in bouquets[name].services if ref.flags & ref.canDescent]
    return bouquets
