"""One run of the GUI process: what the host modules stand on, from their import to the crash or the switch-off.

A restart makes a new one and imports every host module and plug-in afresh, as a new process on a box would.
"""

import builtins
import functools
import importlib
import sys
import weakref

from receiver import running
from receiver.actions import ActionMaps, read_keymap
from receiver.data import env
from receiver.data.epg_cache import eEPGCache
from receiver.data.files import read_lines
from receiver.data.reference import eServiceReference
from receiver.data.service_center import eServiceCenter
from receiver.imitation import imitate
from receiver.places import HOST_MODULES, PLUGIN_FOLDERS
from receiver.session import Session

MOST_SERVICES = 200  # that the broadcast brings programmes of


class Gui:
    """The GUI process of a receiver, whose `guard` runs what the loop or a key calls."""

    def __init__(self, receiver):
        self.loop = receiver.loop
        self.profile = receiver.profile
        self.resolution = receiver.resolution
        self.guard = receiver.guard
        self.quit = receiver.switch_off
        self.actions = ActionMaps(read_keymap(*self.profile.keymaps))
        self.timers = weakref.WeakSet()
        self.session = None

    def start(self, show_plugin=False):
        """Import the host and the plug-in, open the main menu and tell the plug-in about the session.

        show_plugin -- also open what it offers in the menu
        """
        running.gui = self
        forget_modules()
        if str(HOST_MODULES) not in sys.path:
            sys.path.insert(0, str(HOST_MODULES))
        # gettext answers the empty text with its catalogue's header. Boxes do; whoever translates "" sees it at once.
        builtins._ = lambda text: text or "Content-Type: text/plain; charset=UTF-8\n"
        eEPGCache._instance = eServiceCenter._instance = None
        imitate(self.profile)
        settings = importlib.import_module("Components.config")
        settings.configfile.on_failure = self.message
        settings.configfile.load()
        importlib.import_module("Components.UsageConfig").InitUsageConfig(settings.config, self.profile)
        self._start_epg_cache(settings.config)
        importlib.import_module("skin").loadSkin(self.resolution + ".xml")
        plugins = importlib.import_module("Components.PluginComponent").plugins
        plugins.readPluginList()
        self.session = Session()
        self.session.open(importlib.import_module("Screens.MainMenu").MainMenu)
        where = importlib.import_module("Plugins.Plugin").PluginDescriptor
        for plugin in plugins.getPlugins(where.WHERE_SESSIONSTART):
            plugin.fnc(reason=0, session=self.session)
        if show_plugin:
            for plugin in plugins.getPlugins(where.WHERE_PLUGINMENU):
                plugin.fnc(session=self.session)

    def _start_epg_cache(self, config):
        """The events of the cache's file, then those that the broadcast brings; a client receives none."""
        def is_on(path):
            path = self.profile.keys.get(path, path)
            return path is not None and find(config, path).value
        if self.profile.forgiving:
            eEPGCache.getInstance().on_failure = self.message
        cache = importlib.import_module("enigma").eEPGCache.getInstance()
        cache.setCacheFile(config.misc.epgcache_filename.value)
        cache.load()
        if is_on("usage.epg.eit") and not is_on("misc.epg_is_client_stb"):
            forbidden = _blacklisted() if is_on("misc.epg_dvb_blacklist_mode") else ()
            eEPGCache.getInstance().receive(eServiceCenter.getInstance().first(MOST_SERVICES), forbidden)

    def save(self):
        """Write the settings file, if that changes anything: looking around leaves a folder as it is. Images save the EPG."""
        configfile = importlib.import_module("Components.config").configfile
        if configfile.isChanged():
            configfile.save()
        if self.profile.saves_at_end:
            importlib.import_module("enigma").eEPGCache.getInstance().save()

    def message(self, text):
        """Show a message, as soon as a screen is there to be shown above."""
        message_box = importlib.import_module("Screens.MessageBox").MessageBox
        if self.session is None or not self.session.in_exec:
            importlib.import_module("Tools.Notifications").AddPopup(text, message_box.TYPE_ERROR, -1)
        elif getattr(self.session.current_dialog, "message", None) != text:  # once is enough
            self.session.open(message_box, text, message_box.TYPE_ERROR).message = text

    def stop(self):
        """End the process: no timer fires any more."""
        for timer in list(self.timers):
            timer.stop()
        self.session = None


def _blacklisted():
    """Compare forms of the services whose EPG must not be updated while the blacklist is on."""
    start = "#SERVICE "
    try:
        lines = read_lines(env.ETC + "/blacklist_dvb_epg")
    except OSError:
        return ()
    return {eServiceReference.read(line[len(start):].strip()).toCompareString() for line in lines if line.startswith(start)}


def find(config, path):
    """The configuration element with a path such as "usage.epg.eit"."""
    return functools.reduce(getattr, path.split("."), config)


def forget_modules():
    """Take the host modules, the plug-ins and the compiled module out of `sys.modules`."""
    folders = tuple(str(folder) for folder in (HOST_MODULES, *PLUGIN_FOLDERS))
    for name, module in list(sys.modules.items()):
        places = [getattr(module, "__file__", None) or "", *map(str, getattr(module, "__path__", ()))]
        if module is None or any(place.startswith(folders) for place in places):  # None: what an image did not have
            del sys.modules[name]
