"""The settings screen among the image's own: its words, one place for help and results, and the selected row on the front
display."""

from __future__ import absolute_import

import traceback

from ..texts import N_

# What the module's settings screen says, and what is said here of the same: where one is, and what a key does that asks
# before it drops changes.
WORDS = {"ORSA Veltro": N_("EPG settings"), "Exit": N_("Cancel")}


class SettingsLook(object):
    """What the image's own setup screen does with its help line and the front display."""

    def epgBackupfinished(self, statustext):
        """A result stands where the help does, and makes room for it when it goes."""
        super(SettingsLook, self).epgBackupfinished(statustext)
        if "description" in self:
            row = self["config"].getCurrent()
            self["description"].text = row[2] if not statustext and row and len(row) > 2 else ""

    def changedEntry(self):
        super(SettingsLook, self).changedEntry()
        for tell in getattr(self, "onChangedEntry", ()):  # the front display
            tell()

    def createSummary(self):
        try:
            from Screens.Setup import SetupSummary
        except ImportError:
            return super(SettingsLook, self).createSummary()
        return SetupSummary


class EditorLook(object):
    """Has its title before it is shown, by when the layout can make room for it."""

    def __init__(self, *arguments, **keywords):
        super(EditorLook, self).__init__(*arguments, **keywords)
        self.setWindowTitle()


class PickerLook(object):
    """The event of the selected service, as in the image's channel list."""

    def __init__(self, *arguments, **keywords):
        super(PickerLook, self).__init__(*arguments, **keywords)
        self.skinName = type(self).__name__  # hosts may ask for their own list's layout, which lacks our labels
        if "ServiceEvent" not in self and hasattr(self.servicelist, "connectSelChanged"):
            self._put_in_event()

    def _put_in_event(self):
        try:
            from Components.Sources.Event import Event
            from Components.Sources.ServiceEvent import ServiceEvent
        except ImportError:
            return
        self["Service"] = self["ServiceEvent"] = ServiceEvent()
        self["Event"] = Event()
        self.servicelist.connectSelChanged(self.showEvent)
        self.onShown.append(self.showEvent)

    def showEvent(self):
        if not getattr(self, "execing", True):
            return  # a list that opens selects three times; once it is shown it comes here again
        try:
            self["ServiceEvent"].newService(self.getCurrentSelection())
            self["Event"].newEvent(self["ServiceEvent"].event)
        except Exception:  # nothing selected, or nothing left of the screen
            print("[Veltro] no event is shown:\n" + traceback.format_exc())


SCREENS = {"Veltro": SettingsLook, "Edit_DVB_EPG_Blacklist": EditorLook,
           "DVB_EPG_blacklist_ChannelSelection": PickerLook}
