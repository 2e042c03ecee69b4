"""eServiceCenter: what the host's screens ask about services, answered from lamedb and the bouquets."""
import re

from . import env
from .bouquets import bouquet_file, read_bouquets
from .lamedb import read_lamedb
from .reference import eServiceReference


def _all(mode, types):
    return "1:7:%d:0:0:0:0:0:0:0:%s ORDER BY name" % (mode, " || ".join("(type == %d)" % number for number in types))


class ServiceList:
    """A snapshot of one list."""

    def __init__(self, refs, name_of):
        self._refs, self._name_of = iter(refs), name_of

    def getNext(self):
        """The next eServiceReference; an invalid one after the last."""
        ref = next(self._refs, None)
        return eServiceReference() if ref is None else eServiceReference(ref)

    def getContent(self, format="R", sorted=False):
        """All services that are left: one item per service for a one-letter format, else a tuple with one field per letter.

        S text form, C compare form, R eServiceReference, N name, n short name (the same here). KeyError for another
        letter. `sorted` orders them by name.
        """
        fields = {"S": eServiceReference.toString, "C": eServiceReference.toCompareString, "R": eServiceReference,
                  "N": self._name_of, "n": self._name_of}
        refs = list(self._refs)
        if sorted:
            refs.sort(key=lambda ref: self._name_of(ref).casefold())
        rows = [tuple(fields[letter](ref) for letter in format) for ref in refs]
        return [row[0] for row in rows] if len(format) == 1 else rows


class eServiceCenter(env.OnlyOne):
    """The service database of this run's etc folder, read when first asked for."""

    # Where the channel list starts, as eServiceReference texts.
    ROOT_TV_FAVOURITES = '1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "bouquets.tv" ORDER BY bouquet'
    ROOT_RADIO_FAVOURITES = '1:7:2:0:0:0:0:0:0:0:FROM BOUQUET "bouquets.radio" ORDER BY bouquet'
    ROOT_TV_ALL = _all(1, (1, 17, 22, 25, 31, 134, 195, 211))
    ROOT_RADIO_ALL = _all(2, (2, 10))

    def __init__(self):
        self._services, self._bouquets = read_lamedb(env.etc), read_bouquets(env.etc)

    def list(self, ref):
        """A ServiceList of what `ref` (a root, a bouquet) holds; None when it is no list."""
        bouquet = self._bouquet(ref)
        if ref.type != ref.idDVB or not ref.flags & ref.canDescent:
            return None
        if bouquet:
            refs = [entry for entry in bouquet.services if not entry.flags & ref.isInvisible]
        elif "(type ==" in ref.getPath():
            refs = self._query(ref)
        elif "FROM BOUQUET" in ref.getPath():
            refs = []
        else:
            return None
        return ServiceList(refs, self.getName)

    def getName(self, ref):
        """Display name: a bouquet's own, else the one in the reference, else the one in lamedb, else ""."""
        bouquet = self._bouquet(ref)
        if bouquet:
            return bouquet.name or ref.getName() or bouquet_file(ref)
        if ref.getName() or ref.type != ref.idDVB or ref.flags & (ref.isMarker | ref.isDirectory) or ref.getPath():
            return ref.getName()
        field = ref.getUnsignedData
        service = self._services.get((field(1), field(4), field(2), field(3)))
        return service.name if service else ""

    def first(self, most):
        """What a tuner would pass by first, and no more than `most`: the services of the first bouquets."""
        lists = self.list(eServiceReference(self.ROOT_TV_FAVOURITES)).getContent("R")[:2]
        refs = [ref for content in filter(None, map(self.list, lists)) for ref in content.getContent("R")]
        return [ref for ref in refs if not ref.flags & (ref.isMarker | ref.isDirectory)][:most]

    def _bouquet(self, ref):
        """The Bouquet that a directory reference links, or None."""
        return self._bouquets.get(bouquet_file(ref)) if ref.flags & ref.canDescent else None

    def _query(self, ref):
        """All services of the types that a list query names."""
        types = set(map(int, re.findall(r"\(type == (\d+)\)", ref.getPath())))
        services = [service for service in self._services.values() if service.type in types]
        return [eServiceReference(service.reference) for service in sorted(services, key=lambda service: _place(service.name))]


def _place(name):
    """Where a list by name has a service: blanks before a name don't count, and what has no letter or digit comes last."""
    return not any(map(str.isalnum, name)), name.strip().casefold()
