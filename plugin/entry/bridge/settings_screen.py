"""The settings screen on images."""

from __future__ import absolute_import


class SettingsScreen(object):
    """Shows a directory as soon as it is chosen; the module's own list is built anew only after the next change."""

    def gotEPGpath(self, res):
        super(SettingsScreen, self).gotEPGpath(res)
        if res:
            self.createSetup()


SCREENS = {"Veltro": SettingsScreen}
