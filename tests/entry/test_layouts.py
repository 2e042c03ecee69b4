"""The layouts: made from the skin's screens, else our own, scaled to the desktop, nothing cut."""

import unittest
import xml.etree.ElementTree as ElementTree

from tests.entry.case import BoxTest

SCREENS = {"Veltro": "config", "Edit_DVB_EPG_Blacklist": "ServiceList", "DVB_EPG_blacklist_ChannelSelection": "list",
           "KelmarFile": "filelist"}
CLASSES = {"KelmarFile": "DirChoose"}
DESKTOPS = ((720, 576), (1280, 720), (1920, 1080), (2560, 1440), (3840, 2160))
SKIN = """<skin>
    <screen name="Setup" position="fill" title="Setup">
        <widget name="config" position="100,100" size="900,500"/>
        <widget source="key_red" render="Label" position="100,650" size="200,30" font="Regular;22"/>
        <widget source="key_green" render="Label" position="400,650" size="200,30" font="Regular;22"/>
        <widget name="description" position="100,600" size="900,40" font="Regular;20"/>
    </screen>
</skin>"""


def numbers(text):
    return [int(number) for number in text.split(",")]


class LayoutsTest(BoxTest):
    def skin(self, name):
        return ElementTree.fromstring(getattr(self.module, CLASSES.get(name, name)).skin)

    def use(self, text):
        """Make a skin the one that runs, kept as hosts keep it."""
        self.box.modules["skin"].domScreens = dict(
            (screen.get("name"), (screen, "/skin/")) for screen in ElementTree.fromstring(text))

    def open(self):
        return self.box.session.open(self.module.Veltro, "/plugin")


class ChoiceTest(LayoutsTest):
    def test_every_screen_has_one(self):
        self.load()
        for name in SCREENS:
            self.assertEqual((self.skin(name).get("name"), self.skin(name).get("size")), (name, "1280,720"))
            self.assertIsInstance(self.module.Veltro.skin, str)

    def test_are_the_last_resort_of_the_host(self):
        """A loaded skin's screen is looked for before the attribute `skin`, on every generation of hosts."""
        self.load()
        self.assertEqual(self.box.modules["Screens.Screen"].Screen.__dict__.get("skin"), None)
        self.assertEqual(self.open().skinName, "Veltro")

    def test_is_made_from_the_skin_when_it_is_read(self):
        self.load()
        screen = self.open()
        self.use(SKIN)
        widgets = [each.get("name") or each.get("source") for each in ElementTree.fromstring(screen.skin)]
        self.assertEqual(set(["config", "description", "status", "key_red", "key_green"]), set(widgets))

    def test_follows_a_screen_that_was_read_anew(self):
        """In the same table, which is as long as before."""
        self.load()
        self.use(SKIN)
        self.assertIn('position="100,100"', self.open().skin)
        screens = self.box.modules["skin"].domScreens
        screens["Setup"] = ElementTree.fromstring(SKIN.replace("100,100", "50,120"))[0], "/skin/"
        self.assertIn('position="50,120"', self.open().skin)

    def test_follows_a_change_of_the_skin(self):
        self.load()
        self.use(SKIN)
        before = self.open().skin
        self.use(SKIN.replace("100,100", "50,120"))
        self.assertIn('position="50,120"', self.open().skin)
        self.assertNotIn('position="50,120"', before)

    def test_is_made_once_from_the_same_skin(self):
        self.load()
        layouts, made = self.box.part("layouts"), []
        derived = layouts.derived
        layouts.derived = lambda *arguments: made.append(arguments) or derived(*arguments)
        for skin in (SKIN, SKIN.replace("100,100", "50,120")):
            self.use(skin)
            self.assertEqual(self.open().skin, self.open().skin)
        self.assertEqual(len(made), 2)

    def test_is_an_element_for_hosts_that_take_one(self):
        """Then nobody reads it as a text at each opening. Both say the same, also of our own layouts."""
        self.load()
        self.assertEqual(self.module.Veltro.parsedSkin.get("name"), "Veltro")
        self.use(SKIN)
        first, second = self.open(), self.open()
        self.assertIs(first.parsedSkin, second.parsedSkin)
        self.assertEqual([each.attrib for each in ElementTree.fromstring(first.skin)], [each.attrib for each in first.parsedSkin])
        self.use(SKIN.replace("100,100", "50,120"))
        self.assertEqual(first.parsedSkin[0].get("position"), "50,120")

    def test_is_made_anew_when_another_part_is_in_the_screen(self):
        self.load()
        self.use(SKIN.replace("</screen>", '<widget source="key_menu" render="Label" position="700,650" size="90,30"/></screen>'))
        screen = self.open()
        self.assertNotIn("key_menu", screen.skin)
        screen["key_menu"] = self.box.modules["Components.Sources.StaticText"].StaticText("MENU")
        self.assertIn("key_menu", screen.skin)

    def test_pictures_are_looked_for_once(self):
        """The host says where one is; it has none of the second, and the third is where it is."""
        asked = []

        def collect(attributes, node, context, *more, **keywords):
            asked.extend(node.attrib.values())
            attributes.extend((key, value if value.startswith("/") or value == "none.png" else self.path(value))
                              for key, value in node.attrib.items())
        self.box.modules["skin"].collectAttributes = collect
        self.load()
        own, host = self.write("own.png"), self.write("red.png")
        self.use(SKIN.replace("</screen>", "".join(
            '<ePixmap pixmap="%s" position="0,0" size="9,9"/>' % name for name in ("red.png", "none.png", own)) + "</screen>"))
        pictures = [each.get("pixmap") for each in self.open().parsedSkin.iter("ePixmap")]
        self.assertEqual(pictures, [host, "none.png", own])
        del asked[:]
        self.assertIs(self.open().parsedSkin, self.open().parsedSkin)
        self.assertEqual(asked, [])

    def test_fonts_by_names_that_the_host_has_at_hand(self):
        """A face that the skin gives a name, if the host takes that for the same font. The last label is no host's own."""
        skin = self.box.modules["skin"]
        skin.fonts = {"Body": ("Regular", 18, 22, 16), "Aside": ("Regular", 18), "Large": ("Bold", 30)}
        skin.parseFont = lambda text, scale: type("gFont", (object,), {
            "family": {"Body": "Regular", "Large": "Thin"}.get(text.split(";")[0], text.split(";")[0]),
            "pointSize": int(text.split(";")[1])})
        self.load()
        self.use(SKIN.replace("</screen>", "".join(
            '<widget source="key_%s" render="%s" position="0,0" size="99,9" font="%s"/>' % each for each in (
                ("red", "Label", "Bold;19"), ("red", "FancyLabel", "Regular;19"))) + "</screen>"))
        fonts = [(each.get("source"), each.get("font")) for each in self.open().parsedSkin if each.get("font")]
        self.assertEqual(fonts[:2], [("key_red", "Body;22"), ("key_green", "Body;22")])
        self.assertEqual(fonts[3:5], [("key_red", "Bold;19"), ("key_red", "Regular;19")])

    def test_is_ours_where_the_skin_has_nothing_to_make_it_from(self):
        self.load()
        self.use('<skin><screen name="Setup" size="300,200"/><screen name="Clock" size="300,200"/></skin>')
        self.assertEqual(self.open().skin, self.module.Veltro.skin)
        self.assertIn("[Veltro] the skin's Setup makes no layout for Veltro", self.console)

    def test_is_made_from_a_screen_that_has_what_it_takes(self):
        self.load()
        self.use(SKIN.replace("Setup", "ConfigurationOfSomething"))
        self.assertIn('position="100,100"', self.open().skin)

    def test_a_failure_costs_a_log_line(self):
        self.load()
        self.use(SKIN)
        self.box.part("layouts").derived = None
        self.assertEqual(self.open().skin, self.module.Veltro.skin)
        self.assertIn("[Veltro] no layout from the skin for Veltro:", self.console)

    def test_a_desktop_of_unknown_size(self):
        self.import_entry()
        self.box.part("layouts").getDesktop = lambda number: None
        self.load()
        self.assertEqual(self.skin("Veltro").get("size"), "1280,720")


class OldestSkinTest(LayoutsTest):
    """A list of whole skins, in which the first that has a screen counts."""

    def test_is_read(self):
        self.load()
        self.use(SKIN)
        skin = self.box.modules["skin"]
        del skin.domScreens
        skin.dom_skins = [("/first/", ElementTree.fromstring(SKIN)), ("/second/", ElementTree.fromstring("<skin/>"))]
        self.assertIn('position="100,100"', self.open().skin)


class OwnLayoutsTest(LayoutsTest):
    def setUp(self):
        LayoutsTest.setUp(self)
        self.import_entry()
        own_layout = self.box.part("layouts").own_layout
        self.layouts = [(name, desktop, ElementTree.fromstring(own_layout(name, desktop)))
                        for name in SCREENS for desktop in DESKTOPS]

    def test_fill_the_desktop(self):
        for name, desktop, screen in self.layouts:
            self.assertEqual(tuple(numbers(screen.get("size"))), desktop)

    def test_rows_fit(self):
        for name, desktop, screen in self.layouts:
            config = [widget for widget in screen if widget.get("name") == SCREENS[name]][0]
            height, row = numbers(config.get("size"))[1], int(config.get("itemHeight"))
            self.assertEqual(height % row, 0, "%s: a row is cut" % name)
            self.assertEqual(config.get("scrollbarMode"), "showOnDemand")
            if name == "Veltro":
                self.assertEqual(height // row, 22)

    def test_lines_are_high_enough_for_their_letters(self):
        for name, desktop, screen in self.layouts:
            for widget in screen.findall("widget"):
                font = int(widget.get("font").split(";")[1])
                row = int(widget.get("itemHeight") or numbers(widget.get("size"))[1])
                self.assertGreaterEqual(row, font * 1.25, "%s %s" % (name, widget.attrib))

    def test_everything_is_on_the_screen_and_nothing_overlaps(self):
        for name, size, screen in self.layouts:
            boxes = [(numbers(each.get("position")), numbers(each.get("size")), each.get("source") or each.get("name"))
                     for each in screen]
            for (x, y), (width, height), what in boxes:
                self.assertTrue(0 <= x and x + width <= size[0] and 0 <= y and y + height <= size[1], what)
            for index, ((x, y), (width, height), what) in enumerate(boxes):
                for (x2, y2), (width2, height2), other in boxes[index + 1:]:
                    apart = x + width <= x2 or x2 + width2 <= x or y + height <= y2 or y2 + height2 <= y
                    self.assertTrue(apart, "%s %s: %s and %s" % (name, size, what, other))

    def test_sources_have_a_renderer(self):
        for name, desktop, screen in self.layouts:
            for widget in screen.findall("widget"):
                self.assertEqual(widget.get("render") is not None, widget.get("source") is not None)
                self.assertTrue(widget.get("source") or widget.get("name"))


if __name__ == "__main__":
    unittest.main()
