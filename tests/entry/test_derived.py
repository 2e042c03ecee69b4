"""Layouts made from a skin's screens: whatever way the skin is written, what our screen has is on it, once, and legible."""

import unittest
import xml.etree.ElementTree as ElementTree

from tests.entry.case import BoxTest

KEYS = ("red", "green", "yellow", "blue")
PLAIN = """
    <screen name="Setup" position="fill" title="Setup" flags="wfNoBorder">
        <widget source="Title" render="Label" position="80,20" size="1000,50" font="Regular;30"/>
        <widget source="global.CurrentTime" render="Label" position="1100,20" size="150,50" font="Regular;30"/>
        <widget name="config" position="530,110" size="690,500" itemHeight="25"/>
        <widget name="description" position="85,380" size="417,200" font="Regular;20"/>
        <ePixmap pixmap="buttons/red.png" position="145,643" size="26,26"/>
        <ePixmap pixmap="buttons/green.png" position="420,643" size="26,26"/>
        <widget source="key_red" render="Label" position="185,643" size="220,28" font="Regular;24"/>
        <widget source="key_green" render="Label" position="460,643" size="220,28" font="Regular;24"/>
    </screen>"""


def numbers(text):
    return [int(number) for number in text.split(",")]


class DerivedTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.import_entry()
        self.derived, self.flat = self.box.part("derived"), self.box.part("flat_layout")
        self.screens = self.box.part("layouts").SCREENS

    def parts(self, of, **more):
        """What our screen has, and what a host adds to it."""
        sources = ["Title", "ScreenPath"]
        widgets = {"Veltro": ["config", "status"], "Edit_DVB_EPG_Blacklist": ["ServiceList"],
                   "DVB_EPG_blacklist_ChannelSelection": ["list"], "DirChoose": ["filelist", "driverfile"]}[of]
        if of == "Veltro":
            sources.append("description")
        sources += ["key_" + colour for colour in self.screens[of][2].keys]
        parts = dict((name, ("source", ["Fixed", "StaticText", "Source"])) for name in sources)
        parts.update((name, ("widget", ["Label", "GUIComponent"])) for name in widgets)
        parts.update(more)
        return parts

    def make(self, text, of="Veltro", desktop=(1280, 720), texts=None, **parts):
        root = ElementTree.fromstring("<skin>%s</skin>" % text)
        screens = dict((screen.get("name"), (screen, "/skin/")) for screen in root)
        need = self.screens[of][2]
        self.layout = ElementTree.fromstring(
            self.derived.derived(root[0].get("name"), screens, self.parts(of, **parts), desktop, need, texts))
        return self.layout

    def all(self, name):
        return [each for each in self.layout.iter() if name in (each.get("name"), each.get("source"))]

    def one(self, name):
        found = [each for each in self.all(name) if each.get("render") != "Pixmap"]
        self.assertEqual(len(found), 1, ElementTree.tostring(self.layout))
        return found[0]

    def rect(self, name):
        element = self.one(name)
        return numbers(element.get("position")) + numbers(element.get("size"))


class CopyTest(DerivedTest):
    def test_keeps_what_is_everybodys_and_where_it_is(self):
        self.make(PLAIN)
        self.assertEqual(self.rect("config"), [530, 110, 690, 500])
        self.assertEqual(self.rect("global.CurrentTime"), [1100, 20, 150, 50])
        self.assertEqual(self.layout.get("flags"), "wfNoBorder")
        self.assertEqual(len(self.layout.findall("ePixmap")), 2)

    def test_the_title_is_our_own(self):
        self.assertIsNone(self.make(PLAIN).get("title"))

    def test_results_stand_where_the_help_does(self):
        self.make(PLAIN)
        self.assertEqual(self.rect("status"), self.rect("description"))
        self.assertIsNotNone(self.one("status").get("name"))
        self.assertEqual(self.one("status").get("transparent"), "1", "the help shows through")
        self.assertEqual(self.one("description").get("render"), "Label", "it is a source on our screen")

    def test_leaves_out_what_our_screen_has_not(self):
        self.make(PLAIN.replace("</screen>", """
            <widget name="footnote" position="0,0" size="10,10"/>
            <widget source="VKeyIcon" render="Pixmap" position="0,0" size="10,10"/>
            <widget addon="ColorButtonsSequence" connection="key_info" position="0,0" size="10,10"/>
            <applet type="onLayoutFinish">self["footnote"].hide()</applet></screen>"""))
        self.assertEqual([self.all("footnote"), self.all("VKeyIcon"), self.layout.findall("applet")], [[], [], []])
        self.assertFalse([each for each in self.layout if each.get("addon")])

    def test_shows_what_the_host_adds_to_our_screen(self):
        self.make(PLAIN.replace("</screen>", '<widget name="HelpWindow" position="0,0" size="1,1"/></screen>'),
                  HelpWindow=("widget", ["Pixmap"]))
        self.one("HelpWindow")

    def test_labels_as_widgets_and_as_sources(self):
        text = PLAIN.replace('source="key_red" render="Label"', 'name="key_red"')
        self.make(text)
        self.assertEqual((self.one("key_red").get("source"), self.one("key_red").get("name")), ("key_red", None))
        self.make(text.replace('name="description"', 'source="description" render="Label"'),
                  key_green=("widget", ["Button", "Label"]), description=("widget", ["Label", "GUIComponent"]))
        self.assertEqual((self.one("key_green").get("source"), self.one("key_green").get("name")), (None, "key_green"))
        self.assertEqual(self.one("description").get("render"), None)

    def test_pictures_for_keys_as_widgets(self):
        self.make(PLAIN.replace('<ePixmap pixmap="buttons/red.png"', '<widget name="button_red" pixmap="buttons/red.png"'))
        self.assertEqual(len(self.layout.findall("ePixmap")), 2)

    def test_pictures_beside_the_skin(self):
        self.make(PLAIN.replace("buttons/red.png", "~/red.png"))
        self.assertEqual(self.layout.find("ePixmap").get("pixmap"), "/skin/red.png")

    def test_letters_of_every_language(self):
        self.make(PLAIN.replace("</screen>", u'<eLabel text="\u017d\u0416" position="0,0" size="9,9"/></screen>'
                                .encode("ascii", "xmlcharrefreplace").decode("ascii")))
        self.assertEqual(self.layout.find("eLabel").get("text"), u"\u017d\u0416")

    def test_conditions(self):
        self.make(PLAIN.replace("</screen>", """
            <widget conditional="key_blue" source="Title" render="Label" position="1,1" size="1,1"/>
            <widget objectTypes="key_red,Label,Button" name="key_red" position="2,2" size="1,1"/>
            <eLabel conditional="key_red,key_blue" objectTypes="key_red,StaticText" position="3,3" size="1,1"/>
            <eLabel objectTypesInverted="key_red,StaticText" position="4,4" size="1,1"/></screen>"""))
        self.one("Title")
        self.one("key_red")
        self.assertEqual([each.get("position") for each in self.layout.findall("eLabel")], ["3,3"])


class PanelsTest(DerivedTest):
    def test_by_name_inside_each_other(self):
        self.make("""
            <screen name="Setup" position="fill"><panel name="Keys"/><panel name="List"/></screen>
            <screen name="Keys"><panel name="Labels"/></screen>
            <screen name="Labels">
                <widget source="key_red" render="Label" position="0,e-40" size="200,40"/>
                <widget source="key_green" render="Label" position="300,e-40" size="200,40"/></screen>
            <screen name="List"><widget name="config" position="10,10" size="e-20,e-100"/>
                <widget name="description" position="10,e-80" size="100%,30"/></screen>""")
        self.assertEqual(self.rect("key_green"), [300, 680, 200, 40])
        self.assertEqual(self.rect("config"), [10, 10, 1260, 620])

    def test_with_a_place_of_their_own(self):
        self.make("""
            <screen name="Setup" position="center,center" size="800,500">
                <panel position="bottom" size="800,50">
                    <widget source="key_red" render="Label" position="left" size="200,50"/>
                    <widget source="key_green" render="Label" position="left" size="200,50"/></panel>
                <panel position="right" size="300,0" layout="stack">
                    <widget name="description" position="fill"/><eLabel position="fill"/></panel>
                <panel position="fill"><widget name="config" position="10,5" size="e-20,e-10"/></panel>
            </screen>""")
        self.assertEqual(self.rect("key_green"), [200, 450, 200, 50])
        self.assertEqual(self.rect("description"), [500, 0, 300, 450])
        self.assertEqual(self.rect("config"), [10, 5, 480, 440])
        self.assertEqual(self.layout.get("position"), "center,center")

    def test_in_circles(self):
        self.assertRaises(self.flat.Unfit, self.make, '<screen name="Setup" position="fill"><panel name="Setup"/></screen>')

    def test_a_resolution_of_its_own(self):
        self.make('<screen name="Setup" position="fill" resolution="1280,720">'
                  '<widget name="config" position="center,10" size="1000,e-320"/>'
                  '<widget source="key_red" render="Label" position="0,e-40" size="200,40"/>'
                  '<widget source="key_green" render="Label" position="300,e-40" size="200,40"/></screen>',
                  desktop=(1920, 1080))
        self.assertEqual(self.rect("key_green"), [300, 680, 200, 40])
        self.assertEqual(self.layout.get("resolution"), "1280,720")

    def test_places_that_only_the_host_can_tell(self):
        self.make(PLAIN.replace("</screen>", '<eLabel position="10w,2h" size="5w,1h" font="Body"/></screen>'))
        label = self.layout.find("panel/eLabel")
        self.assertEqual(label.get("position"), "10w,2h")
        self.assertEqual(self.layout.find("panel").get("size"), "1280,720")

    def test_panels_at_places_that_only_the_host_can_tell(self):
        self.make(PLAIN.replace("</screen>", """<panel position="margin,10" size="100,10" name="None">
            <eLabel position="0,0" size="5,5"/><widget name="footnote" position="0,0" size="5,5"/>
            <widget name="key_red" position="0,0" size="5,5"/></panel></screen>"""))
        panel = self.layout.find("panel/panel")
        self.assertEqual((panel.get("position"), panel.get("name")), ("margin,10", None))
        self.assertEqual([each.get("source") or each.tag for each in panel], ["eLabel", "key_red"])

    def test_an_expression_is_no_code(self):
        for text in ("__import__('os')", "9**9**9", "e" * 2000, ""):
            self.assertRaises(ValueError, self.flat.coordinate, text, 1280, 0, 1)
        self.assertEqual(self.flat.coordinate("c-20*f+50%", 100, 0, 1.5), 70)


class PutInTest(DerivedTest):
    EDITOR = "Edit_DVB_EPG_Blacklist"

    def places(self, name="key_"):
        return [self.rect(name + colour)[:2] for colour in KEYS]

    def pictures(self):
        return dict((each.get("pixmap"), numbers(each.get("position"))) for each in self.layout.findall("ePixmap"))

    def test_yellow_and_blue_go_on_as_red_and_green_begin(self):
        self.make(PLAIN, self.EDITOR)
        self.assertEqual(self.places(), [[185, 643], [460, 643], [735, 643], [1010, 643]])
        self.assertEqual(self.pictures(), {"buttons/red.png": [145, 643], "buttons/green.png": [420, 643],
                                           "buttons/yellow.png": [695, 643], "buttons/blue.png": [970, 643]})

    def test_closer_together_where_they_do_not_fit(self):
        self.make(PLAIN.replace("460,643", "785,643").replace("420,643", "745,643"), self.EDITOR)
        places = self.places()
        self.assertEqual(sorted(places), places)
        for colour, next_place in zip(KEYS, places[1:] + [[1280, 0]]):
            x, y, width, height = self.rect("key_" + colour)
            self.assertLessEqual(x + width, next_place[0])
        pictures = self.pictures()
        self.assertEqual([pictures["buttons/%s.png" % colour][0] + 40 for colour in KEYS], [x for x, y in places])

    def test_one_below_the_other(self):
        self.make(PLAIN.replace("460,643", "185,683").replace("420,643", "145,683")
                  .replace('position="185,643"', 'position="185,600"').replace('position="145,643"', 'position="145,600"')
                  .replace("185,683", "185,630").replace("145,683", "145,630"), self.EDITOR)
        self.assertEqual([y for x, y in self.places()], [600, 630, 660, 690])

    def test_bars_that_have_a_colour_for_a_name(self):
        text = PLAIN.replace('<ePixmap pixmap="buttons/red.png"', '<eLabel backgroundColor="#00ff0000"') \
            .replace('<ePixmap pixmap="buttons/green.png"', '<eLabel backgroundColor="#0000ff00"')
        self.make(text, self.EDITOR)
        self.assertEqual(len(set(each.get("backgroundColor") for each in self.layout.findall("eLabel"))), 4)

    def test_are_as_strong_as_the_skins_own(self):
        text = PLAIN.replace('<ePixmap pixmap="buttons/red.png"', '<eLabel backgroundColor="#00802010"') \
            .replace('<ePixmap pixmap="buttons/green.png"', '<eLabel backgroundColor="#00209010"')
        self.make(text, self.EDITOR)
        self.assertEqual([each.get("backgroundColor") for each in self.layout.findall("eLabel")],
                         ["#00802010", "#00209010", "#00809010", "#00101090"])

    def test_colours_by_name(self):
        text = PLAIN.replace('<ePixmap pixmap="buttons/red.png"', '<eLabel backgroundColor="KeyRed"') \
            .replace('<ePixmap pixmap="buttons/green.png"', '<eLabel backgroundColor="KeyGreen"')
        self.make(text.replace('source="key_red"', 'foregroundColor="grey" source="key_red"')
                  .replace('source="key_green"', 'foregroundColor="grey" source="key_green"'), self.EDITOR)
        self.assertEqual([each.get("backgroundColor") for each in self.layout.findall("eLabel")],
                         ["KeyRed", "KeyGreen", "KeyYellow", "KeyBlue"])
        self.assertEqual(self.one("key_blue").get("foregroundColor"), "grey")

    def test_long_labels_get_smaller_letters(self):
        self.make(PLAIN, self.EDITOR, texts={"key_blue": u"Bouquet hinzuf\u00fcgen", "key_red": "Exit", "Title": "A title"})
        self.assertEqual([self.one(name).get("font") for name in ("key_red", "key_blue", "Title")],
                         ["Regular;24", "Regular;21", "Regular;30"])
        self.assertEqual([self.one(name).get("noWrap") for name in ("key_red", "key_blue", "Title")], [None, "1", None],
                         "in one line if it could need two")
        self.make(PLAIN, self.EDITOR, texts={"key_blue": 60 * "m"})
        self.assertEqual(self.one("key_blue").get("font"), "Regular;15", "still legible")

    def test_whole_rows(self):
        self.make(PLAIN.replace("690,500", "690,517"))
        self.assertEqual(self.rect("config")[3], 500)

    def test_keys_that_an_addon_shows(self):
        text = PLAIN.replace('<widget source="key_red" render="Label"', '<widget addon="Buttons" connection="key_red,key_green"') \
            .replace('<widget source="key_green" render="Label"', '<widget source="no_such" render="Label"')
        self.make(text, self.EDITOR)
        shown = [each for each in self.layout if each.get("addon")][0].get("connection").split(",")
        self.assertEqual(shown, ["key_" + colour for colour in KEYS])
        self.assertEqual(self.all("key_yellow"), [])

    def test_labels_for_parts_of_another_class(self):
        text = PLAIN.replace('<widget source="key_red" render="Label"', '<widget objectTypes="key_red,Label,Button" name="key_red"') \
            .replace('<ePixmap pixmap="buttons/red.png"', '<ePixmap objectTypes="key_red,Label" pixmap="buttons/red.png"')
        self.make(text)
        self.assertEqual((self.one("key_red").get("source"), self.rect("key_red")[0]), ("key_red", 185))
        self.assertIn("buttons/red.png", self.pictures())

    def test_a_skin_without_labels_for_keys(self):
        text = PLAIN.replace('source="key_red"', 'source="no_such"').replace('source="key_green"', 'source="no_such"')
        for of, keys in (("Veltro", KEYS[:2]), (self.EDITOR, KEYS)):
            self.make(text, of)
            config = self.rect(self.screens[of][2].list[1])
            for colour in keys:
                self.assertGreaterEqual(self.rect("key_" + colour)[1], config[1] + config[3])
            self.assertEqual(config[3] % 25, 0, "whole rows")

    def test_a_skin_without_a_help_line(self):
        self.make(PLAIN.replace('name="description"', 'name="no_such"'))
        config, help_line = self.rect("config"), self.rect("description")
        self.assertGreaterEqual(help_line[1], config[1] + config[3])
        self.assertEqual(help_line[1] + help_line[3], 610, "in the room that the list had")
        self.assertEqual(self.rect("status"), help_line)
        self.assertIn("Regular;24", self.one("description").get("font"))

    def test_the_directory_of_the_chooser(self):
        self.make(PLAIN, "DirChoose")
        self.assertEqual(self.rect("driverfile"), [85, 380, 417, 200])
        self.assertEqual(self.rect("filelist"), [530, 110, 690, 500])
        self.assertIsNone(self.one("filelist").get("itemHeight"), "that of rows of settings")

    def test_the_list_of_files_looks_as_the_skins_does(self):
        need = self.screens["DirChoose"][2]
        self.screens["DirChoose"] = self.screens["DirChoose"][:2] + (need._replace(looks={"itemHeight": "33"}),)
        self.make(PLAIN, "DirChoose")
        self.assertEqual(self.one("filelist").get("itemHeight"), "33")

    def test_a_list_too_small_to_share(self):
        text = PLAIN.replace('name="description"', 'name="no_such"').replace("690,500", "690,60")
        self.assertRaises(self.flat.Unfit, self.make, text)

    def test_a_screen_that_has_no_list(self):
        self.assertRaises(self.flat.Unfit, self.make, PLAIN.replace('name="config"', 'name="menu"'))

    def test_a_size_that_can_not_be_told(self):
        self.assertRaises(self.flat.Unfit, self.make, PLAIN.replace('position="fill"', 'position="0,0" size="wide,9"'))

    def test_the_channel_list(self):
        self.make("""
            <screen name="ChannelSelection" position="fill" title="Channels">
                <widget name="list" position="20,30" size="600,600" serviceItemHeight="40"/>
                <widget source="ServiceEvent" render="Label" position="700,30" size="500,300"><convert type="EventName"/></widget>
                <widget objectTypes="key_red,Button" name="key_red" position="10,660" size="200,40"/>
                <widget objectTypes="key_red,StaticText" source="key_red" render="Label" position="10,660" size="200,40"/>
                <widget name="key_green" position="310,660" size="200,40"/>
                <widget name="key_yellow" position="610,660" size="200,40"/>
                <widget name="key_blue" position="910,660" size="200,40"/></screen>""",
                  "DVB_EPG_blacklist_ChannelSelection", ServiceEvent=("source", ["ServiceEvent"]))
        self.assertEqual(self.one("list").get("serviceItemHeight"), "40")
        self.one("ServiceEvent")
        self.assertEqual([each.get("source") for colour in KEYS for each in self.all("key_" + colour)],
                         ["key_" + colour for colour in KEYS])


if __name__ == "__main__":
    unittest.main()
