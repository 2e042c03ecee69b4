"""The settings list: the help text of its row, and the guard around the module's answer to a changed value."""

from __future__ import absolute_import

from Components import ConfigList
from Components.Sources.StaticText import StaticText

from . import guard


def changes():
    """The part of a screen that changes settings, with a help line."""
    return {"Components.ConfigList": {"ConfigListScreen": ConfigListScreen}}


class ConfigListScreen(ConfigList.ConfigListScreen):
    """The host's, with a source "description" for the layout: the third field of the selected row."""

    def __init__(self, list, session=None, on_change=None):
        ConfigList.ConfigListScreen.__init__(self, list, session=session, on_change=guard.guarded(on_change))
        if "description" not in self:
            self["description"] = StaticText()
            self["config"].onSelectionChanged.append(self.describeRow)
            self.onLayoutFinish.append(self.describeRow)

    def describeRow(self):
        row = self["config"].getCurrent()
        self["description"].text = row[2] if row is not None and len(row) > 2 else ""
