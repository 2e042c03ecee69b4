"""Channel lists: bouquets and services, for TV and radio."""

from Components.ActionMap import ActionMap, NumberActionMap
from Components.ServiceList import ServiceList
from Screens.Screen import Screen
from ServiceReference import ServiceReference
from enigma import eEnv, eServiceCenter, eServiceReference  # noqa: F401 (plug-ins take eEnv from here)
from enigma import eTimer, getPrevAsciiCode
from receiver import running

MODE_TV, MODE_RADIO = 0, 1
LETTERS = ("0", "1", "abc2", "def3", "ghi4", "jkl5", "mno6", "pqrs7", "tuv8", "wxyz9")
TYPING_MS = 1000


class ChannelSelectionBase(Screen):
    """A channel list: where it is in the tree of lists (`servicePath`) and the keys that lead elsewhere."""

    def __init__(self, session):
        Screen.__init__(self, session)
        self.mode = MODE_TV
        self.maintitle = ""
        self.servicePath = []
        self.servicelist = self["list"] = ServiceList()
        profile = running.gui.profile
        colours = {"showAllServices": self.showAllServices, "showFavourites": self.showFavourites}
        if profile.channel_colours == "ColorActions":
            colours = dict(zip(("red", "blue"), colours.values()))
        self["channelSelectBaseActions"] = ActionMap(["ChannelSelectBaseActions", profile.channel_colours], colours,
                                                     prio=profile.channel_map_priority)
        self["channelSelectMoveActions"] = NumberActionMap(
            ["ChannelSelectBaseActions", "NumberActions", "InputAsciiActions"], {
                "nextBouquet": self.nextBouquet, "prevBouquet": self.prevBouquet,
                "nextMarker": self.nextMarker, "prevMarker": self.prevMarker, "gotAsciiCode": self.keyAsciiCode,
                **{str(digit): self.keyNumberGlobal for digit in range(10)}}, prio=-2)
        self._typed = ""
        self._typing = eTimer()
        self._typing.callback.append(self._typingEnds)

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

    def enterPath(self, ref, justSet=False):
        """Go into a bouquet or another list."""
        self._typed = ""
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

    def keyNumberGlobal(self, number):
        """Go to the row with this number, of one digit or more; in a list by name to the letters on the remote's key."""
        if "FROM BOUQUET" in self.servicelist.getRoot().getPath():
            self._typed += str(number)
            self.servicelist.moveToNumber(int(self._typed))
        else:
            letters, again = LETTERS[number], self._typed in LETTERS[number] and self._typed
            self._typed = letters[(letters.index(self._typed) + 1) % len(letters)] if again else letters[0]
            self.servicelist.moveToName(self._typed, following=not again)
        self._typing.start(TYPING_MS, True)

    def keyAsciiCode(self):
        """Search by name for what is typed on a keyboard, until a pause ends the word."""
        self._typed += chr(getPrevAsciiCode())
        self.servicelist.moveToName(self._typed, following=len(self._typed) == 1)
        self._typing.start(TYPING_MS, True)

    def _typingEnds(self):
        self._typed = ""

    def _root(self, kind):
        prefix = "ROOT_TV_" if self.mode == MODE_TV else "ROOT_RADIO_"
        return eServiceReference(getattr(eServiceCenter, prefix + kind))

    def _start(self, root):
        if self.servicePath != [root]:
            self.servicePath = []
            self.enterPath(root)

    def _neighbour(self, step):
        """From inside a bouquet to the next one of the list above, wrapping around; in a list with none above by a page."""
        if len(self.servicePath) < 2:
            self.servicelist.pageUp() if step > 0 else self.servicelist.pageDown()
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
