"""What the host's plug-in loader finds: the entry in the plug-in menu and the start of the background timer."""

from __future__ import absolute_import

import os
import sys

from Components.config import configfile
from Plugins.Plugin import PluginDescriptor
from skin import loadSkin

plugin_path = os.path.dirname(os.path.abspath(__file__))


def load_module():
    """Import the compiled module, which lies in one of this package's folders."""
    folders = list(sys.modules[__name__.rpartition(".")[0]].__path__)
    sys.path[:0] = folders
    try:
        import Veltro
    finally:
        for folder in folders:
            sys.path.remove(folder)
    return Veltro


def session_start(reason, session=None, **kwargs):
    """Start the timer that saves or loads the EPG."""
    if reason == 0 and session is not None:
        timer = load_module().epg_timer
        timer.setSession(session)
        timer.init_timer()


def main(session, **kwargs):
    """Open the settings screen."""
    session.openWithCallback(closed, load_module().Veltro, plugin_path)


def closed(*result):
    """The screen saves its settings one by one; only this puts them into the settings file."""
    configfile.save()


def Plugins(path, **kwargs):
    """The plug-in's entries, asked for by the host when it starts."""
    loadSkin(os.path.join(plugin_path, "skins", "hd.xml"))
    return [
        PluginDescriptor(name="Veltro", where=[PluginDescriptor.WHERE_SESSIONSTART], fnc=session_start),
        PluginDescriptor(name="Veltro", description=_("EPG settings"), where=[PluginDescriptor.WHERE_PLUGINMENU], fnc=main),
    ]
