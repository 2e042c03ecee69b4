"""The channel picker: its keys before the host's, and words where the module would say nothing or fail."""

from __future__ import absolute_import

from Components import ServiceList
from Components.ActionMap import ActionMap
from Screens.ChannelSelection import SimpleChannelSelection

from ..texts import translate as _
from . import guard, messages
from .readable import readable

DIRECTORY = 7  # a reference's flags with these bits are a bouquet's


def changes():
    """The channel list that the module's picker derives from, on hosts whose list does not have all that it calls."""
    if hasattr(getattr(ServiceList, "ServiceList", None), "setPythonConfig"):
        return {}
    return {"Screens.ChannelSelection": {"SimpleChannelSelection": Picker}}


class Picker(SimpleChannelSelection):
    """The host's channel list as the module knows it."""

    def __init__(self, session, title):
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
        return guard.ActionMap(["ChannelSelectBaseActions", "OkCancelActions", "ColorActions"], actions, prio)

    def choose(self):
        if self._is_anything_selected():
            self.channelSelected()
        else:
            self._notice(_("Nothing is selected."))

    def addBouquet(self):
        if self._is_anything_selected() and self.getCurrentSelection().flags & DIRECTORY == DIRECTORY:
            self.doNothing()
        else:
            self._notice(_("Select a bouquet first."))

    def _notice(self, text):
        self.noticed = True
        messages.notice(self.session, text)

    def _is_anything_selected(self):
        """Hosts have an invalid reference for no selection, which the module would take for a service."""
        reference = self.getCurrentSelection()
        return reference is not None and reference.valid()

    def setTitle(self, title, *arguments, **keywords):
        """The host makes it of where one is, with bouquets' names; some forget what the list is for."""
        purpose, title = _("Add Service"), readable(title)
        title = title if purpose in title else "%s %s" % (purpose, title.strip())
        SimpleChannelSelection.setTitle(self, title, *arguments, **keywords)


class Place(object):
    """Leaves the user where he was when a notice goes; the module returns to the favourites whenever it is shown."""

    noticed = False

    def setModeTv(self):
        if self.noticed:
            self.noticed = False
        else:
            super(Place, self).setModeTv()


SCREENS = {"DVB_EPG_blacklist_ChannelSelection": Place}


def _nothing():
    pass
