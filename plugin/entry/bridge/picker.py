"""The channel picker: its keys before the host's, and nothing selected is no value."""

from __future__ import absolute_import

from Components import ServiceList
from Components.ActionMap import ActionMap
from Screens.ChannelSelection import SimpleChannelSelection

from ..texts import translate as _
from . import guard


def changes():
    """The channel list that the module's picker derives from, on hosts whose list does not have all that it calls."""
    if hasattr(getattr(ServiceList, "ServiceList", None), "setPythonConfig"):
        return {}
    return {"Screens.ChannelSelection": {"SimpleChannelSelection": Picker}}


class Picker(SimpleChannelSelection):
    """The host's channel list as the module knows it."""

    def __init__(self, session, title):
        self._module_asks = False
        SimpleChannelSelection.__init__(self, session, _("Add Service"))  # the host adds where in its lists one is
        guard.watch(self)
        if not hasattr(self.servicelist, "setPythonConfig"):
            self.servicelist.setPythonConfig = _nothing  # the list has one look
        self["veltro_keys"] = self._keys()

    def _keys(self):
        """Our keys, asked before any of the host's own maps: there the colour keys lead elsewhere in the lists."""
        prio = min(getattr(each, "prio", 0) for each in self.values() if isinstance(each, ActionMap)) - 1
        actions = {"showAllServices": self.cancel, "showSatellites": self.showAllServices,
                   "showProviders": self.addBouquet, "showFavourites": self.showFavourites, "ok": self.choose}
        # Some hosts have the channel list's colours on the release of the key, as plain colours. By then it was dealt with.
        actions.update((colour, _nothing) for colour in ("red", "green", "yellow", "blue"))
        return ActionMap(["ChannelSelectBaseActions", "OkCancelActions", "ColorActions"],
                         dict((name, guard.guarded(handler)) for name, handler in actions.items()), prio)

    def choose(self):
        self._ask(self.channelSelected)

    def addBouquet(self):
        self._ask(self.doNothing)

    def _ask(self, operation):
        self._module_asks = True
        try:
            operation()
        finally:
            self._module_asks = False

    def getCurrentSelection(self):
        """The selected service. Hosts have an invalid reference for none, and their own code relies on that; None is
        only for the operation's first question: the ones after it may come from the host code that it calls."""
        reference = SimpleChannelSelection.getCurrentSelection(self)
        asked, self._module_asks = self._module_asks, False
        return reference if not asked or reference is None or reference.valid() else None


def _nothing():
    pass
