"""Errors. On a box one that leaves a key handler or a timer callback ends the GUI; here it costs a message.

What the host calls of the module goes through `guarded`: key handlers, timer and screen callbacks, results of closed
screens. The trace goes to the log, the user reads which operation failed, and the GUI goes on.
"""

from __future__ import absolute_import, print_function

import sys
import traceback

import enigma
from Components import ActionMap as action_map
from Screens import Screen as screen
from Screens.MessageBox import MessageBox
from Tools import Notifications

from ..texts import translate as _

on = False  # a host that was made for the module deals with errors itself


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
            _report(error, function, show or show_in(getattr(getattr(function, "__self__", None), "session", None)))
    return call


def watch(opened):
    """Guard what waits for a screen to be shown."""
    if on:
        opened.onShown = Callbacks(opened.onShown)


def show_in(session):
    """Shows a message on top of what the session shows."""
    def show(text):
        try:
            session.open(MessageBox, text, MessageBox.TYPE_ERROR)
        except (AttributeError, RuntimeError):  # no session, or the screen on top is just closing
            show_later(text)
    return show


def show_later(text):
    """Shows a message as soon as the host finds it convenient: the user may be anywhere."""
    Notifications.AddPopup(text, MessageBox.TYPE_ERROR, -1)


def reason(error):
    """The error in one line."""
    return traceback.format_exception_only(type(error), error)[-1].strip()


def _report(error, function, show):
    try:
        operation = _operation(function)
        print("[Veltro] %s failed:\n%s" % (operation, traceback.format_exc()))
        show(_("%s failed: %s") % (operation, reason(error)))
    except Exception:  # the report must not do the harm that it reports
        print(traceback.format_exc())


def _operation(function):
    """What the host asked for: the first of the module's operations in the trace."""
    names = [entry[2] for entry in traceback.extract_tb(sys.exc_info()[2]) if entry[2].startswith("Veltro.")]
    return names[0] if names else function.__name__


class ActionMap(action_map.ActionMap):
    """An action map with guarded handlers."""

    def __init__(self, contexts=None, actions=None, prio=0):
        actions = dict((name, guarded(handler)) for name, handler in (actions or {}).items())
        action_map.ActionMap.__init__(self, contexts, actions, prio)


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
        self._callbacks.append(guarded(callback, show_later))


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
