"""The skin: layouts of the screens by name."""

import xml.etree.ElementTree as ElementTree

from receiver import running
from receiver.layout import Skin
from Tools.Directories import SCOPE_SKIN, resolveFilename

_skin = Skin(running.gui.resolution)


def loadSkin(filename, scope=SCOPE_SKIN, desktop=None, screenID=None):
    """Take in a skin file; its screens replace those of the same name. Returns whether it could be read."""
    try:
        _skin.load(resolveFilename(scope, filename))
    except (OSError, ElementTree.ParseError) as error:
        print("[Skin] %s: %s" % (filename, error))
        return False
    return True


def findLayout(screen):
    """The layout for a screen: a loaded one by its names, else its own, else an empty one."""
    names = screen.skinName if isinstance(screen.skinName, list) else [screen.skinName]
    for name in names:
        if name in _skin.screens:
            return _skin.layout(_skin.screens[name])
    try:
        xml = ElementTree.fromstring(screen.skin)
    except (AttributeError, ElementTree.ParseError):
        print("[Skin] No skin to read for screen %s." % "', '".join(names))
        xml = ElementTree.Element("screen")
    xml.set("name", xml.get("name") or names[0])
    return _skin.layout(xml)
