"""Screens.*: the screens that the module's own derive from, those that it opens, and the session."""

from .recorder import CallbackList, Strict, recorder
from .widgets import ConfigList, Widget


class Screen(dict):
    """Screens.Screen: a dict of widgets. Its own members are the session, the title, the layout name and `onShown`."""

    def __init__(self, session):
        recorder.call("Screen.__init__", session)
        dict.__init__(self)
        self.__dict__.update(session=session, skinName=type(self).__name__, onShown=CallbackList("onShown"), _title="")

    def __getitem__(self, name):
        recorder.look('["%s"]' % name)
        return dict.__getitem__(self, name)

    def __setitem__(self, name, widget):
        recorder.call('["%s"] =' % name, widget)
        self._register(name, widget)

    def _register(self, name, widget):
        if isinstance(widget, Widget):
            widget._name = name
        dict.__setitem__(self, name, widget)

    def __setattr__(self, name, value):
        if name != "title":
            recorder.look(name + " =", value)
        dict.__setattr__(self, name, value)

    @property
    def title(self):
        recorder.look("title")
        return self._title

    @title.setter
    def title(self, text):
        recorder.call("title =", text)
        self.__dict__["_title"] = text

    def setTitle(self, text):
        recorder.call("setTitle", text)
        self.__dict__["_title"] = text

    def close(self, *result):
        """As on a box nothing is left of a closed screen: reading anything from it fails."""
        recorder.call("close", *result)
        self.__dict__.clear()
        dict.clear(self)


class ConfigListScreen:
    """Components.ConfigList.ConfigListScreen: adds a list of settings to a screen. A classic class on Python 2.7."""

    def __init__(self, list, **keywords):
        recorder.call("ConfigListScreen.__init__", list, **keywords)
        assert sorted(keywords) == ["on_change", "session"], sorted(keywords)
        with recorder.silently():
            self._register("config", ConfigList(list))

    def keyCancel(self):
        recorder.call("keyCancel")


class ServiceList(Strict):
    def setPythonConfig(self):
        recorder.call("servicelist.setPythonConfig")


class SimpleChannelSelection(Screen):
    """Screens.ChannelSelection: the channel list. `_selection` is what stands under the cursor."""

    def __init__(self, session, title):
        recorder.call("SimpleChannelSelection.__init__", session, title)
        with recorder.silently():
            Screen.__init__(self, session)
        self.__dict__.update(servicelist=ServiceList(), _selection=None, _title=title)

    def getCurrentSelection(self):
        recorder.call("getCurrentSelection")
        return self._selection

    def enterPath(self, reference):
        recorder.call("enterPath", reference)

    def setTvMode(self):
        recorder.call("setTvMode")

    def setRadioMode(self):
        recorder.call("setRadioMode")

    def showFavourites(self):
        recorder.call("showFavourites")

    def showAllServices(self):
        recorder.call("showAllServices")


class ChoiceBox(Screen):
    pass


class MessageBox(Screen):
    pass


class Session(Strict):
    """Remembers which screens were to be opened; a test opens one itself when it wants to go on there."""

    def open(self, screen, *arguments, **keywords):
        recorder.call("session.open", screen, *arguments, **keywords)

    def openWithCallback(self, callback, screen, *arguments, **keywords):
        recorder.call("session.openWithCallback", callback, screen, *arguments, **keywords)


def shown(screen):
    """What the host does each time a screen comes into view."""
    for callback in list(screen.onShown):
        callback()


def press(screen, action):
    """Let the screen's key map act as if a key had raised this action."""
    maps = [widget for widget in screen.values() if hasattr(widget, "_actions") and action in widget._actions]
    assert len(maps) == 1, "%d key maps have the action %r" % (len(maps), action)
    return maps[0]._actions[action]()
