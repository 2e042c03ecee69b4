"""A picture on the screen. The receiver keeps its place but draws none."""

from Components.GUIComponent import GUIComponent as Pixmap  # noqa: F401
