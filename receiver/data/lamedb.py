"""Reader of lamedb, the list of all transponders and services a box has found; formats 3 to 5.

A broken line or entry costs a console line with its number, never the rest of the list: after an entry that makes no
sense the reader goes on at the next line that looks like the start of one.
"""
import os
import re
from typing import NamedTuple

from .files import Complaints, read_lines
from .reference import eServiceReference

_FIRST = re.compile(r"eDVB services /([345])/\s*")
_TRANSPONDER = re.compile(r"\s*([0-9a-f]{1,8}):([0-9a-f]{1,4}):([0-9a-f]{1,4})\s*", re.I)
_SERVICE = re.compile(
    r"\s*([0-9a-f]{1,4}):([0-9a-f]{1,8}):([0-9a-f]{1,4}):([0-9a-f]{1,4}):([0-9]{1,3}):[0-9]+(?::[0-9a-f]+)?\s*", re.I)
_TUNING = re.compile(r"\s*[stca][ :]-?\d+(?::-?\d+)*", re.I)
_OPTIONS = re.compile(r"[pcf]:", re.I)
_PROVIDER = re.compile(r"(?:^|,)p:(.*?)(?=,[cCf]:|$)", re.DOTALL)
_V5_SERVICE = re.compile(r'([^,]+),"(.*?)"(?:,((?:[pcCf]:).*)?)?', re.DOTALL)


class Service(NamedTuple):
    """One service as a box found it."""
    sid: int
    namespace: int
    tsid: int
    onid: int
    type: int
    name: str
    provider: str

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
        elif first.group(1) == "5":
            _read_format5(result, lines, complaints)
        else:
            _Sections(result, lines, complaints).read()
        complaints.close()
        return result

    def find(self, ref):
        """The Service that a broadcast reference means, or None."""
        field = ref.getUnsignedData
        return self.services.get((field(1), field(4), field(2), field(3)))

    def add(self, match, name, options):
        """Add a service from its matched id, its name and its options text. Very old lists have the provider alone there."""
        key = tuple(int(field, 16) for field in match.groups()[:4])
        provider = _PROVIDER.search(options) if _OPTIONS.match(options) else None
        provider = provider.group(1) if provider else "" if _OPTIONS.match(options) else options
        self.services[key] = Service(*key, int(match.group(5)), name, provider)


class _Sections:
    """The older formats: two sections, several lines per entry."""

    def __init__(self, result, lines, complaints):
        self.result = result
        self.lines = lines
        self.at = 1                    # index of the next line
        self.complain = lambda text: complaints.add(min(self.at, len(lines)), text)

    def read(self):
        """Read both sections. What follows the "end" of the services is the writer's signature."""
        sections = {"transponders": self._transponder, "services": self._service}
        read_entry = None
        for line in iter(self._next, None):
            word = line.strip()
            if word == "end" and read_entry == self._service:
                return
            if word in sections or word == "end":
                if word != "end" and read_entry:
                    self.complain('"end" is missing before this')
                read_entry = sections.get(word)
            elif read_entry:
                read_entry(line)
            else:
                self.complain("is in no section")
        self.complain('the file stops without "end"')

    def _next(self):
        """The next line, or None at the end of the file."""
        self.at += 1
        return self.lines[self.at - 1] if self.at <= len(self.lines) else None

    def _peek(self, ahead=0):
        """A line further on; beyond the file as if the section ended there."""
        return self.lines[self.at + ahead] if self.at + ahead < len(self.lines) else "end"

    def _transponder(self, line):
        """An id line, a line with the tuning values, perhaps further lines, "/". The GUI needs nothing of it."""
        if not _TRANSPONDER.fullmatch(line) or not _TUNING.match(self._peek()):
            self.complain("is no transponder")
            return
        self._next()
        while self._peek()[:1] in ("\t", " "):
            self._next()
        if self._peek().strip() == "/":
            self._next()
        else:
            self.complain('"/" is missing after this')

    def _service(self, line):
        """An id line, the name (which may be empty), the options."""
        match = _SERVICE.fullmatch(line)
        name = options = ""
        if not match:
            self.complain("is no service")
            return
        # A channel may be called "end": the options behind it tell.
        if self._starts_entry() and not _OPTIONS.match(self._peek(1)):
            self.complain("service without name and options")
        else:
            name = self._next()
            if self._starts_entry():
                self.complain("service without options")
            else:
                options = self._next()
        self.result.add(match, name, options)

    def _starts_entry(self):
        return self._peek().strip() == "end" or _SERVICE.fullmatch(self._peek())


def _read_format5(result, lines, complaints):
    """The newest format: one line per entry, no sections: "t:id,values" and 's:id,"name",options'. Names may hold quotes."""
    for number, line in enumerate(lines[1:], 2):
        if not line.strip() or line.startswith("#"):
            continue
        kind, _, rest = line.partition(":")
        if kind == "t" and _TRANSPONDER.fullmatch(rest.partition(",")[0]) and _TUNING.match(rest.partition(",")[2]):
            continue
        parts = _V5_SERVICE.fullmatch(rest) if kind == "s" else None
        match = _SERVICE.fullmatch(parts.group(1)) if parts else None
        if match:
            result.add(match, parts.group(2), parts.group(3) or "")
        else:
            complaints.add(number, "is neither transponder nor service")
