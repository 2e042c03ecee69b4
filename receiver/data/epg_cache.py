"""eEPGCache: the programme guide in memory and its file.

The file is the receiver's own format, not that of a box: a header (magic, version, counts, length and checksum of the
rest), then per service its reference and its events. All numbers are big-endian.
"""
import os
import stat
import struct
import zlib

from . import env, epg_demo
from .files import decode, encode, write_atomically

_MAGIC = b"PC-EPG\r\n"              # the line end shows a copy in text mode at once
_VERSION = 1
_HEADER = struct.Struct(">8sIIIQI")  # magic, version, services, events, length and CRC-32 of what follows
_SERVICE = struct.Struct(">II")      # length of the reference, number of events
_EVENT = struct.Struct(">qII")       # start, duration, length of the title


class BadFile(Exception):
    """The file is not a whole cache file of ours; the text says why."""


def pack(events):
    """The file's content for `events`, a dict of reference text -> [(start, duration, title)]."""
    parts = []
    for key, rows in events.items():
        name = encode(key)
        parts += [_SERVICE.pack(len(name), len(rows)), name]
        for start, duration, title in rows:
            text = encode(title)
            parts += [_EVENT.pack(start, duration, len(text)), text]
    body = b"".join(parts)
    count = sum(map(len, events.values()))
    return _HEADER.pack(_MAGIC, _VERSION, len(events), count, len(body), zlib.crc32(body)) + body


def unpack(data):
    """The events of a file's content; BadFile when it is broken or not ours."""
    if data[:len(_MAGIC)] != _MAGIC:
        raise BadFile("not an EPG cache file of this receiver")
    if len(data) < _HEADER.size:
        raise BadFile("cut off in its header")
    _, version, services, count, length, checksum = _HEADER.unpack_from(data)
    if version != _VERSION:
        raise BadFile("version %d, only %d is understood" % (version, _VERSION))
    if len(data) - _HEADER.size != length:
        raise BadFile("%d bytes of content instead of %d" % (len(data) - _HEADER.size, length))
    if zlib.crc32(memoryview(data)[_HEADER.size:]) != checksum:
        raise BadFile("wrong checksum")
    try:
        events, end = _unpack_services(data, services)
    except struct.error:
        raise BadFile("its counts lead beyond its end") from None
    if end != len(data) or sum(map(len, events.values())) != count:
        raise BadFile("its counts do not fit its content")
    return events


def _unpack_services(data, services):
    at = _HEADER.size
    events = {}
    for _ in range(services):
        size, count = _SERVICE.unpack_from(data, at)
        at += _SERVICE.size + size
        rows = events[decode(data[at - size:at])] = []
        for _ in range(count):
            start, duration, size = _EVENT.unpack_from(data, at)
            at += _EVENT.size + size
            rows.append((start, duration, decode(data[at - size:at])))
    return events, at


def _read(path):
    """The events in the file at `path`. OSError or BadFile."""
    info = os.stat(path)
    if not stat.S_ISREG(info.st_mode):   # opening a pipe would block the GUI
        raise BadFile("not a file")
    with open(path, "rb") as file:
        start = file.read(_HEADER.size)
        # Somebody's film named epg.dat is not worth reading to its end.
        return unpack(start + file.read() if start.startswith(_MAGIC) else start)


class eEPGCache:
    """Events per service. An event is (start, duration, title): Unix time, seconds, text.

    `load`, `save` and `setCacheFile` neither raise nor return anything, as on boxes: failures are console lines.
    """

    _instance = None

    def __init__(self):
        self._events = {}
        self._path = None
        self._seen = (None, None)      # file identity -> its counts, so that the picture can ask at every frame

    @staticmethod
    def getInstance():
        """The one cache of the process."""
        if eEPGCache._instance is None:
            eEPGCache._instance = eEPGCache()
        return eEPGCache._instance

    def setCacheFile(self, path):
        """Name the cache file. Neither loads nor saves."""
        self._path = path

    def cacheFile(self):
        """Path of the cache file; epg.dat on the hard disk as long as nobody named one."""
        return self._path or env.epg_file()

    def load(self):
        """Replace the cache by what the file holds. A missing, broken or foreign file changes nothing."""
        try:
            self._events = _read(self.cacheFile())
        except (OSError, ValueError, BadFile) as error:
            env.log("[EPGCache] %s not loaded: %s" % (self.cacheFile(), error))

    def save(self):
        """Write the cache to its file, an empty one too. A failure leaves the old file as it was."""
        try:
            write_atomically(self.cacheFile(), pack(self._events))
        except (OSError, ValueError) as error:
            env.log("[EPGCache] %s not saved: %s" % (self.cacheFile(), error))

    def clearDB(self):
        """Forget every event. The file is not touched."""
        self._events = {}

    def size(self):
        """How many bytes `save` would write."""
        return len(pack(self._events))

    def counts(self):
        """(events, services) in the cache."""
        return sum(map(len, self._events.values())), len(self._events)

    def fileCounts(self):
        """(events, services) in the file; None when it is missing or could not be loaded."""
        try:
            info = os.stat(self.cacheFile())
            identity = (self.cacheFile(), info.st_ino, info.st_size, info.st_mtime_ns)
            if self._seen[0] != identity:
                self._seen = (identity, self._count(self.cacheFile()))
        except (OSError, ValueError):
            return None
        return self._seen[1]

    @staticmethod
    def _count(path):
        try:
            events = _read(path)
        except BadFile:
            return None
        return sum(map(len, events.values())), len(events)

    def events(self, ref):
        """The events of a service in order of their start."""
        return list(self._events.get(ref.toCompareString(), ()))

    def setEvents(self, ref, events):
        """Replace the events of a service; without events it is forgotten."""
        key = ref.toCompareString()
        self._events.pop(key, None)
        if events:
            self._events[key] = sorted(events)

    def receive(self, refs, now, days=7, skip=()):
        """What a tuner does on a box: fill in the programmes from `now` (Unix time) for `days` days. A PC has no tuner,
        so they are demo data (see `epg_demo`). Events already known stay.

        refs -- eServiceReferences; what is no service (marker, directory) is left out.
        skip -- compare forms of services whose EPG must not be updated.
        """
        for ref in refs:
            if ref.valid() and not ref.flags & (ref.isMarker | ref.isDirectory) and ref.toCompareString() not in skip:
                known = {event[0]: event for event in self.events(ref)}
                known.update((event[0], event) for event in epg_demo.schedule(ref, now, days))
                self.setEvents(ref, list(known.values()))
