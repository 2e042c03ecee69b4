"""eServiceReference: the textual and the numeric form of a service, a bouquet, a marker or a whole list."""
import re
from urllib.parse import unquote_to_bytes

from .files import decode, encode

_FULL = re.compile(r"\s*([+-]?\d+):\s*([+-]?\d+)" + r":([0-9A-Fa-f]+)" * 8 + r":(.*)", re.ASCII | re.DOTALL)
_DECIMAL = re.compile(r"\s*[+-]?\d+", re.ASCII)
_HEX = re.compile(r"\s*[+-]?(0[xX])?[0-9A-Fa-f]+", re.ASCII)
_URL = re.compile(r"[A-Za-z].*://", re.DOTALL)
_UNSAFE = re.compile("[\x00-\x1f\x7f:%]")
_MASK = 0xFFFFFFFF


def _quote(text):
    return _UNSAFE.sub(lambda match: "%%%02x" % ord(match.group()), text)


def _unquote(text):
    return decode(unquote_to_bytes(encode(text))) if "%" in text else text


def _check_text(text):
    """TypeError for a lone surrogate, which C++ takes for no text."""
    try:
        text.encode()
    except UnicodeEncodeError:
        raise TypeError("argument of type 'std::string const &' expected") from None


def _numbers(fields):
    """The leading fields that are numbers, as boxes scan them: two decimal ones, then hexadecimal ones."""
    values = []
    for index, field in enumerate(fields[:10]):
        pattern, base = (_DECIMAL, 10) if index < 2 else (_HEX, 16)
        if not pattern.fullmatch(field):
            break
        values.append(int(field, base))
    return values


class eServiceReference:
    """One service, bouquet, marker or list query.

        eServiceReference()                      invalid
        eServiceReference(text)                  from its textual form or a bare URL
        eServiceReference(type, flags, path)     all data fields 0
        eServiceReference(other)                 a copy

    Text form: type:flags:f3:...:f10:path[:name]. Always true, also when invalid: ask `valid()`. Two references are
    equal when they mean the same service, whatever their flags and names.
    """

    isDirectory, mustDescent, canDescent, flagDirectory = 1, 2, 4, 7
    isMarker, isGroup, isNumberedMarker, isInvisible = 64, 128, 256, 512
    idInvalid, idDVB, idServiceMP3 = -1, 1, 0x1001

    def __init__(self, *args):
        self.type, self.flags, self._data, self._path, self._name = self.idInvalid, 0, [0] * 8, "", ""
        if len(args) == 1 and isinstance(args[0], eServiceReference):
            self.__dict__.update(vars(args[0]), _data=list(args[0]._data))
        elif len(args) == 1 and isinstance(args[0], str):
            _check_text(args[0])
            self._parse(args[0])
        elif args == (None,):
            raise ValueError("invalid null reference")
        elif len(args) == 3 and isinstance(args[2], str):
            self.type, self.flags, self._path = int(args[0]), int(args[1]), args[2]
        elif args:
            raise TypeError("eServiceReference takes nothing, a string, a reference, or (type, flags, path)")

    @classmethod
    def read(cls, text):
        """The reference of a text from a file, which may hold any byte as a surrogate. Only C++ makes such ones on a box."""
        reference = cls()
        reference._parse(text)
        return reference

    def _parse(self, text):
        full = _FULL.fullmatch(text)
        if full:
            fields = full.groups()
            self.type, self.flags = int(fields[0]), int(fields[1])
            self._data = [int(field, 16) & _MASK for field in fields[2:10]]
            self._parse_path(fields[10])
        elif _URL.match(text):
            url, _, name = text.partition(" ")
            self.type, self._path, self._name = self.idServiceMP3, url, name or text
        else:
            self._parse_short(text)

    def _parse_short(self, text):
        """Fewer than ten plain fields: with eight numbers or more the rest is missing, below that it is the older form
        with four data fields; without type and flags it is no reference at all."""
        fields = text.split(":")
        values = _numbers(fields)
        if len(values) < 2:
            return
        count = 8 if len(values) >= 8 else 4
        data = [value & _MASK for value in values[2:2 + count]]
        self.type, self.flags, self._data = *values[:2], data + [0] * (8 - len(data))
        if len(values) == 10:
            self._parse_path(":".join(fields[10:]))
        elif count == 4 and len(values) >= 6:
            self._parse_path(":".join(fields[6:]))

    def _parse_path(self, rest):
        """path[:name]. An address with raw colons ends at the first blank; without a blank it is lost, as on boxes."""
        path, _, name = rest.partition(":")
        if name.startswith("//"):
            path, blank, name = rest.partition(" ")
            path = path if blank else ""
        self._path, self._name = _unquote(path), _unquote(name)

    def valid(self):
        """1 when this is a reference at all, else 0."""
        return int(self.type != self.idInvalid)

    def toString(self):
        """The textual form with flags and, when there is one, the name. Colons in path and name are escaped."""
        text = self._fields(self.flags)
        return text + ":" + _quote(self._name) if self._name else text

    def toCompareString(self):
        """The textual form with flags 0 and no name: equal for two references to the same service."""
        return self._fields(0)

    def _fields(self, flags):
        return "%d:%d:%s:%s" % (self.type, flags, ":".join("%X" % value for value in self._data), _quote(self._path))

    def getPath(self):
        """Path, address or list query; "" for a broadcast service."""
        return self._path

    def getName(self):
        """The name that the reference itself carries; "" when it has none."""
        return self._name

    def setName(self, name):
        """Give the reference a name of its own."""
        _check_text(name)
        self._name = name

    def keepName(self, name):
        """As `setName`, for a name from a file."""
        self._name = name

    def getUnsignedData(self, index):
        """Data field 0 to 7 as an unsigned 32-bit number; 0 for another index."""
        return self._data[index] if 0 <= index < 8 else 0

    def __eq__(self, other):
        if not isinstance(other, eServiceReference):
            return NotImplemented
        return (self.type, self._data, self._path) == (other.type, other._data, other._path)

    def __hash__(self):
        return hash((self.type, tuple(self._data), self._path))

    def __repr__(self):
        return "eServiceReference(%r)" % self.toString()
