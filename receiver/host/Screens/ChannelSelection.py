"""Channel lists: bouquets and services, for TV and radio."""

from functools import partial, partialmethod

from Components.ActionMap import ActionMap
from Components.ServiceList import ServiceList
from Screens.Screen import Screen
from ServiceReference import ServiceReference
from enigma import eEnv, eServiceCenter, eServiceReference  # noqa: F401 (plug-ins take eEnv from here)
from enigma import eTimer, getPrevAsciiCode
from receiver import running

LETTERS = ("0", "1", "abc2", "def3", "ghi4", "jkl5", "mno6", "pqrs7", "tuv8", "wxyz9")
TYPING_MS = 1000


class SimpleChannelSelection(Screen):
    """A channel list that closes with the chosen eServiceReference, or with None. `servicePath` is where it is in the tree of
    lists."""

    def __init__(self, session, title):
        Screen.__init__(self, session)
        self.mode = "TV"
        self.maintitle = title
        self.servicePath = []
        self.servicelist = self["list"] = ServiceList()
        profile = running.gui.profile
        colours = ("red", "blue") if profile.channel_colours == "ColorActions" else ("showAllServices", "showFavourites")
        self["channelSelectBaseActions"] = ActionMap(
            ["ChannelSelectBaseActions", profile.channel_colours],
            dict(zip(colours, (self.showAllServices, self.showFavourites))), prio=profile.channel_map_priority)
        self["channelSelectMoveActions"] = ActionMap(["ChannelSelectBaseActions", "NumberActions", "InputAsciiActions"], {
            "nextBouquet": partial(self._neighbour, 1), "prevBouquet": partial(self._neighbour, -1),
            "nextMarker": partial(self.servicelist.moveToMarker, 1), "prevMarker": partial(self.servicelist.moveToMarker, -1),
            "gotAsciiCode": self.keyAsciiCode,
            **{str(digit): partial(self.keyNumberGlobal, digit) for digit in range(10)}}, prio=-2)
        self["actions"] = ActionMap(["OkCancelActions", "TvRadioActions"], {
            "cancel": self.cancel, "ok": self.channelSelected, "keyRadio": self.setModeRadio, "keyTV": self.setModeTv})
        self._typed = ""
        self._typing = eTimer()
        self._typing.callback.append(self._typingEnds)
        self.onLayoutFinish.append(self.setModeTv)

    def getCurrentSelection(self):
        """The selected eServiceReference, or what this host has for none."""
        current = self.servicelist.getCurrent()
        return eServiceReference() if current is None and not running.gui.profile.empty_selection_is_none else current

    def _setMode(self, mode):
        self.mode = mode
        self._showTitle()

    setTvMode, setRadioMode = partialmethod(_setMode, "TV"), partialmethod(_setMode, "Radio")

    def setModeTv(self):
        self.setTvMode()
        self.showFavourites()

    def setModeRadio(self):
        self.setRadioMode()
        self.showFavourites()

    def showFavourites(self):
        """The bouquets; from inside a bouquet one step up."""
        root = self._root("FAVOURITES")
        if len(self.servicePath) > 1 and self.servicePath[0] == root:
            self.pathUp()
        else:
            self._start(root)

    def showAllServices(self):
        self._start(self._root("ALL"))

    def enterPath(self, ref):
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

    def keyNumberGlobal(self, number):
        """Go to the row with this number, of one digit or more; in a list by name to the letters on the remote's key."""
        if "FROM BOUQUET" in self.servicePath[-1].getPath():
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
        return eServiceReference(getattr(eServiceCenter, "ROOT_%s_%s" % (self.mode.upper(), kind)))

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
        names = [ServiceReference(ref).getServiceName() for ref in self.servicePath[1:]]
        self.setTitle(" - ".join(["%s (%s)" % (self.maintitle, self.mode)] + [name for name in names if name]))
