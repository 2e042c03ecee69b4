"""What boxes implement in C++ and show to Python as `enigma`."""

from types import SimpleNamespace

from receiver import running
from receiver.data.env import eEnv  # noqa: F401 (offered from here, as the next ones)
from receiver.data.epg_cache import eEPGCache  # noqa: F401
from receiver.data.reference import eServiceReference  # noqa: F401
from receiver.data.service_center import eServiceCenter  # noqa: F401
from receiver.layout import RESOLUTIONS
from receiver.listbox import eListbox
from receiver.loop import eTimer  # noqa: F401

eListboxPythonMultiContent = eListbox  # here the rows of a list are the widget's own


class eActionMap:
    @staticmethod
    def getInstance():
        return running.gui.actions


def getPrevAsciiCode():
    """The code of the character that was typed last."""
    return ord(running.gui.actions.typed)


def getDesktop(number):
    """The TV's desktop, which is number 0: it has a size in pixels."""
    width, height = RESOLUTIONS[running.gui.resolution]
    size = SimpleNamespace(width=lambda: width, height=lambda: height)
    return SimpleNamespace(size=lambda: size)


def quitMainloop(code):
    """Switch the receiver off, when the handler that asks for it has returned."""
    running.gui.loop.call_soon(running.gui.quit)
