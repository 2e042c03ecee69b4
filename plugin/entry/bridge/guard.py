"""Errors. On a box one that leaves a key handler or a timer callback ends the GUI; here it costs a message.

What the host calls of the module goes through `guarded`: key handlers, timer and screen callbacks, results of closed
screens. The trace goes to the log, the user reads what could not be done, and the GUI goes on.
"""

from __future__ import absolute_import, print_function

import sys
import traceback
from functools import partial

import enigma
from Components import ActionMap as action_map
from Screens import Screen as screen

from ..texts import translate as _
from . import messages
from .readable import readable

on = False  # a host that was made for the module deals with errors itself


class Refused(Exception):
    """What the user asked for can't be done; the text says so in his words."""


def changes():
    """The host's classes through which it gets hold of the module's operations, with the guard in between."""
    global on
    on = True
    return {"Components.ActionMap": {"ActionMap": ActionMap}, "Screens.Screen": {"Screen": Screen},
            "enigma": {"eTimer": Timer}}


def guarded(function, show=None):
    """The function, or while the guard is on one that reports its errors and returns nothing then.

    show -- takes the message for the user; without it, that is the session of the screen whose method the function is
    """
    if not on or function is None:
        return function

    def call(*arguments):
        try:
            return function(*arguments)
        except Exception as error:
            _report(error, show or _shown_by(function))
    return call


def _shown_by(function):
    return show_in(getattr(getattr(function, "__self__", None), "session", None))


def watch(opened):
    """Guard what waits for a screen to be shown."""
    if on:
        opened.onShown = Callbacks(opened.onShown)


def show_in(session):
    """Shows an error on top of what the session shows."""
    return lambda text: messages.error(session, text)


def _report(error, show):
    try:
        names = [entry[2] for entry in traceback.extract_tb(sys.exc_info()[2])]
        failed = next((name for name in names if name.startswith("Veltro.")), names[-1])
        lines = ["[Veltro] %s failed:" % failed] + traceback.format_exc().split("\n")
        print("\n".join(map(readable, lines)))
        show(str(error) if isinstance(error, Refused) else _in_words(error, names))
    except Exception:  # the report must not do the harm that it reports
        print(traceback.format_exc())


def _in_words(error, names):
    """What could not be done: that of the innermost operation which has words. And why, if the system says it."""
    words = _words()
    what = next((words[name] for name in reversed(names) if name in words), _("That did not work."))
    return messages.with_reason(what, error)


def _words():
    return {
        "closed": _("The settings could not be saved."),
        "opened": _("The EPG settings can't be shown."),
        "Veltro.Veltro.__init__": _("The EPG settings can't be shown."),
        "Veltro.Veltro.changedEntry": _("The EPG settings can't be shown."),
        "Veltro.Veltro.createSetup": _("The EPG settings can't be shown."),
        "Veltro.Veltro.keySave": _("The settings could not be saved."),
        "Veltro.Veltro.gotEPGpath": _("The directory could not be set."),
        "Veltro.doEPGAction": _("The EPG data could not be saved, loaded or cleared."),
        "Veltro.EPGTimer.do_epg_action": _("The EPG data could not be saved or loaded in the background."),
        "Veltro.DirChoose.__init__": _("The directories can't be shown."),
        "Veltro.Edit_DVB_EPG_Blacklist.loadFile": _("The blacklist can't be read."),
        "Veltro.Edit_DVB_EPG_Blacklist.saveFile": _("The blacklist could not be saved. The file is as it was."),
        "Veltro.Edit_DVB_EPG_Blacklist.finishedChannelSelection": _("The services could not be added."),
        "Veltro.DVB_EPG_blacklist_ChannelSelection.__init__": _("The channel list can't be shown."),
        "Veltro.DVB_EPG_blacklist_ChannelSelection.doNothing": _("The bouquet can't be read."),
    }


class ActionMap(action_map.ActionMap):
    """An action map with guarded handlers, which is made without the host's look at each action of the table."""

    def __init__(self, contexts=None, actions=None, prio=0):
        action_map.ActionMap.__init__(self, contexts, {}, prio)
        self.actions = actions or {}

    def action(self, context, action):
        """Called by the host; 0 leaves the key to the next map."""
        show = _shown_by(self.actions.get(action))
        result = guarded(partial(action_map.ActionMap.action, self), show)(context, action)
        return 1 if result is None else result


class Callbacks(list):
    """A list of callbacks that guards what is appended."""

    def append(self, callback):
        list.append(self, guarded(callback))


class Timer(object):
    """The host's timer with guarded callbacks."""

    def __init__(self):
        self._timer = enigma.eTimer()
        self.callback = _TimerCallbacks(self._timer.callback)

    def start(self, msec, single=False):
        self._timer.start(msec, single)

    def __getattr__(self, name):
        return getattr(self._timer, name)


class _TimerCallbacks(object):
    """The list belongs to the host's timer, which knows no other."""

    def __init__(self, callbacks):
        self._callbacks = callbacks

    def append(self, callback):
        self._callbacks.append(guarded(callback, messages.later))


class Screen(screen.Screen):
    """A screen with guarded callbacks: those of its own life and those of the screens that it opens."""

    def __init__(self, *arguments, **keywords):
        screen.Screen.__init__(self, *arguments, **keywords)
        watch(self)

    @property
    def session(self):
        if "session" not in self.__dict__:  # nothing is left of a closed screen
            raise AttributeError("session")
        return self.__dict__["session"]

    @session.setter
    def session(self, session):
        self.__dict__["session"] = session_of(session)

    @session.deleter
    def session(self):
        self.__dict__.pop("session", None)  # a host that closes a screen deletes it


def session_of(host_session):
    """The session as a screen or the entry shall use it."""
    return host_session if not on or isinstance(host_session, Session) else Session(host_session)


class Session(object):
    """The host's session. Screens that it opens hand their result to a guarded callback, and one that can't be built
    leaves the session as it was."""

    def __init__(self, session):
        self.__dict__["_session"] = session

    def __getattr__(self, name):
        return getattr(self._session, name)

    def __setattr__(self, name, value):
        setattr(self._session, name, value)

    def open(self, *arguments, **keywords):
        return self._try(self._session.open, *arguments, **keywords)

    def openWithCallback(self, callback, *arguments, **keywords):
        callback = guarded(callback, show_in(self._session))
        return self._try(self._session.openWithCallback, callback, *arguments, **keywords)

    def _try(self, opener, *arguments, **keywords):
        waiting = getattr(self._session, "dialog_stack", ())
        depth = len(waiting)
        try:
            return opener(*arguments, **keywords)
        except Exception:
            # The screen below was stopped to make room. Unless it runs again, no key would reach any screen.
            if len(waiting) > depth:
                self._session.popCurrent()
            raise
