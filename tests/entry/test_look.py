"""The settings screen among the image's own: title, help and result in one place, the front display."""

import sys
import types

from tests.entry.case import BoxTest
from tests.entry.fake_screens import ChannelSelection, Screen


class LookTest(BoxTest):
    def open(self):
        self.load()
        self.screen = self.box.session.open(self.module.Veltro, "/plugin")
        return self.screen

    def test_the_title_says_where_one_is(self):
        self.box.catalogue = {"EPG settings": "EPG-Einstellungen"}
        screen = self.open()
        self.assertEqual((screen.title, screen["title"].text), ("EPG-Einstellungen", "EPG-Einstellungen"))

    def test_red_is_called_as_in_the_images_setup(self):
        self.box.catalogue = {"Cancel": "Abbrechen"}
        self.assertEqual(self.open()["key_red"].text, "Abbrechen")

    def test_a_result_takes_the_place_of_the_help_until_it_goes(self):
        screen = self.open()
        helped = [index for index, row in enumerate(screen["config"].list) if row[2]][0]
        screen["config"].move_to(helped)
        text = screen["config"].list[helped][2]
        self.assertEqual(screen["description"].text, text)
        screen.epgBackupfinished("saved")
        self.assertEqual((screen["status"].text, screen["description"].text), ("saved", ""))
        screen.epgBackupfinished("")
        self.assertEqual(screen["description"].text, text)

    def test_the_front_display_is_told_of_a_changed_value(self):
        screen = self.open()
        told = []
        screen.onChangedEntry = [lambda: told.append(True)]
        screen.on_change()
        self.assertEqual(told, [True])

    def test_the_front_display_is_that_of_the_images_setup(self):
        screen = self.open()
        Screen.createSummary = lambda self: "none"
        self.addCleanup(delattr, Screen, "createSummary")
        self.assertEqual(screen.createSummary(), "none")
        sys.modules["Screens.Setup"] = setup = types.ModuleType("Screens.Setup")
        self.addCleanup(sys.modules.pop, "Screens.Setup")
        setup.SetupSummary = "of the setup"
        self.assertEqual(screen.createSummary(), "of the setup")

    def test_a_host_made_for_the_module_keeps_its_title(self):
        self.box.remove()
        self.box = type(self.box)(contract=True)
        self.box.install()
        self.assertEqual((self.open().title, self.screen["key_red"].text), ("ORSA Veltro", "Exit"))


class PickerTest(BoxTest):
    def test_its_layout_is_not_that_of_the_hosts_list(self):
        def init(self, session, title):
            ChannelSelection.__init__(self, session, title)
            self.skinName = ["SimpleChannelSelection", "ChannelSelection"]

        self.box.modules["Screens.ChannelSelection"].SimpleChannelSelection.__init__ = init
        self.load()
        picker = self.box.session.open(self.module.DVB_EPG_blacklist_ChannelSelection, "/plugin")
        self.assertEqual(picker.skinName, "DVB_EPG_blacklist_ChannelSelection")


if __name__ == "__main__":
    import unittest
    unittest.main()
