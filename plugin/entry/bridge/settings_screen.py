"""The settings screen on images."""

from __future__ import absolute_import

from ..texts import keep_language
from . import cache_file, epg_cache


class SettingsScreen(object):
    """Shows a directory as soon as it is chosen and what an action on the EPG cache has really done, and takes back every
    change."""

    def __init__(self, *arguments, **keywords):
        super(SettingsScreen, self).__init__(*arguments, **keywords)
        self.leave_out_unused()

    def createSetup(self):
        keep_language(super(SettingsScreen, self).createSetup)

    def gotEPGpath(self, res):
        super(SettingsScreen, self).gotEPGpath(res)
        if res:
            self.createSetup()  # the module's own list is built anew only after the next change

    def keyClose(self):
        # A setting can't go back while another one has taken its old value: each is free again in one of both orders.
        for row in reversed(self.list):
            if row[3] == "to_save":
                row[1].cancel()
        super(SettingsScreen, self).keyClose()

    def keyOk(self):
        epg_cache.take_problem()  # one of the timer's is not this one's
        super(SettingsScreen, self).keyOk()

    def epgBackupfinished(self, statustext):
        super(SettingsScreen, self).epgBackupfinished(self._truth(statustext) if statustext else statustext)

    @staticmethod
    def _truth(statustext):
        """The host reports no failure, so the module says "finished" of everything, and it knows one name of the file."""
        named = statustext.replace(cache_file.shown(), cache_file.path())
        return epg_cache.take_problem() or named


SCREENS = {"Veltro": SettingsScreen}
