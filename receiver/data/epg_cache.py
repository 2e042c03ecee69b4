"""eEPGCache: the programme guide in memory and its file.

The file is the receiver's own format, not that of a box: a line with a word of its own and a checksum, then the events as
JSON. A file of anything else is never overwritten: it is somebody's.
"""
import errno
import json
import os
import zlib

from . import env, epg_demo, walls
from .files import read_file, write_atomically

_HEADER = walls.EPG_MAGIC + b" 2 %08x\n"


class BadFile(Exception):
    """The file is not a whole cache file of ours; the text says why."""


def pack(events):
    """The file's content for `events`, a dict of reference text -> [(start, duration, title)]."""
    body = json.dumps(events, separators=(",", ":")).encode()
    return _HEADER % zlib.crc32(body) + body


def unpack(data):
    """The events of a file's content; BadFile when it is broken or not ours."""
    header, _, body = data.partition(b"\n")
    if not data.startswith(walls.EPG_MAGIC):
        raise BadFile("not an EPG cache file of this receiver")
    if header + b"\n" != _HEADER % zlib.crc32(body):
        raise BadFile("broken, or of another version")
    return {key: [tuple(event) for event in rows] for key, rows in json.loads(body).items()}


class eEPGCache:
    """Events per service. An event is (start, duration, title): Unix time, seconds, text.

    `load`, `save` and `setCacheFile` neither raise nor return anything, as on boxes: failures are console lines, and one
    to save is also told to `on_failure`, as a text for the user.
    """

    _instance = None

    def __init__(self):
        self._events = {}
        self._path = None
        self._seen = (None, None)      # file identity -> its counts, so that the picture can ask at every frame
        self.on_failure = lambda text: None

    @staticmethod
    def getInstance():
        """The one cache of the process."""
        if eEPGCache._instance is None:
            eEPGCache._instance = eEPGCache()
        return eEPGCache._instance

    def setCacheFile(self, path):
        """Name the cache file, by its path on the box. Neither loads nor saves."""
        self._path = path

    def cacheFile(self):
        """Path of the cache file; epg.dat on the hard disk as long as nobody named one."""
        return self._path or env.EPG_FILE

    def load(self):
        """Replace the cache by what the file holds. A missing, broken or foreign file changes nothing."""
        try:
            self._events = unpack(read_file(self.cacheFile()))
        except FileNotFoundError:  # as on a new box
            env.log("[EPGCache] there is no %s yet" % self.cacheFile())
        except (OSError, ValueError, BadFile) as error:
            env.log("[EPGCache] %s not loaded: %s" % (self.cacheFile(), _reason(error)))

    def save(self):
        """Write the cache to its file, an empty one too. A failure leaves the old file as it was."""
        try:
            if self.isForeign():
                raise OSError(errno.EEXIST, "a file that this receiver has not made is left alone")
            write_atomically(self.cacheFile(), pack(self._events))
        except (OSError, ValueError) as error:
            env.log("[EPGCache] %s not saved: %s" % (self.cacheFile(), _reason(error)))
            self.on_failure("%s was not saved: %s" % (self.cacheFile(), _reason(error)))

    def isForeign(self):
        """Whether something is in the file's place that no receiver has made."""
        with walls.outside():
            path = env.real(self.cacheFile())
            if not os.path.lexists(path):
                return False
            try:
                walls.check_readable(path)
                with open(path, "rb") as file:
                    return file.read(len(walls.EPG_MAGIC)) not in (walls.EPG_MAGIC, b"")
            except FileNotFoundError:  # a link that leads nowhere
                return False
            except OSError:
                return True

    def clearDB(self):
        """Forget every event. The file is not touched."""
        self._events = {}

    def size(self):
        """How many bytes `save` would write."""
        return len(pack(self._events))

    def counts(self):
        """(events, services) in the cache."""
        return _counts(self._events)

    def fileCounts(self):
        """(events, services) in the file; None when it is missing or could not be loaded."""
        try:
            with walls.outside():
                info = os.stat(env.real(self.cacheFile()))
            identity = (self.cacheFile(), info.st_ino, info.st_size, info.st_mtime_ns)
            if self._seen[0] != identity:
                self._seen = (identity, None)
                self._seen = (identity, _counts(unpack(read_file(self.cacheFile()))))
        except (OSError, ValueError, BadFile):
            return None
        return self._seen[1]

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


def _counts(events):
    return sum(map(len, events.values())), len(events)


def _reason(error):
    return getattr(error, "strerror", None) or error
