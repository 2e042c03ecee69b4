"""The base of what a layout shows with `source=` and `render=`: a value without a widget of its own."""

from Components.GUIComponent import Component


class Source(Component):
    pass
