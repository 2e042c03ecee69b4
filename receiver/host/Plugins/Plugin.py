"""How a plug-in describes itself to the GUI."""


class PluginDescriptor:
    """One entry of a plug-in: where it is offered and the function that is called there."""

    WHERE_PLUGINMENU, WHERE_MENU, WHERE_SESSIONSTART = 2, 4, 7

    def __init__(self, name="Plugin", where=None, description="", icon=None, fnc=None):
        self.name, self.where, self.description, self.icon, self.fnc = name, where, description, icon, fnc
