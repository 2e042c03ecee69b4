"""Finds the host's menu that holds its own EPG settings."""

from __future__ import absolute_import

ITEMS = ("epg_setup", "epg_settings")
SETUP = "epgsettings"  # the setup screen that such an item opens
FALLBACK = "setup"  # every host has it


def of_epg_settings():
    """The id of the menu that has an item for the host's EPG settings, else the setup menu's."""
    try:
        from Screens import Menu
        return _find(_root(Menu)) or FALLBACK
    except Exception:  # a host that keeps its menus in another way
        return FALLBACK


def _root(menus):
    """The tree of all menus: a document or an element, under a name of the module or from a function of it."""
    tree = menus.mdom if hasattr(menus, "mdom") else menus.menuDom() if hasattr(menus, "menuDom") else None
    if tree is None:
        tree = menus.findMenu(FALLBACK)
    return tree.getroot() if hasattr(tree, "getroot") else tree


def _find(root):
    for menu in root.iter("menu"):
        for item in menu.findall("item"):
            if item.get("key") in ITEMS or item.get("entryID") in ITEMS or _opens(item) == SETUP:
                return _id(menu)


def _opens(item):
    setup = item.find("setup")
    return setup.get("id") if setup is not None else None


def _id(menu):
    """Newer hosts write it as an attribute, older ones as an element of its own."""
    element = menu.find("id")
    return menu.get("key") or (element.get("val") if element is not None else None)
