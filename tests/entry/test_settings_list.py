"""The help text of the settings list's row."""

from tests.entry.case import BoxTest
from tests.entry.fake_screens import Component


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
