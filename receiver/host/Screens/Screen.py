"""The base of all screens: a dict of named components with a layout and a life cycle."""

from Components.GUIComponent import GUIComponent
from Components.Sources.Source import Source
from Components.Sources.StaticText import StaticText
from skin import findLayout

HOOKS = ("onLayoutFinish", "onFirstExecBegin", "onExecBegin", "onShown", "onShow", "onExecEnd", "onHide", "onClose")


class Screen(dict):
    """A screen holds its components by name (`self["list"] = ...`) and is shown by `session.open`."""

    def __init__(self, session, parent=None):
        super().__init__()
        self.skinName = type(self).__name__
        self.session = session
        self.callback = self.layout = None
        self.execing = self.shown = False
        self._closing_with = None
        for hook in HOOKS:
            setattr(self, hook, [])
        self["Title"] = StaticText()

    def setTitle(self, title):
        self["Title"].text = title

    def getTitle(self):
        return self["Title"].text

    title = property(getTitle, setTitle)

    def applySkin(self):
        """Find the layout, leave out what the screen does not have, and run what waits for that.

        An entry of onLayoutFinish that is not a plain method is source code: boxes hand it to exec.
        """
        self.layout = findLayout(self)
        if self.layout.title and not self.getTitle():
            self.setTitle(self.layout.title)
        self.layout.boxes = [box for box in self.layout.boxes if self._usable(box)]
        for function in self.onLayoutFinish:
            if isinstance(function, type(self.close)):
                function()
            else:
                exec(function, globals(), locals())

    def _usable(self, element):
        """Whether the screen has what the layout's element shows; a mismatch costs this element alone."""
        if element.component is None:
            return True
        component = self.get(element.component)
        if not isinstance(component, Source if element.source else GUIComponent):
            # A widget element that names a source is accepted and draws nothing.
            if element.source or not isinstance(component, Source):
                print("[Skin] %s: component '%s' was not found in screen" % (self.layout.name, element.component))
            return False
        component.applyLayout(element)
        return True

    def shrinkList(self):
        """Make a pop-up as high as its "list" needs: lines without rows are taken out, and the screen is centred again."""
        for box in (box for box in self.layout.boxes if box.component == "list"):
            rows = len(self["list"].l.rows) if self["list"].visible else 0
            spare = max(0, box.height - rows * box.row_height)
            box.height -= spare
            self.layout.height -= spare
            self.layout.y += spare // 2

    def execBegin(self):
        """Run: the callbacks are called, the components get the keys."""
        if self._closing_with is not None:
            result, self._closing_with = self._closing_with, None
            self.session.close(self, *result)
            return
        first, self.onFirstExecBegin = self.onFirstExecBegin, []
        for function in [*self.onExecBegin, *first]:
            function()
            if self.session.current_dialog is not self:
                return
        for component in list(self.values()):
            component.execBegin()
        self.execing = True
        for function in list(self.onShown):
            function()
            if not self.execing:
                return

    def execEnd(self):
        """Stop: the keys go elsewhere. The screen may still be seen beneath another one."""
        for component in list(self.values()):
            component.execEnd()
        self.execing = False
        _call(self.onExecEnd)

    def show(self):
        if not self.shown:
            self.shown = True
            _call(self.onShow)

    def hide(self):
        if self.shown:
            self.shown = False
            _call(self.onHide)

    def close(self, *result):
        """Close with `result` for the opener's callback. While the screen is not running, this waits until it is."""
        if self.execing:
            self.session.close(self, *result)
        else:
            self._closing_with = result

    def doClose(self):
        """What remains of a closed screen is an empty shell: its attributes are gone."""
        self.hide()
        _call(self.onClose)
        for component in self.values():
            component.destroy()
        self.clear()
        self.__dict__.clear()


def _call(functions):
    for function in list(functions):
        function()
