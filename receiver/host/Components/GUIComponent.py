"""The base of what a layout shows with `name=`, and what all components of a screen have in common."""


class Component:
    """What a screen tells its components. `text` is what a layout draws of one that is no list."""

    text = ""
    visible = True
    instance = None  # the widget of a list; a text needs none

    def setText(self, text):
        self.text = text

    def applyLayout(self, element):
        """Take from the layout what the component must know of its own size."""

    def execBegin(self):
        """The screen runs."""

    def execEnd(self):
        """The screen does not run any more; it may still be seen."""

    def destroy(self):
        self.__dict__.clear()


class GUIComponent(Component):
    pass
