"""eServiceCenter: what the host's screens ask about services, answered from lamedb and the bouquets."""
import itertools
import re

from . import env
from .bouquets import Bouquets, bouquet_file
from .lamedb import Lamedb
from .reference import eServiceReference

TV_TYPES = (1, 17, 22, 25, 31, 134, 195, 211)
RADIO_TYPES = (2, 10)


def _types(types):
    return " || ".join("(type == %d)" % number for number in types)


def _root(mode, query):
    return "1:7:%d:0:0:0:0:0:0:0:%s" % (mode, query)


class ServiceList:
    """A snapshot of one list."""

    def __init__(self, refs, name_of):
        self._name_of = name_of
        self._next = iter(refs)

    def getNext(self):
        """The next eServiceReference; an invalid one after the last."""
        ref = next(self._next, None)
        return eServiceReference() if ref is None else eServiceReference(ref)

    def getContent(self, format="R", sorted=False):
        """All services that are left: one item per service for a one-letter format, else a tuple with one field per letter.

        S text form, C compare form, R eServiceReference, N name, n short name (the same here). ValueError for another
        letter. `sorted` orders them by name.
        """
        fields = {"S": eServiceReference.toString, "C": eServiceReference.toCompareString, "R": eServiceReference,
                  "N": self._name_of, "n": self._name_of}
        if not format or set(format) - set(fields):
            raise ValueError("unknown format %r" % format)
        refs = list(self._next)
        if sorted:
            refs.sort(key=lambda ref: self._name_of(ref).casefold())
        rows = [tuple(fields[letter](ref) for letter in format) for ref in refs]
        return [row[0] for row in rows] if len(format) == 1 else rows


class eServiceCenter:
    """The service database of this run's etc folder, read when first asked for."""

    # Where the channel list starts, as eServiceReference texts.
    ROOT_TV_FAVOURITES = _root(1, 'FROM BOUQUET "bouquets.tv" ORDER BY bouquet')
    ROOT_RADIO_FAVOURITES = _root(2, 'FROM BOUQUET "bouquets.radio" ORDER BY bouquet')
    ROOT_TV_ALL = _root(1, _types(TV_TYPES) + " ORDER BY name")
    ROOT_RADIO_ALL = _root(2, _types(RADIO_TYPES) + " ORDER BY name")

    _instance = None

    def __init__(self):
        self._lamedb = self._bouquets = None

    @staticmethod
    def getInstance():
        """The one service centre of the process."""
        if eServiceCenter._instance is None:
            eServiceCenter._instance = eServiceCenter()
        return eServiceCenter._instance

    def reload(self):
        """Read lamedb and the bouquets of the etc folder (again)."""
        self._lamedb = Lamedb.read(env.etc())
        self._bouquets = Bouquets(env.etc())

    def counts(self):
        """(services in lamedb, bouquets below the two roots)."""
        self._load()
        return len(self._lamedb.services), len(self._bouquets.files) - len(Bouquets.ROOTS)

    def list(self, ref):
        """A ServiceList of what `ref` (root, bouquet, provider, satellite) holds; None when it is no list."""
        self._load()
        if ref.type != ref.idDVB or not ref.flags & ref.canDescent:
            return None
        bouquet = self._bouquets.find(ref)
        if bouquet:
            refs = [entry for entry in bouquet.services if not entry.flags & ref.isInvisible]
        elif "FROM BOUQUET" in ref.getPath():
            refs = []
        elif "(type ==" in ref.getPath():
            refs = self._query(ref)
        else:
            return None
        return ServiceList(refs, self.getName)

    def getName(self, ref):
        """Display name: a bouquet's own, else the one in the reference, else the one in lamedb, else ""."""
        self._load()
        bouquet = self._bouquets.find(ref)
        if bouquet:
            return bouquet.name or ref.getName() or bouquet_file(ref)
        if ref.getName() or ref.type != ref.idDVB or ref.flags & (ref.isMarker | ref.isDirectory) or ref.getPath():
            return ref.getName()
        service = self._lamedb.find(ref)
        return service.name if service else ""

    def first(self, most):
        """What a tuner would pass by first, and no more than `most`: the services of the first bouquets."""
        lists = self.list(eServiceReference(self.ROOT_TV_FAVOURITES)).getContent("R")[:2]
        refs = (ref for content in filter(None, map(self.list, lists)) for ref in content.getContent("R"))
        return list(itertools.islice((ref for ref in refs if not ref.flags & (ref.isMarker | ref.isDirectory)), most))

    def _load(self):
        if self._lamedb is None:
            self.reload()

    def _query(self, ref):
        """All services of the types that a list query names."""
        types = set(map(int, re.findall(r"\(type == (\d+)\)", ref.getPath())))
        services = [service for service in self._lamedb.services.values() if service.type in types]
        return [service.reference() for service in sorted(services, key=lambda service: _place(service.name))]


def _place(name):
    """Where a list by name has a service: blanks before a name don't count, and what has no letter or digit comes last."""
    return not any(map(str.isalnum, name)), name.strip().casefold()
