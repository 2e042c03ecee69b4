"""The screens' layouts, for skins that do not bring their own.

They become the class attribute `skin`, which every host reads only when no loaded skin has the screen. Loading them as
a skin file would not do: on some hosts the first definition of a screen counts, on others the last.
"""

from __future__ import absolute_import

import os
import traceback
import xml.etree.ElementTree as ElementTree

from enigma import getDesktop

CLASSES = {"KelmarFile": "DirChoose"}  # the chooser's layout has another name than its class


def install(module):
    """Give each screen of the compiled module its layout for this desktop. A failure costs a log line."""
    try:
        for screen in ElementTree.parse(_path()).getroot().findall("screen"):
            name = screen.get("name")
            getattr(module, CLASSES.get(name, name)).skin = _text(screen)
    except Exception:
        print("[Veltro] no layouts:\n" + traceback.format_exc())


def _path():
    name = "fhd.xml" if getDesktop(0).size().width() >= 1920 else "hd.xml"
    return os.path.join(os.path.dirname(os.path.abspath(__file__)), "skins", name)


def _text(element):
    text = ElementTree.tostring(element)
    return text if isinstance(text, str) else text.decode("ascii")  # other characters are escaped
