"""What boxes implement in C++ and show to Python as `enigma`."""

from receiver import running
from receiver.data.env import eEnv
from receiver.data.epg_cache import eEPGCache
from receiver.data.reference import eServiceReference
from receiver.data.service_center import eServiceCenter
from receiver.listbox import ConfigContent as eListboxPythonConfigContent
from receiver.listbox import FunctionContent as eListboxPythonMultiContent
from receiver.listbox import StringContent as eListboxPythonStringContent
from receiver.layout import RESOLUTIONS
from receiver.listbox import eListbox
from receiver.loop import eTimer


class eActionMap:
    @staticmethod
    def getInstance():
        return running.gui.actions


def getPrevAsciiCode():
    """The code of the character that was typed last."""
    return ord(running.gui.actions.typed)


class eLabel:
    """The widget of a text."""

    def __init__(self):
        self.text = ""


class ePixmap:
    """The widget of a picture."""


class eSize:
    """A size in pixels."""

    def __init__(self, width, height):
        self._width, self._height = width, height

    def width(self):
        return self._width

    def height(self):
        return self._height


class eDesktop:
    """The picture that the screens stand on."""

    def size(self):
        return eSize(*RESOLUTIONS[running.gui.resolution])


def getDesktop(number):
    """The TV's desktop, which is number 0."""
    return eDesktop()


def quitMainloop(code):
    """Switch the receiver off (code 1) or start the GUI again (code 3)."""
    running.gui.quit(code)
