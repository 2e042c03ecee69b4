"""The settings list: the help text of its row, the elements of rows without a value, and the guard around the module's answer
to a changed value."""

from __future__ import absolute_import

from Components import ConfigList, config
from Components.Sources.Source import Source
from Components.Sources.StaticText import StaticText

from . import guard, keys

TYPED = tuple(getattr(config, name) for name in ("ConfigText", "ConfigMacText") if hasattr(config, name))

_has_typed = False  # whether a row is a text


def changes():
    """The part of a screen that changes settings, with a help line; and one element that holds nothing, for whoever asks for a
    new one."""
    global _has_typed
    _has_typed = any(isinstance(element, TYPED) for element in keys.elements)
    nothing = config.ConfigNothing()
    return {"Components.ConfigList": {"ConfigListScreen": ConfigListScreen},
            "Components.config": {"ConfigNothing": lambda: nothing}}


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
        text = row[2] if row is not None and len(row) > 2 else ""
        if self["description"].text != text:  # many hosts have said it already
            self["description"].text = text

    def leave_out_unused(self):
        """Hosts make a window and a picture for rows of text. Where there is no such row nobody would see them."""
        unused = [name for name in ("HelpWindow", "VKeyIcon") if name in self]
        if unused and not _has_typed:
            self.unused_parts = unused
            if "HelpWindow" in unused:
                self["HelpWindow"] = NoWindow()


class NoWindow(Source):
    """What the host may ask of a window that is not there."""

    def show(self):
        pass

    hide = show

    def getPosition(self):
        return 0, 0
