"""What the host's plug-in loader finds: the start of the background timer and the ways to the settings screen.

The compiled module and all that prepares it are imported inside the functions: a module that does not load must not cost
more than its menu entry.
"""

from __future__ import absolute_import, print_function

import os
import traceback

from Components.config import configfile
from Plugins.Plugin import PluginDescriptor
from Screens.MessageBox import MessageBox

from . import menu
from .texts import translate as _

plugin_path = os.path.dirname(os.path.abspath(__file__))


def session_start(reason, session=None, **kwargs):
    """The GUI runs: see to the EPG file's path, record the session and start the timer that saves or loads the EPG."""
    if reason == 0 and session is not None:
        _attempt("the EPG file's path was not looked after", prepare)
        _attempt("the EPG timer was not started", start_timer, session)


def _attempt(failure, function, *arguments):
    try:
        function(*arguments)
    except Exception:
        print("[Veltro] %s:\n%s" % (failure, traceback.format_exc()))


def prepare():
    """See to the EPG file before the host reads it."""
    from . import bridge
    bridge.start()


def start_timer(session):
    """Start the timer that saves or loads the EPG, if anything is to be done before the user opens a screen. Otherwise
    the module is not even loaded: most boxes start without it."""
    from . import bridge
    if bridge.acts_by_itself():
        timer = load().epg_timer
        timer.setSession(session)
        timer.init_timer()


def main(session, **kwargs):
    """Open the settings screen, or say why that can't be done."""
    try:
        load()
    except Exception as error:
        print("[Veltro] the module does not load:\n" + traceback.format_exc())
        reason = traceback.format_exception_only(type(error), error)[-1].strip()
        session.open(MessageBox, _("Veltro can't be loaded: %s") % reason, MessageBox.TYPE_ERROR)
    else:
        open_settings(session)


def load():
    """The compiled module, made ready for this host."""
    from . import loading
    return loading.load()


def open_settings(session):
    """Open the settings screen; when it closes, make its changes last and take effect."""
    from .bridge import guard
    module = load()
    module.epg_timer.setSession(session)  # it may be loaded just now

    def opened():
        before = timing(module)

        def closed(*result):
            configfile.save()  # the screen has saved its settings one by one, which a crash would lose
            if timing(module) != before:
                module.epg_timer.init_timer()  # a period of 0 had ended the timer's cycle

        guard.session_of(session).openWithCallback(closed, module.Veltro, plugin_path)

    guard.guarded(opened, guard.show_in(session))()


def timing(module):
    """What the timer depends on."""
    misc = module.config.misc
    return int(misc.epg_data_timer.value), bool(misc.epg_is_client_stb.value)


def in_menu(menuid):
    """What one of the host's menus gets: the settings screen, where the image keeps its EPG settings."""
    if menuid != menu.of_epg_settings():
        return []
    return [(_("EPG settings (Veltro)"), main, "veltro", 50)]


def Plugins(path, **kwargs):
    """The plug-in's entries, asked for by the host when it starts."""
    return [
        PluginDescriptor(name="Veltro", where=PluginDescriptor.WHERE_SESSIONSTART, fnc=session_start),
        PluginDescriptor(name="Veltro", where=PluginDescriptor.WHERE_MENU, fnc=in_menu),
        PluginDescriptor(name="Veltro", description=_("EPG settings"), where=PluginDescriptor.WHERE_PLUGINMENU,
                         icon="plugin.png", fnc=main),
    ]
