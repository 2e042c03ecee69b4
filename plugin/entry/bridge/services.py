"""Services as the blacklist's editor sees them: with names that tell them apart.

The editor lists each name once. Lists of real receivers have hundreds of services without a name and many of the same
name, so here a service without one is known by its reference, and one whose name another service has also by its
position. Only what is the same service bears the same name.
"""

from __future__ import absolute_import

from itertools import count

import ServiceReference as host

from .readable import escaped, readable

CABLE, TERRESTRIAL = 0xffff, 0xeeee  # where others have the satellite's position


def changes():
    """The class that makes a service of a reference or of its text."""
    return {"Screens.ChannelSelection": {"ServiceReference": service}}


def service(reference):
    """A service by its reference, the text of one, or as it is."""
    return reference if isinstance(reference, NamedService) else NamedService(reference)


class NamedService(object):
    """What the module asks of the host's `ServiceReference`: `getServiceName()` and `ref.toString()`."""

    def __init__(self, reference, listed=None):
        is_text = isinstance(reference, str)
        self._service = host.ServiceReference(readable(reference) if is_text else reference)
        # What a list's line holds besides the reference that the host makes of it counts as well.
        broken = is_text and readable(reference) != reference
        self._text = escaped(reference if broken else self._service.ref.toString())
        self._listed = listed
        self.ref = self

    def toString(self):
        return self._text

    def getServiceName(self):
        name = readable(self._service.getServiceName()).strip()
        return self._listed.name_of(self._text, name) if self._listed else name


class Listed(object):
    """The services that an editor's rows hold by now: (name, element, 0, reference's text)."""

    def __init__(self, rows):
        self._rows, self._read = rows, 0
        self._names, self._taken = {}, set()

    def name_of(self, reference, name):
        """The name for the service: the one that it has in the list, or one that no row has."""
        for row in self._rows[self._read:]:
            self._names[identity(row[3])] = row[0]
            self._taken.add(row[0])
        self._read = len(self._rows)
        found = self._names.get(identity(reference))
        return found or next(each for each in _names(name, reference) if each not in self._taken)


def identity(reference):
    """What makes two references' texts the same service: all fields but the flags and the name."""
    fields = reference.split(":")
    return tuple(fields[:1] + fields[2:11])


def _names(name, reference):
    """The candidates for a service's name, the best first."""
    if name:
        yield name
        place = position(reference)
        if place:
            yield "%s (%s)" % (name, place)
        yield "%s (%s)" % (name, readable(reference))
    else:
        name = readable(reference)
        yield name
    for number in count(2):
        yield "%s (%d)" % (name, number)


def position(reference):
    """Where a service comes from, such as 19.2E; nothing for a stream."""
    try:
        place = int(reference.split(":")[6], 16) >> 16 & 0xffff
    except (IndexError, ValueError):
        return ""
    if place in (CABLE, TERRESTRIAL):
        return "DVB-C" if place == CABLE else "DVB-T"
    west = place > 1800
    return "%.1f%s" % ((3600 - place if west else place) / 10.0, "W" if west else "E") if place else ""
