"""The layouts: chosen by the desktop, nothing cut, and the same picture on both."""

import os
import unittest
import xml.etree.ElementTree as ElementTree

from tests.entry.box import ENTRY
from tests.entry.case import BoxTest

SCREENS = {"Veltro": "config", "Edit_DVB_EPG_Blacklist": "ServiceList", "DVB_EPG_blacklist_ChannelSelection": "list",
           "KelmarFile": "filelist"}
CLASSES = {"KelmarFile": "DirChoose"}


def screens(name):
    root = ElementTree.parse(os.path.join(ENTRY, "skins", name)).getroot()
    return dict((screen.get("name"), screen) for screen in root.findall("screen"))


def numbers(text):
    return [int(number) for number in text.split(",")]


class ChoiceTest(BoxTest):
    def skin(self, name):
        return ElementTree.fromstring(getattr(self.module, CLASSES.get(name, name)).skin)

    def test_every_screen_has_one(self):
        self.load()
        for name in SCREENS:
            self.assertEqual((self.skin(name).get("name"), self.skin(name).get("size")), (name, "1280,720"))
            self.assertIsInstance(self.module.Veltro.skin, str)

    def test_are_the_last_resort_of_the_host(self):
        """A loaded skin's screen is looked for before the attribute of the class, on every generation of hosts."""
        self.load()
        self.assertEqual(self.box.modules["Screens.Screen"].Screen.__dict__.get("skin"), None)
        self.assertEqual(self.box.session.open(self.module.Veltro, "/plugin").skinName, "Veltro")


class WideChoiceTest(ChoiceTest):
    facts = {"width": 1920}

    def test_every_screen_has_one(self):
        self.load()
        for name in SCREENS:
            self.assertEqual(self.skin(name).get("size"), "1920,1080")


class FailureTest(BoxTest):
    def test_costs_a_log_line(self):
        self.import_entry()
        layouts = self.box.part("layouts")
        layouts.getDesktop = lambda number: None
        self.load()
        self.assertIn("[Veltro] no layouts:", self.console)
        self.assertTrue(hasattr(self.module, "epg_timer"))


class GeometryTest(unittest.TestCase):
    def test_all_screens_are_there(self):
        for name in ("hd.xml", "fhd.xml"):
            self.assertEqual(set(screens(name)), set(SCREENS))

    def test_rows_fit(self):
        for name in ("hd.xml", "fhd.xml"):
            for screen, element in screens(name).items():
                config = [widget for widget in element if widget.get("name") == SCREENS[screen]][0]
                height, row = numbers(config.get("size"))[1], int(config.get("itemHeight"))
                self.assertEqual(height % row, 0, "%s: a row of %s is cut" % (name, screen))
                self.assertEqual(config.get("scrollbarMode"), "showOnDemand")
                if screen == "Veltro":
                    self.assertGreaterEqual(height // row, 22)

    def test_lines_are_high_enough_for_their_letters(self):
        for name in ("hd.xml", "fhd.xml"):
            for element in screens(name).values():
                for widget in element.findall("widget"):
                    font = int(widget.get("font").split(";")[1])
                    self.assertGreaterEqual(int(widget.get("itemHeight") or numbers(widget.get("size"))[1]), font * 1.2)

    def test_everything_is_on_the_screen_and_nothing_overlaps(self):
        for name, size in (("hd.xml", (1280, 720)), ("fhd.xml", (1920, 1080))):
            for screen, element in screens(name).items():
                boxes = [(numbers(each.get("position")), numbers(each.get("size")), each.get("source") or each.get("name"))
                         for each in element]
                for (x, y), (width, height), what in boxes:
                    self.assertTrue(0 <= x and x + width <= size[0] and 0 <= y and y + height <= size[1], what)
                for index, ((x, y), (width, height), what) in enumerate(boxes):
                    for (x2, y2), (width2, height2), other in boxes[index + 1:]:
                        apart = x + width <= x2 or x2 + width2 <= x or y + height <= y2 or y2 + height2 <= y
                        self.assertTrue(apart, "%s %s: %s and %s" % (name, screen, what, other))

    def test_sources_have_a_renderer(self):
        for name in ("hd.xml", "fhd.xml"):
            for element in screens(name).values():
                for widget in element.findall("widget"):
                    self.assertEqual(widget.get("render") is not None, widget.get("source") is not None)
                    self.assertTrue(widget.get("source") or widget.get("name"))

    def test_both_are_the_same_picture(self):
        small, large = screens("hd.xml"), screens("fhd.xml")
        for name in SCREENS:
            self.assertEqual(len(small[name]), len(large[name]))
            for one, other in zip(small[name], large[name]):
                for key, value in one.attrib.items():
                    if key in ("position", "size"):
                        self.assertEqual([number * 2 for number in numbers(other.get(key))],
                                         [number * 3 for number in numbers(value)], value)
                    elif key == "itemHeight":
                        self.assertEqual(int(other.get(key)) * 2, int(value) * 3)
                    elif "ont" not in key:
                        self.assertEqual(other.get(key), value)
