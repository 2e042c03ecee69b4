"""Reader of lamedb, the list of all transponders and services a box has found; formats 4 and 5.

A broken line or entry costs a console line with its number, never the rest of the list: after an entry that makes no
sense the reader goes on at the next line that looks like the start of one.
"""
import re
from typing import NamedTuple, Tuple

from .files import Complaints, read_lines
from .reference import eServiceReference

_FIRST = re.compile(r"eDVB services /([45])/\s*")
_TRANSPONDER = re.compile(r"\s*([0-9a-f]{1,8}):([0-9a-f]{1,4}):([0-9a-f]{1,4})\s*", re.I)
_SERVICE = re.compile(
    r"\s*([0-9a-f]{1,4}):([0-9a-f]{1,8}):([0-9a-f]{1,4}):([0-9a-f]{1,4}):([0-9]{1,3}):[0-9]+(?::[0-9a-f]+)?\s*", re.I)
_TUNING = re.compile(r"\s*([stca])[ :](-?\d+(?::-?\d+)*)", re.I)
_OPTIONS = re.compile(r"[pcf]:", re.I)
_PROVIDER = re.compile(r"(?:^|,)p:(.*?)(?=,[cCf]:|$)", re.DOTALL)
_V5_SERVICE = re.compile(r'([^,]+),"(.*?)"(?:,((?:[pcCf]:).*)?)?', re.DOTALL)


class Transponder(NamedTuple):
    """Where a multiplex is received: kind "s", "t", "c" or "a" (satellite, terrestrial, cable, ATSC) and its values."""
    kind: str
    values: Tuple[int, ...]


class Service(NamedTuple):
    """One service as a box found it."""
    sid: int
    namespace: int
    tsid: int
    onid: int
    type: int
    name: str
    provider: str

    def position(self):
        """Orbital position in tenths of a degree, west negative; 0xEEEE and 0xFFFF stand for aerial and cable."""
        position = self.namespace >> 16
        return position - 3600 if 1800 < position < 3600 else position

    def reference(self):
        """A new eServiceReference without a name."""
        return eServiceReference(
            "1:0:%X:%X:%X:%X:%X:0:0:0:" % (self.type, self.sid, self.tsid, self.onid, self.namespace))


class Lamedb:
    """What a lamedb file holds.

    transponders -- (namespace, tsid, onid) -> Transponder
    services     -- (sid, namespace, tsid, onid) -> Service, in the order of the file
    """

    def __init__(self):
        self.transponders = {}
        self.services = {}

    @classmethod
    def read(cls, path):
        """Read the file. Missing, unreadable or of another kind: the result is empty, and the console says so."""
        result = cls()
        complaints = Complaints(path)
        try:
            lines = [text for text, _ in read_lines(path)]
        except OSError as error:
            complaints.add(0, error.strerror or error)
            return result
        first = _FIRST.fullmatch(lines[0]) if lines else None
        if not first:
            complaints.add(1, "is no lamedb of format 4 or 5")
        elif first.group(1) == "4":
            _Format4(result, lines, complaints).read()
        else:
            _read_format5(result, lines, complaints)
        complaints.close()
        return result

    def find(self, ref):
        """The Service that a broadcast reference means, or None."""
        field = ref.getUnsignedData
        return self.services.get((field(1), field(4), field(2), field(3)))

    def add_transponder(self, match, tuning):
        """Add a transponder from its matched id and tuning texts."""
        key = tuple(int(field, 16) for field in match.groups())
        self.transponders[key] = Transponder(tuning.group(1).lower(), tuple(map(int, tuning.group(2).split(":"))))

    def add_service(self, match, name, options):
        """Add a service from its matched id, its name and its options text."""
        sid, namespace, tsid, onid = (int(field, 16) for field in match.groups()[:4])
        self.services[sid, namespace, tsid, onid] = Service(
            sid, namespace, tsid, onid, int(match.group(5)), name, _provider(options))


def _provider(options):
    """The provider in an options text. Very old lists hold nothing else there."""
    if not _OPTIONS.match(options):
        return options
    match = _PROVIDER.search(options)
    return match.group(1) if match else ""


class _Format4:
    """The older layout: two sections, several lines per entry."""

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
        """An id line, a line with the tuning values, perhaps further lines, "/"."""
        match = _TRANSPONDER.fullmatch(line)
        tuning = _TUNING.match(self._peek()) if match else None
        if not tuning:
            self.complain("is no transponder")
            return
        self.result.add_transponder(match, tuning)
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
        self.result.add_service(match, name, options)

    def _starts_entry(self):
        return self._peek().strip() == "end" or _SERVICE.fullmatch(self._peek())


def _read_format5(result, lines, complaints):
    """The newer layout: one line per entry, no sections."""
    for number, line in enumerate(lines[1:], 2):
        if not line.strip() or line.startswith("#"):
            continue
        kind, _, rest = line.partition(":")
        read_entry = {"t": _transponder5, "s": _service5}.get(kind)
        if not read_entry or not read_entry(result, rest):
            complaints.add(number, "is neither transponder nor service")


def _transponder5(result, text):
    """Read "id,values[,more]"; False when it is none."""
    key, _, values = text.partition(",")
    match, tuning = _TRANSPONDER.fullmatch(key), _TUNING.match(values)
    if match and tuning:
        result.add_transponder(match, tuning)
    return bool(match and tuning)


def _service5(result, text):
    """Read 'id,"name"[,options]'; False when it is none. Names may hold quotes."""
    parts = _V5_SERVICE.fullmatch(text)
    match = _SERVICE.fullmatch(parts.group(1)) if parts else None
    if match:
        result.add_service(match, parts.group(2), parts.group(3) or "")
    return bool(match)
