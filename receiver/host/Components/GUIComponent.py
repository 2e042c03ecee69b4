"""The base of what a layout shows with `name=`: a component with a widget."""


class GUIComponent:
    def __init__(self):
        self.instance = None
        self.visible = True

    def createWidget(self):
        """The widget of this component, one of enigma's classes; each kind of component has its own."""
        return None

    def GUIcreate(self, parent):
        """Create the widget. Until a screen gets its layout a component has none."""
        self.instance = self.createWidget()
        self.postWidgetCreate(self.instance)

    def postWidgetCreate(self, instance):
        pass

    def applyLayout(self, element):
        """Take from the layout what the component must know of its own size."""

    def show(self):
        self.visible = True

    def hide(self):
        self.visible = False

    def setVisible(self, visible):
        self.visible = bool(visible)

    def execBegin(self):
        pass

    def execEnd(self):
        pass

    def destroy(self):
        self.instance = None
        self.__dict__.clear()
