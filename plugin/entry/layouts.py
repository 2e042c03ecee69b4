"""The screens' layouts, for skins that do not bring their own: made from what the skin has for the host's own screens.

They stand in the class attributes `parsedSkin` and `skin`, which every host reads only when no loaded skin has the screen, and
are made when one is read: by then the skin is there, and after it was changed the next screen gets another layout.
"""

from __future__ import absolute_import

import os
import traceback

from enigma import getDesktop

try:
    import xml.etree.cElementTree as ElementTree  # Python 2.7, where hosts use it too
except ImportError:
    import xml.etree.ElementTree as ElementTree

from . import skin_screens
from .derived import Need, derived, offers
from .flat_layout import Unfit, as_text

PICTURES = (".png", ".svg", ".jpg")
BASE = (1280, 720)  # the desktop that our own layouts are written for
LINES = (("description", "description"), ("status", "description"))

# By class: the name of our own layout; the screens of a skin to make one from, the likeliest first; what it must have.
SCREENS = {
    "Veltro": ("Veltro", ("Setup",), Need(("config", "config"), LINES, ("red", "green"), None, "")),
    "Edit_DVB_EPG_Blacklist": ("Edit_DVB_EPG_Blacklist", ("Setup",), Need(
        ("config", "ServiceList"), (), ("red", "green", "yellow", "blue"), None, "")),
    "DVB_EPG_blacklist_ChannelSelection": (
        "DVB_EPG_blacklist_ChannelSelection", ("ChannelSelection", "SimpleChannelSelection"),
        Need(("list", "list"), (), ("red", "green", "yellow", "blue"), None, "service")),
    "DirChoose": ("KelmarFile", ("Setup",), Need(
        ("config", "filelist"), (("driverfile", "description"),), ("red", "green"), {}, "")),
}
FILE_LIST = ("LocationBox", "filelist")  # whose list of files has the skin's look


def install(module):
    """Give each screen of the compiled module its layout. A failure costs a log line."""
    try:
        for name, (own, sources, need) in SCREENS.items():
            screen, layout = getattr(module, name), Layout(own, sources, need)
            screen.parsedSkin, screen.skin = Form(layout, 0), Form(layout, 1)
    except Exception:
        print("[Veltro] no layouts:\n" + traceback.format_exc())


class Form(object):
    """The attributes `parsedSkin` and `skin`: a layout as an element, which hosts take as it is, and as a text, which they
    would read anew at each opening."""

    def __init__(self, layout, index):
        self._layout, self._index = layout, index

    def __get__(self, screen, owner=None):
        return self._layout.of(screen)[self._index]


class Layout(object):
    """For a class our own layout, for a screen the one that its skin makes possible: (element, text)."""

    def __init__(self, own, sources, need):
        self._own, self._sources, self._need = own, sources, need
        self._made_from = self._made = self._made_own = None
        self._names = ()  # of the skin's screens that the layout was made from

    def of(self, screen):
        return (self._from_skin(screen) if screen is not None else None) or self._ours(_desktop())

    def _ours(self, desktop):
        if self._made_own is None or self._made_own[0] != desktop:
            self._made_own = desktop, _forms(own_layout(self._own, desktop))
        return self._made_own[1]

    def _from_skin(self, screen):
        try:
            given = skin_screens.signature(screen)
            if (skin_screens.state(self._names), given) != self._made_from:  # a skin that was read anew has other elements
                screens = skin_screens.loaded()
                self._names = tuple(screens)
                made = self._make(screens, skin_screens.parts(screen), _desktop(), skin_screens.texts(screen))
                self._made, self._made_from = made and _forms(made), (skin_screens.state(self._names), given)
            return self._made
        except Exception:
            print("[Veltro] no layout from the skin for %s:\n%s" % (self._own, traceback.format_exc()))
        return None

    def _make(self, screens, parts, desktop, texts):
        """The text of the layout; None if nothing in the skin makes one."""
        if not screens:
            return None
        need = self._need
        if need.looks is not None:
            need = need._replace(looks=skin_screens.looks_of(screens, *FILE_LIST))
        for name in self._candidates(screens, parts, desktop, need):
            try:
                made = derived(name, screens, parts, desktop, need, texts)
                self._names = skin_screens.reach(screens, name) + [FILE_LIST[0]]
                return made
            except Unfit as error:
                print("[Veltro] the skin's %s makes no layout for %s: %s" % (name, self._own, error))
        return None

    def _candidates(self, screens, parts, desktop, need):
        """The skin's screens that could be made into ours: those by name, then whatever has the most of what is needed."""
        for name in self._sources:
            if name in screens:
                yield name
        likes = [name for name in screens if name not in self._sources and skin_screens.has(screens, name, need.list[0], need.mark)]
        scores = sorted((-offers(name, screens, parts, desktop, need), name) for name in likes)
        for score, name in scores:
            if -score > len(need.keys):  # a list alone is no screen of this kind
                yield name


def _forms(text):
    element = ElementTree.fromstring(text)
    for each in element.iter():
        for key, value in each.attrib.items():
            if value.endswith(PICTURES):
                each.set(key, skin_screens.found(key, value))
            elif key == "font" and each.get("render", "Label") == "Label":
                each.set(key, skin_screens.font(value))
    return element, as_text(element)


def _desktop():
    try:
        size = getDesktop(0).size()
        return size.width(), size.height()
    except Exception:
        print("[Veltro] the size of the desktop is not known:\n" + traceback.format_exc())
        return BASE


def own_layout(name, desktop):
    """Our own layout, scaled to the desktop."""
    path = os.path.join(os.path.dirname(os.path.abspath(__file__)), "skins", "own.xml")
    for screen in ElementTree.parse(path).getroot().findall("screen"):
        if screen.get("name") == name:
            _scale(screen, desktop[0] / float(BASE[0]), desktop[1] / float(BASE[1]))
            return as_text(screen)
    raise KeyError(name)


def _scale(screen, across, down):
    """Multiply every place and size. A list keeps its number of rows, whole ones."""
    for element in screen.iter():
        rows = _height(element) // int(element.get("itemHeight")) if element.get("itemHeight") else 0
        for key, value in list(element.attrib.items()):
            if key in ("position", "size"):
                x, y = value.split(",")
                element.set(key, "%d,%d" % (round(int(x) * across), round(int(y) * down)))
            elif key.endswith("temHeight"):
                element.set(key, "%d" % (int(value) * down))
            elif key.lower().endswith("font"):
                name, size = value.split(";")
                element.set(key, "%s;%d" % (name, int(size) * down))
        if rows:
            width = element.get("size").split(",")[0]
            element.set("size", "%s,%d" % (width, rows * int(element.get("itemHeight"))))


def _height(element):
    return int(element.get("size").split(",")[1])
