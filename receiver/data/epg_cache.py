"""eEPGCache: the programme guide in memory and its file.

No screen of the receiver shows programmes, so what it knows of a service is how many there are. The file is the
receiver's own: a word, a checksum, and that as JSON. A file of anything else is never overwritten: it is somebody's.
"""
import contextlib
import errno
import functools
import json
import os
import zlib

from . import env, walls
from .files import read_file, reason, write_atomically

_HEADER = walls.EPG_MAGIC + b" 3 %08x\n"
A_WEEK = 210     # programmes that the broadcast brings of a service
EVENT_BYTES = 50  # of a programme in the file of a box, which does not save small ones


def unpack(data):
    """The events of a file's content, reference text -> number of programmes; ValueError when it is broken or not ours."""
    header, _, body = data.partition(b"\n")
    if not data.startswith(walls.EPG_MAGIC):
        raise ValueError("not an EPG cache file of this receiver")
    if header + b"\n" != _HEADER % zlib.crc32(body):
        raise ValueError("broken, or of another version")
    return json.loads(body)


@functools.lru_cache(maxsize=1)
def _counts_in(path, *state):
    """(events, services) in a file, read once in each of its states, for the picture asks at every frame; None if it is broken."""
    with contextlib.suppress(OSError, ValueError):
        events = unpack(read_file(path))
        return sum(events.values()), len(events)
    return None


class eEPGCache(env.OnlyOne):
    """`load`, `save` and `setCacheFile` neither raise nor return anything, as on boxes: failures are console lines, and one
    to save is also told to `on_failure`, as a text for the user. `path` is where the file is on the box."""

    def __init__(self):
        self._events = {}
        self.path = env.EPG_FILE
        self.on_failure = lambda text: None

    def setCacheFile(self, path):
        """Name the cache file; "" is the one on the hard disk. Neither loads nor saves."""
        self.path = path or env.EPG_FILE

    def load(self):
        """Replace the cache by what the file holds. A missing, broken or foreign file changes nothing."""
        try:
            self._events = unpack(read_file(self.path))
        except FileNotFoundError:  # as on a new box
            env.log("[EPGCache] there is no %s yet" % self.path)
        except (OSError, ValueError) as error:
            env.log("[EPGCache] %s not loaded: %s" % (self.path, reason(error)))

    def save(self):
        """Write the cache to its file, an empty one too. A failure leaves the old file as it was."""
        try:
            with walls.outside():
                place = os.path.realpath(env.real(self.path))
                if os.path.lexists(place) and not walls.is_epg_file(place):
                    raise OSError(errno.EEXIST, "a file that this receiver has not made is left alone")
            body = json.dumps(self._events, separators=(",", ":")).encode()
            write_atomically(self.path, _HEADER % zlib.crc32(body) + body)
        except (OSError, ValueError) as error:
            env.log("[EPGCache] %s not saved: %s" % (self.path, reason(error)))
            self.on_failure("%s was not saved: %s" % (self.path, reason(error)))

    def clearDB(self):
        """Forget every event. The file is not touched."""
        self._events = {}

    def size(self):
        """About how many bytes a box would write."""
        return EVENT_BYTES * sum(self._events.values())

    def counts(self):
        """(events, services) in the cache."""
        return sum(self._events.values()), len(self._events)

    def fileCounts(self):
        """(events, services) in the file; None when it is missing or could not be loaded."""
        with contextlib.suppress(OSError, ValueError), walls.outside():
            info = os.stat(env.real(self.path))
            return _counts_in(self.path, info.st_ino, info.st_size, info.st_mtime_ns)
        return None

    def receive(self, refs, skip=()):
        """What a tuner brings on a box: a week of programmes of these services, but for those whose compare form is in `skip`."""
        for ref in refs:
            if ref.toCompareString() not in skip:
                self._events[ref.toCompareString()] = A_WEEK
