"""eServiceCenter: what the host's screens ask about services."""


class ServiceList:
    """A snapshot of the services in one list."""

    def getNext(self):
        """The next eServiceReference; an invalid one after the last."""

    def getContent(self, format="", sorted=False):
        """All services at once: one item per service for a one-letter format, else a tuple with one field per letter.

        S text form, C compare form, R eServiceReference, N name, n short name (the same here).
        """


class eServiceCenter:
    """The service database of this run's etc folder; read when first asked for."""

    # Roots: what the channel list starts from, as eServiceReference text. (constants at the end)
    ROOT_TV_FAVOURITES = ROOT_RADIO_FAVOURITES = ROOT_TV_ALL = ROOT_RADIO_ALL = ""
    ROOT_TV_PROVIDERS = ROOT_RADIO_PROVIDERS = ROOT_TV_SATELLITES = ROOT_RADIO_SATELLITES = ""

    @staticmethod
    def getInstance():
        """The one service centre."""

    def list(self, ref):
        """A ServiceList of what `ref` (bouquet, root, provider, satellite) holds, or None when it is no list."""

    def getName(self, ref):
        """Display name: the reference's own, else the bouquet's, else the one in lamedb, else ""."""

    def reload(self):
        """Read lamedb and the bouquets again."""

    def counts(self):
        """(services in lamedb, bouquets)."""
