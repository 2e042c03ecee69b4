"""Screens, widgets and the platform's objects of a box, cut down to what the entry and the module touch."""


class Component(object):
    def __init__(self, *arguments, **keywords):
        self.text = arguments[0] if arguments else ""

    def setText(self, text):
        self.text = text


class Source(object):
    """What a skin's renderers show."""

    def __init__(self, text=""):
        self.text = text


class StaticText(Source):
    pass


class ActionMap:  # a classic class on 2.7, as on the boxes
    def __init__(self, contexts=None, actions=None, prio=0):
        self.contexts, self.actions, self.prio = contexts or [], actions, prio
        list(self.actions.keys())  # old hosts do without an "or {}"

    def action(self, context, action):
        result = self.actions[action]() if action in self.actions else 0
        return 1 if result is None else result


class ListContent(object):
    def __init__(self):
        self.list, self.cursor = [], 0

    def setList(self, list):
        self.list = list

    def getCurrentSelection(self):
        return self.list[self.cursor] if self.list else None


class ConfigList(Component):
    def __init__(self, list, session=None):
        self.l = ListContent()
        self.onSelectionChanged = []
        self.list = list

    def getCurrent(self):
        return self.l.getCurrentSelection()

    def move_to(self, index):
        self.l.cursor = index
        for function in self.onSelectionChanged:
            function()


class ConfigListScreen:
    def __init__(self, list, session=None, on_change=None):
        self["config"] = ConfigList(list, session)
        self.on_change = on_change

    def keyCancel(self):
        self.close()


class Screen(dict):
    def __init__(self, session, parent=None):
        dict.__init__(self)
        self.session = session
        self.onShown, self.onLayoutFinish = [], []
        self.skinName = type(self).__name__
        self.title = ""

    def setTitle(self, title):
        self.title = title

    def close(self, *result):
        session = self.session
        del self.session  # as every host does
        self.__dict__.clear()
        self.clear()
        session.close(self, *result)


class Reference(object):
    """eServiceReference"""

    isMarker, isDirectory = 64, 1

    def __init__(self, text="", flags=0):
        self.text, self.flags = text, flags

    def valid(self):
        return bool(self.text)

    def toString(self):
        return self.text


def named_services(names):
    """ServiceReference over a database of names. Like the real one it dies of a text that is no UTF-8."""
    class ServiceReference(object):
        def __init__(self, ref):
            self.ref = ref if isinstance(ref, Reference) else Reference(ref)
            if str is not bytes:
                self.ref.text.encode("utf-8")

        def getServiceName(self):
            return names.get(self.ref.text, "")
    return ServiceReference


class ServiceList(object):
    def __init__(self):
        self.selected = Reference()


class ChannelSelection(Screen):
    """SimpleChannelSelection with its own keys, which come early."""

    keys = ActionMap(["ChannelSelectBaseActions"], {}, -2)

    def __init__(self, session, title):
        Screen.__init__(self, session)
        self.servicelist = self["list"] = self.new_list()
        self["ChannelSelectBaseActions"] = ActionMap(self.keys.contexts, self.keys.actions, self.keys.prio)
        self["actions"] = ActionMap(["OkCancelActions"], {}, 0)
        self.calls = []

    new_list = ServiceList

    def getCurrentSelection(self):
        return self.servicelist.selected

    def enterPath(self, ref):
        self.calls.append(("enterPath", ref, self.getCurrentSelection()))

    def setTvMode(self):
        self.calls.append("setTvMode")

    def showFavourites(self):
        self.calls.append("showFavourites")

    def showAllServices(self):
        self.calls.append("showAllServices")


class Session(object):
    """A session that runs one screen at a time; `open` on it fails as on a box while none runs."""

    def __init__(self):
        self.in_exec, self.current_dialog, self.dialog_stack, self.closed = True, "main menu", [], []

    def open(self, screen, *arguments, **keywords):
        if not self.in_exec:
            raise RuntimeError("modal open are allowed only from a screen which is modal!")
        self.dialog_stack.append(self.current_dialog)
        self.in_exec = False
        self.current_dialog = screen(self, *arguments, **keywords)
        self.current_dialog.callback = None
        self.in_exec = True
        return self.current_dialog

    def openWithCallback(self, callback, screen, *arguments, **keywords):
        dialog = self.open(screen, *arguments, **keywords)
        dialog.callback = self.callback = callback
        return dialog

    def popCurrent(self):
        self.current_dialog, self.in_exec = self.dialog_stack.pop(), True

    def close(self, screen, *result):
        self.closed.append(result)
        self.popCurrent()


class MessageBox(Screen):
    TYPE_YESNO, TYPE_INFO, TYPE_WARNING, TYPE_ERROR = range(4)

    def __init__(self, session, text, type=TYPE_YESNO, timeout=-1):
        Screen.__init__(self, session)
        self.text, self.type, self.timeout = text, type, timeout


class Timer(object):
    made = []

    def __init__(self):
        self.callback, self.started = [], []
        Timer.made.append(self)

    def start(self, msec, single=False):
        self.started.append((msec, single))

    def isActive(self):
        return bool(self.started)

    def fire(self):
        for function in list(self.callback):
            function()


class Cache(object):
    """What eEPGCache has on every image."""

    def __init__(self):
        self.calls = []

    def __getattr__(self, name):
        if name not in self.methods:
            raise AttributeError(name)
        return lambda *arguments: self.calls.append((name,) + arguments)


def cache_class(*methods):
    members = {"methods": ("load", "save", "setCacheFile") + methods}
    members.update((name, None) for name in methods)  # to be seen on the class
    cls = type("eEPGCache", (Cache,), members)
    for name in methods:
        setattr(cls, name, _recorded(name))
    instance = cls()
    cls.getInstance = staticmethod(lambda: instance)
    return cls


def _recorded(name):
    def method(self, *arguments):
        self.calls.append((name,) + arguments)
    return method


class Descriptor(object):
    WHERE_EXTENSIONSMENU, WHERE_MAINMENU, WHERE_PLUGINMENU, WHERE_MOVIELIST, WHERE_MENU = range(5)
    WHERE_SESSIONSTART = 7

    def __init__(self, **facts):
        self.__dict__.update(facts)


class Size(object):
    def __init__(self, width):
        self._width = width

    def size(self):
        return self

    def width(self):
        return self._width

    def height(self):
        return self._width * 9 // 16
