"""The help text of the settings list's row."""

import xml.etree.ElementTree as ElementTree

from tests.entry.case import BoxTest
from tests.entry.fake_screens import Component, Source


class HelpTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.load()

    def open(self):
        return self.box.session.open(self.module.Veltro, "/plugin")

    def test_follows_the_selection(self):
        screen = self.open()
        for function in screen.onLayoutFinish:
            self.assertIs(type(function), type(screen.close), "boxes take anything else for source code")
            function()
        self.assertEqual(screen["description"].text, screen.list[0][2])
        screen["config"].move_to(8)
        self.assertEqual(screen["description"].text, "Use EIT EPG information when it is available.")
        screen["config"].move_to(0)
        self.assertEqual(screen["description"].text, screen.list[0][2])

    def test_an_empty_list(self):
        screen = self.open()
        screen["config"].l.setList([])
        screen["config"].move_to(0)
        self.assertEqual(screen["description"].text, "")

    def test_a_host_that_has_one_keeps_it(self):
        base = self.box.part("bridge.settings_list").ConfigList.ConfigListScreen
        theirs = Component("theirs")
        real = base.__init__

        def init(screen, *arguments, **keywords):
            screen["description"] = theirs
            real(screen, *arguments, **keywords)
        base.__init__ = init
        self.addCleanup(setattr, base, "__init__", real)
        screen = self.open()
        screen["config"].move_to(8)
        self.assertIs(screen["description"], theirs)
        self.assertEqual(theirs.text, "theirs")


class NothingTest(BoxTest):
    def test_one_element_serves_all_rows_without_a_value(self):
        """It holds nothing, so it need not be made four times at each opening."""
        self.load()
        first, second = [self.box.session.open(self.module.Veltro, "/plugin").list for opened in range(2)]
        elements = [row[1] for rows in (first, second) for row in rows if row[3] != "to_save"]
        self.assertEqual((len(elements), len(set(map(id, elements)))), (10, 1))
        self.assertIsInstance(elements[0], self.box.modules["Components.config"].ConfigNothing)


class UnusedTest(BoxTest):
    """What hosts show beside a row of text, in a list without one."""

    def setUp(self):
        BoxTest.setUp(self)
        base = self.box.modules["Components.ConfigList"].ConfigListScreen
        self.window, self.icon, real = Component(), Source(), base.__init__

        def init(screen, *arguments, **keywords):
            real(screen, *arguments, **keywords)
            screen["HelpWindow"], screen["VKeyIcon"] = self.window, self.icon
        base.__init__ = init
        self.addCleanup(setattr, base, "__init__", real)
        self.box.modules["skin"].domScreens = {"Setup": (ElementTree.fromstring("""
            <screen name="Setup" position="fill">
                <widget name="config" position="100,100" size="900,500"/>
                <widget name="description" position="100,600" size="900,40" font="Regular;20"/>
                <widget name="HelpWindow" pixmap="vkey_icon.png" position="10,10" size="1,1"/>
                <widget source="VKeyIcon" render="Pixmap" pixmap="key_text.png" position="10,10" size="35,25"/>
            </screen>"""), "")}

    def open(self):
        self.load()
        return self.box.session.open(self.module.Veltro, "/plugin")

    def test_is_left_out(self):
        screen = self.open()
        self.assertNotIn("HelpWindow", screen.skin)
        self.assertNotIn("VKeyIcon", screen.skin)
        self.assertIs(screen["VKeyIcon"], self.icon, "the host switches it")
        screen["HelpWindow"].show()
        screen["HelpWindow"].hide()
        self.assertEqual(screen["HelpWindow"].getPosition(), (0, 0))
        self.assertNotIsInstance(screen["HelpWindow"], Component, "no widget is made of it")

    def test_stays_where_a_setting_is_a_text(self):
        self.config.epg.maxdays = self.box.modules["Components.config"].ConfigText("7")
        screen = self.open()
        self.assertIs(screen["HelpWindow"], self.window)
        self.assertIn("HelpWindow", screen.skin)
        self.assertIn("VKeyIcon", screen.skin)
