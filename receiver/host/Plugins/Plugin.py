"""How a plug-in describes itself to the GUI."""


class PluginDescriptor:
    """One entry of a plug-in: where it is offered and the function that is called there."""

    (WHERE_EXTENSIONSMENU, WHERE_MAINMENU, WHERE_PLUGINMENU, WHERE_MOVIELIST, WHERE_MENU, WHERE_AUTOSTART, WHERE_WIZARD,
     WHERE_SESSIONSTART, WHERE_TELETEXT, WHERE_FILESCAN, WHERE_NETWORKSETUP, WHERE_EVENTINFO, WHERE_NETWORKCONFIG_READ,
     WHERE_AUDIOMENU, WHERE_SOFTWAREMANAGER, WHERE_CHANNEL_CONTEXT_MENU) = range(16)

    def __init__(self, name="Plugin", where=None, description="", icon=None, fnc=None, wakeupfnc=None, needsRestart=None,
                 internal=False, weight=0):
        self.name = name
        self.where = where if isinstance(where, list) else [] if where is None else [where]
        self.description = description
        self.icon = icon
        self.fnc = fnc
        self.wakeupfnc = wakeupfnc
        self.needsRestart = needsRestart
        self.internal = internal
        self.weight = weight
        self.path = None

    def __call__(self, *args, **kwargs):
        return self.fnc(*args, **kwargs) if self.fnc is not None else None

    def __eq__(self, other):
        return isinstance(other, PluginDescriptor) and self.fnc == other.fnc

    def __hash__(self):
        return hash(self.fnc)
