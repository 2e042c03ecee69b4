"""Messages to the user. None holds a text that a host can't show."""

from __future__ import absolute_import

from Screens.MessageBox import MessageBox
from Tools import Notifications

from .readable import readable

SECONDS = 4  # that a notice stays


def error(session, text):
    """Show an error on top of what the session shows; it stays until the user has read it."""
    _open(session, text, MessageBox.TYPE_ERROR)


def notice(session, text):
    """Show a short notice that goes by itself."""
    _open(session, text, MessageBox.TYPE_INFO, timeout=SECONDS)


def later(text):
    """Show an error as soon as the host finds it convenient: the user may be anywhere."""
    Notifications.AddPopup(_readable(text), MessageBox.TYPE_ERROR, -1)


def _open(session, text, *arguments, **keywords):
    try:
        session.open(MessageBox, _readable(text), *arguments, **keywords)
    except (AttributeError, RuntimeError):  # no session, or the screen on top is just closing
        later(text)


def with_reason(what, error):
    """What could not be done, and why, if the system says it."""
    return "\n".join([what] + ([readable(error.strerror)] if getattr(error, "strerror", None) else []))


def _readable(text):
    return "\n".join(map(readable, text.split("\n")))
