"""Reader of lamedb, the list of all services that a box has found; formats 3 to 5.

A broken line or entry costs a console line with its number, never the rest of the list: after an entry that makes no
sense the reader goes on at the next line that looks like the start of one.
"""
import os
import re
from typing import NamedTuple

from .files import Complaints, read_lines
from .reference import eServiceReference

_FIRST = re.compile(r"eDVB services /([345])/\s*")
_TRANSPONDER = re.compile(r"\s*[0-9a-f]{1,8}:[0-9a-f]{1,4}:[0-9a-f]{1,4}\s*", re.I)
_SERVICE = re.compile(
    r"\s*([0-9a-f]{1,4}):([0-9a-f]{1,8}):([0-9a-f]{1,4}):([0-9a-f]{1,4}):([0-9]{1,3}):[0-9]+(?::[0-9a-f]+)?\s*", re.I)
_TUNING = re.compile(r"\s*[stca][ :]-?\d+(?::-?\d+)*", re.I)
_OPTIONS = re.compile(r"[pcf]:", re.I)
_V5_SERVICE = re.compile(r'([^,]+),"(.*?)"(?:,(?:[pcCf]:.*)?)?', re.DOTALL)


class Service(NamedTuple):
    """One service as a box found it."""
    sid: int
    namespace: int
    tsid: int
    onid: int
    type: int
    name: str

    def reference(self):
        """A new eServiceReference without a name."""
        return eServiceReference(
            "1:0:%X:%X:%X:%X:%X:0:0:0:" % (self.type, self.sid, self.tsid, self.onid, self.namespace))


class Lamedb:
    """What a folder's lamedb holds: `services`, (sid, namespace, tsid, onid) -> Service, in the order of the file."""

    def __init__(self):
        self.services = {}

    @classmethod
    def read(cls, folder):
        """Read lamedb, or lamedb5 where that is the only one. Missing, unreadable or of another kind: the result is
        empty, and the console says so."""
        result = cls()
        paths = [os.path.join(folder, name) for name in ("lamedb", "lamedb5")]
        path = next(filter(os.path.exists, paths), paths[0])
        complaints = Complaints(path)
        try:
            lines = [line.removesuffix("\r") for line in read_lines(path)]
        except OSError as error:
            complaints.add(0, error.strerror or error)
            return result
        first = _FIRST.fullmatch(lines[0]) if lines else None
        if not first:
            complaints.add(1, "is no lamedb of format 3, 4 or 5")
        else:
            (_read_lines5 if first.group(1) == "5" else _read_sections)(lines, result._add, complaints.add)
        complaints.close()
        return result

    def find(self, ref):
        """The Service that a broadcast reference means, or None."""
        field = ref.getUnsignedData
        return self.services.get((field(1), field(4), field(2), field(3)))

    def _add(self, match, name):
        """Add a service from its matched id and its name."""
        key = tuple(int(field, 16) for field in match.groups()[:4])
        self.services[key] = Service(*key, int(match.group(5)), name)


def _read_sections(lines, add, complain):
    """The older formats: two sections, several lines per entry. What follows the "end" of the services is a signature."""
    section, at = None, 1
    while at < len(lines):
        line, word = lines[at], lines[at].strip()
        at += 1
        if word == "end" and section == "services":
            return
        if word in ("transponders", "services", "end"):
            if word != "end" and section:
                complain(at, '"end" is missing before this')
            section = None if word == "end" else word
        elif section is None:
            complain(at, "is in no section")
        else:
            at = (_service if section == "services" else _transponder)(lines, at, line, add, complain)
    complain(len(lines), 'the file stops without "end"')


def _line(lines, at):
    """A line further on; beyond the file as if the section ended there."""
    return lines[at] if at < len(lines) else "end"


def _transponder(lines, at, line, add, complain):
    """An id line, one with the tuning values, perhaps more, "/". The GUI needs nothing of it. Returns the next line's index."""
    if not _TRANSPONDER.fullmatch(line) or not _TUNING.match(_line(lines, at)):
        complain(at, "is no transponder")
        return at
    at += 1
    while _line(lines, at)[:1] in ("\t", " "):
        at += 1
    if _line(lines, at).strip() == "/":
        return at + 1
    complain(at, '"/" is missing after this')
    return at


def _service(lines, at, line, add, complain):
    """An id line, the name (which may be empty), the options. Returns the next line's index."""
    def starts_entry(at):
        return _line(lines, at).strip() == "end" or _SERVICE.fullmatch(_line(lines, at))
    match = _SERVICE.fullmatch(line)
    name = ""
    if not match:
        complain(at, "is no service")
        return at
    # A channel may be called "end": the options behind it tell.
    if starts_entry(at) and not _OPTIONS.match(_line(lines, at + 1)):
        complain(at, "service without name and options")
    else:
        name, at = _line(lines, at), at + 1
        if starts_entry(at):
            complain(at, "service without options")
        else:
            at += 1
    add(match, name)
    return at


def _read_lines5(lines, add, complain):
    """The newest format: one line per entry, no sections: "t:id,values" and 's:id,"name",options'. Names may hold quotes."""
    for number, line in enumerate(lines[1:], 2):
        kind, _, rest = line.partition(":")
        parts = _V5_SERVICE.fullmatch(rest) if kind == "s" else None
        match = _SERVICE.fullmatch(parts.group(1)) if parts else None
        key, _, values = rest.partition(",")
        if match:
            add(match, parts.group(2))
        elif line.strip() and not line.startswith("#") and not (kind == "t" and _TRANSPONDER.fullmatch(key) and _TUNING.match(values)):
            complain(number, "is neither transponder nor service")
