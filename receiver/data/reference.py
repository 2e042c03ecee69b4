"""eServiceReference: the textual and the numeric form of a service, a bouquet, a marker or a whole list."""
import re
from urllib.parse import unquote_to_bytes

from .files import decode, encode

# Boxes scan up to the first field that is no number of the wanted kind, and take the rest for missing.
_FIELDS = re.compile(r"\s*([+-]?\d+):([+-]?\d+)((?::[0-9A-Fa-f]+){0,8})(?::(.*))?", re.ASCII | re.DOTALL)
_UNSAFE = re.compile("[\x00-\x1f\x7f:%]")


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


class eServiceReference:
    """One service, bouquet, marker or list query.

        eServiceReference()                      invalid
        eServiceReference(text)                  from its textual form
        eServiceReference(type, flags, path)     all data fields 0
        eServiceReference(other)                 a copy

    Text form: type:flags:f3:...:f10:path[:name]. Always true, also when invalid: ask `valid()`. Two references are
    equal when they mean the same service, whatever their flags and names.
    """

    isDirectory, mustDescent, canDescent, flagDirectory = 1, 2, 4, 7
    isMarker, isGroup, isNumberedMarker, isInvisible = 64, 128, 256, 512
    idInvalid, idDVB, idServiceMP3 = -1, 1, 0x1001

    def __init__(self, *args):
        self.type, self.flags, self.data, self.path, self.name = self.idInvalid, 0, [0] * 8, "", ""
        if len(args) == 1 and isinstance(args[0], eServiceReference):
            self.__dict__.update(vars(args[0]), data=list(args[0].data))
        elif len(args) == 1 and isinstance(args[0], str):
            _check_text(args[0])
            self._parse(args[0])
        elif args == (None,):
            raise ValueError("invalid null reference")
        elif len(args) == 3 and isinstance(args[2], str):
            self.type, self.flags, self.path = int(args[0]), int(args[1]), args[2]
        elif args:
            raise TypeError("eServiceReference takes nothing, a string, a reference, or (type, flags, path)")

    @classmethod
    def read(cls, text):
        """The reference of a text from a file, which may hold any byte as a surrogate. Only C++ makes such ones on a box."""
        reference = cls()
        reference._parse(text)
        return reference

    def _parse(self, text):
        match = _FIELDS.match(text)
        if not match:
            return
        numbers = [int(field, 16) & 0xFFFFFFFF for field in match[3].split(":")[1:]]
        self.type, self.flags, self.data = int(match[1]), int(match[2]), numbers + [0] * (8 - len(numbers))
        if match[4] and len(numbers) == 8:
            path, _, name = match[4].partition(":")
            self.path, self.name = _unquote(path), _unquote(name)

    def valid(self):
        """1 when this is a reference at all, else 0."""
        return int(self.type != self.idInvalid)

    def toString(self):
        """The textual form with flags and, when there is one, the name. Colons in path and name are escaped."""
        text = self._fields(self.flags)
        return text + ":" + _quote(self.name) if self.name else text

    def toCompareString(self):
        """The textual form with flags 0 and no name: equal for two references to the same service."""
        return self._fields(0)

    def _fields(self, flags):
        return "%d:%d:%s:%s" % (self.type, flags, ":".join("%X" % value for value in self.data), _quote(self.path))

    def getPath(self):
        """Path, address or list query; "" for a broadcast service."""
        return self.path

    def getName(self):
        """The name that the reference itself carries; "" when it has none."""
        return self.name

    def setName(self, name):
        """Give the reference a name of its own."""
        _check_text(name)
        self.name = name

    def getUnsignedData(self, index):
        """Data field 0 to 7 as an unsigned 32-bit number."""
        return self.data[index]

    def __eq__(self, other):
        return isinstance(other, eServiceReference) and self.toCompareString() == other.toCompareString()

    def __hash__(self):
        return hash(self.toCompareString())
