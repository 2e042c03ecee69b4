"""The plug-ins that were found, by the place where they want to be offered."""

import importlib.machinery
import importlib.util
import sys
import traceback

from Plugins.Plugin import PluginDescriptor
from receiver.places import PLUGIN_FOLDERS


class PluginComponent:
    def __init__(self):
        self.plugins = []

    def readPluginList(self):
        """Import each plug-in and ask it for its descriptors. A plug-in that fails costs a trace, not the GUI."""
        self.plugins = []
        for name, folders in (("Veltro", PLUGIN_FOLDERS),):
            try:
                self.plugins += self._load("Plugins.Extensions." + name, [str(folder) for folder in folders])
            except Exception:
                print("Plugin %s failed to load:" % name)
                print(traceback.format_exc())
        self.plugins.sort(key=lambda plugin: plugin.weight)

    def _load(self, package, folders):
        module = importlib.util.module_from_spec(importlib.machinery.ModuleSpec(package, None, is_package=True))
        module.__path__ = folders
        sys.modules[package] = module
        found = importlib.import_module(package + ".plugin").Plugins(path=folders[0])
        found = [plugin for plugin in (found if isinstance(found, list) else [found]) if plugin]
        for plugin in found:
            plugin.path = folders[0]
        return found

    def getPlugins(self, where):
        wanted = set(where if isinstance(where, list) else [where])
        return [plugin for plugin in self.plugins if wanted.intersection(plugin.where)]

    def sessionStart(self, session):
        """Tell the plug-ins that want to know that there is a session now."""
        for plugin in self.getPlugins(PluginDescriptor.WHERE_SESSIONSTART):
            try:
                plugin(reason=0, session=session)
            except Exception:
                print(traceback.format_exc())


plugins = PluginComponent()
