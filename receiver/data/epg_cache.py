"""eEPGCache: the programme guide in memory and its file."""


class eEPGCache:
    """Events per service. An event is (start, duration, title): Unix time, seconds, text."""

    @staticmethod
    def getInstance():
        """The one cache."""

    def setCacheFile(self, path):
        """Name the cache file; neither loads nor saves."""

    def load(self):
        """Replace the cache by the file's content. A missing, broken or foreign file: a console line, nothing changes."""

    def save(self):
        """Write the cache to its file. On failure: a console line, the old file stays."""

    def clearDB(self):
        """Forget every event; the file is not touched."""

    def cacheFile(self):
        """Path of the cache file."""

    def counts(self):
        """(events, services) in the cache."""

    def fileCounts(self):
        """(events, services) in the file; None when it is missing or not usable."""

    def events(self, ref):
        """The events of a service in order of their start."""

    def setEvents(self, ref, events):
        """Replace the events of a service."""

    def receive(self, refs, now, days=7, skip=()):
        """Fill in demo programmes from `now` for `days` days, as a broadcast would; the same within one day."""
