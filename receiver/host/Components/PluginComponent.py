"""The plug-ins that were found, by the place where they want to be offered."""

import importlib.machinery
import importlib.util
import sys
import traceback

from receiver.places import PLUGIN_FOLDERS

PACKAGE = "Plugins.Extensions.Veltro"


class PluginComponent:
    plugins = []

    def readPluginList(self):
        """Import the plug-in and ask it for its descriptors. One that fails costs a trace, not the GUI."""
        module = importlib.util.module_from_spec(importlib.machinery.ModuleSpec(PACKAGE, None, is_package=True))
        module.__path__ = [str(folder) for folder in PLUGIN_FOLDERS]
        sys.modules[PACKAGE] = module
        try:
            self.plugins = importlib.import_module(PACKAGE + ".plugin").Plugins(path=module.__path__[0])
        except Exception:
            print("Plugin %s failed to load:\n%s" % (PACKAGE, traceback.format_exc()))

    def getPlugins(self, where):
        return [plugin for plugin in self.plugins if plugin.where == where]


plugins = PluginComponent()
