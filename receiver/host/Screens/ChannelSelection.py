"""Channel lists: bouquets and services, for TV and radio."""

from Components.ActionMap import ActionMap
from Components.ServiceList import ServiceList
from Screens.Screen import Screen
from ServiceReference import ServiceReference
from enigma import eEnv, eServiceCenter, eServiceReference  # noqa: F401 (plug-ins take eEnv from here)
from receiver import running

MODE_TV, MODE_RADIO = 0, 1


class ChannelSelectionBase(Screen):
    """A channel list: where it is in the tree of lists (`servicePath`) and the keys that lead elsewhere."""

    def __init__(self, session):
        Screen.__init__(self, session)
        self.mode = MODE_TV
        self.maintitle = ""
        self.servicePath = []
        self.servicelist = self["list"] = ServiceList()
        profile = running.gui.profile
        colours = {"showAllServices": self.showAllServices, "showSatellites": self.showSatellites,
                   "showProviders": self.showProviders, "showFavourites": self.showFavourites}
        if profile.channel_colours == "ColorActions":
            colours = dict(zip(("red", "green", "yellow", "blue"), colours.values()))
        self["channelSelectBaseActions"] = ActionMap(["ChannelSelectBaseActions", profile.channel_colours], {
            "nextBouquet": self.nextBouquet, "prevBouquet": self.prevBouquet,
            "nextMarker": self.nextMarker, "prevMarker": self.prevMarker, **colours,
        }, prio=profile.channel_map_priority)

    def getCurrentSelection(self):
        """The selected eServiceReference, or what this host has for none."""
        current = self.servicelist.getCurrent()
        if current is None and not running.gui.profile.empty_selection_is_none:
            return eServiceReference()
        return current

    def setTvMode(self):
        self.mode = MODE_TV
        self._showTitle()

    def setRadioMode(self):
        self.mode = MODE_RADIO
        self._showTitle()

    def showFavourites(self):
        """The bouquets; from inside a bouquet one step up."""
        root = self._root("FAVOURITES")
        if len(self.servicePath) > 1 and self.servicePath[0] == root:
            self.pathUp()
        else:
            self._start(root)

    def showAllServices(self):
        self._start(self._root("ALL"))

    def showProviders(self):
        self._start(self._root("PROVIDERS"))

    def showSatellites(self, changeMode=False):
        self._start(self._root("SATELLITES"))

    def enterPath(self, ref, justSet=False):
        """Go into a bouquet or another list."""
        self.servicePath.append(ref)
        self.servicelist.setRoot(ref)
        self._showTitle()

    def pathUp(self):
        """Go to the list above; the cursor stands on the one that was left."""
        left = self.servicePath.pop()
        self.servicelist.setRoot(self.servicePath[-1])
        self.servicelist.setCurrent(left)
        self._showTitle()

    def nextBouquet(self):
        self._neighbour(1)

    def prevBouquet(self):
        self._neighbour(-1)

    def nextMarker(self):
        self.servicelist.moveToMarker(1)

    def prevMarker(self):
        self.servicelist.moveToMarker(-1)

    def _root(self, kind):
        prefix = "ROOT_TV_" if self.mode == MODE_TV else "ROOT_RADIO_"
        return eServiceReference(getattr(eServiceCenter, prefix + kind))

    def _start(self, root):
        if self.servicePath != [root]:
            self.servicePath = []
            self.enterPath(root)

    def _neighbour(self, step):
        """From inside a bouquet to the next one of the list above, wrapping around."""
        if len(self.servicePath) < 2:
            return
        here = self.servicePath[-1]
        self.pathUp()
        bouquets = [ref for ref in self.servicelist.l.rows if ref.flags & eServiceReference.isDirectory]
        position = bouquets.index(here) if here in bouquets else -step
        self.enterPath(bouquets[(position + step) % len(bouquets)] if bouquets else here)

    def _showTitle(self):
        mode = _("TV") if self.mode == MODE_TV else _("Radio")
        names = [ServiceReference(ref).getServiceName() for ref in self.servicePath[1:]]
        self.setTitle(" - ".join(["%s (%s)" % (self.maintitle, mode)] + [name for name in names if name]))


class SimpleChannelSelection(ChannelSelectionBase):
    """A channel list that closes with the chosen eServiceReference, or with None."""

    def __init__(self, session, title, currentBouquet=False, returnBouquet=False, setService=None, setBouquet=None):
        ChannelSelectionBase.__init__(self, session)
        self["actions"] = ActionMap(["OkCancelActions", "TvRadioActions"], {
            "cancel": self.cancel, "ok": self.channelSelected, "keyRadio": self.setModeRadio, "keyTV": self.setModeTv})
        self.maintitle = title
        self.onLayoutFinish.append(self.layoutFinished)

    def layoutFinished(self):
        self.setModeTv()

    def setModeTv(self):
        self.setTvMode()
        self.showFavourites()

    def setModeRadio(self):
        self.setRadioMode()
        self.showFavourites()

    def channelSelected(self):
        ref = self.getCurrentSelection()
        if ref is None or not ref.valid() or ref.flags & eServiceReference.isMarker:
            return
        if ref.flags & eServiceReference.flagDirectory == eServiceReference.flagDirectory:
            self.enterPath(ref)
        else:
            self.close(ref)

    def cancel(self):
        self.close(None)
