"""A plain list to choose from: rows are tuples whose first field is the text."""

from Components.ListComponent import ListComponent as MenuList  # noqa: F401
