"""Finds the host's menu that holds its own EPG settings."""

from __future__ import absolute_import

ITEMS = ("epg_setup", "epg_settings")
FALLBACK = "setup"  # every host has it


def of_epg_settings():
    """The id of the menu that has an item for the host's EPG settings, else the setup menu's."""
    try:
        from Screens.Menu import mdom
        root = mdom.getroot() if hasattr(mdom, "getroot") else mdom
        return _find(root) or FALLBACK
    except Exception:  # a host that keeps its menus in another way
        return FALLBACK


def _find(root):
    for menu in root.iter("menu"):
        for item in menu.findall("item"):
            if item.get("key") in ITEMS or item.get("entryID") in ITEMS:
                return _id(menu)


def _id(menu):
    """Newer hosts write it as an attribute, older ones as an element of its own."""
    element = menu.find("id")
    return menu.get("key") or (element.get("val") if element is not None else None)
