"""The way to our settings through the image's menus: beside its own EPG settings, whichever way it keeps its menus."""

from __future__ import absolute_import

from . import case

# The image's tree of menus; newer ones write a menu's id as an attribute, older ones as an element.
TREE = ("import Screens.Menu as menus\nfrom Plugins.Extensions.Veltro import menu\ntree = menus.mdom\n"
        "root = tree.getroot() if hasattr(tree, 'getroot') else tree\n"
        "def find(key):\n    return [each for each in root.iter('menu') if each.get('key') == key or "
        "each.find('id') is not None and each.find('id').get('val') == key][0]\n")


class TestMenu(case.HostCase):
    def test_beside_the_images_own(self):
        self.python(TREE + "session.open(menus.Menu, find('epg'))")
        self.host.settle()
        rows = self.rows()
        self.assertGreater(len(rows), 1)
        self.select_text("EPG settings (Veltro)")
        self.press("ok")
        self.assertShows("Veltro")

    def test_menus_behind_functions(self):
        self.addCleanup(self.python, "menus.mdom = tree\nmenus.__dict__.pop('menuDom', 0)\nmenus.__dict__.pop('findMenu', 0)")
        self.assertEqual(self.python(TREE + "menu.of_epg_settings()"), "epg")
        for function in ("menuDom = lambda: tree", "findMenu = find"):
            self.python("vars(menus).pop('mdom', 0)\nvars(menus).pop('menuDom', 0)\nmenus." + function)
            self.assertEqual(self.python("menu.of_epg_settings()"), "epg", function)
