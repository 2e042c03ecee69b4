"""The row "Default EPG view": the host's own setting, which may come late, or the function of its EPG key."""

import sys
import types

from tests.entry.case import BoxTest
from tests.entry.fake_config import ConfigSelection, ConfigSubsection, ConfigText

GRAPHICAL = "Plugins/Extensions/Grid/1"


class DefaultViewTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.load()

    @property
    def element(self):
        return self.module.config.usage.epg_default_view

    def test_a_setting_that_comes_with_the_info_bar(self):
        self.config.usage.defaultEPGType = ConfigSelection([("Grid", "Grid EPG"), ("Single", "Single EPG")])
        self.assertIs(self.element, self.config.usage.defaultEPGType)
        self.assertFalse(hasattr(self.config.usage, "epg_default_view"), "nothing of ours beside it")

    def test_the_setting_of_another_family(self):
        self.config.plisettings = ConfigSubsection()
        self.config.plisettings.PLIEPG_mode = ConfigSelection([("pliepg", "Graphical")])
        self.assertIs(self.element, self.config.plisettings.PLIEPG_mode)

    def test_no_such_setting(self):
        self.assertIs(self.element, self.config.usage.epg_default_view)
        self.assertIs(self.element, self.element)
        self.assertEqual(self.box.session.open(self.module.Veltro, "/").list[2][2], "This image does not use this setting.")


class KeyTest(BoxTest):
    """A host that gives its keys functions by name."""

    stored = {}

    def setUp(self):
        self.facts = {"stored": self.stored}
        BoxTest.setUp(self)
        self.config.misc.hotkey = ConfigSubsection()
        self.key = self.config.misc.hotkey.epg = ConfigText(GRAPHICAL)
        hotkeys = types.ModuleType("Screens.Hotkey")
        hotkeys.hotkey = type("hotkey", (object,), {"functions": None})
        hotkeys.getHotkeyFunctions = lambda: setattr(hotkeys.hotkey, "functions", [
            ("Single", "Infobar/openSingleServiceEPG", "EPG"), ("Volume up", "Infobar/volumeUp", "InfoBar"),
            ("Multi", "Infobar/openMultiServiceEPG", "EPG")])
        sys.modules["Screens.Hotkey"] = hotkeys
        self.addCleanup(sys.modules.pop, "Screens.Hotkey")
        self.load()

    @property
    def element(self):
        return self.module.config.usage.epg_default_view

    def choose(self, value, leave="save"):
        element = self.element
        element.value = value
        self.assertIs(self.element, element, "a list that is built anew shows the same element")
        self.assertEqual(element.value, value, "and what is chosen but not yet saved")
        getattr(element, leave)()

    def choices(self):
        return [self.element.description[value] for value in self.element.choices]

    def test_the_hosts_screens_and_the_users_own(self):
        self.assertEqual(self.choices(), ["Single", "Multi", "As set for the key"])
        self.assertEqual(self.element.description[self.element.value], "As set for the key")
        self.assertFalse(self.element.isChanged())

    def test_nothing_before_it_is_saved(self):
        self.choose("Infobar/openMultiServiceEPG", "cancel")
        self.assertEqual(self.key.value, GRAPHICAL)
        self.assertFalse(self.element.isChanged())

    def test_saved(self):
        self.choose("Infobar/openMultiServiceEPG")
        self.assertEqual((self.key.value, self.key.saved_value), ("Infobar/openMultiServiceEPG",) * 2)
        self.assertEqual(self.element.value, "Infobar/openMultiServiceEPG")

    def test_the_users_own_can_be_chosen_again(self):
        self.choose("Infobar/openMultiServiceEPG")
        self.assertEqual(self.config.misc.veltro_epg_key.saved_value, GRAPHICAL)
        self.choose(self.element.choices[-1])
        self.assertEqual(self.key.value, GRAPHICAL)

    def test_given_another_function_elsewhere(self):
        self.element
        self.key.value = "Infobar/openSingleServiceEPG,Infobar/volumeUp"
        self.assertEqual(self.element.description[self.element.value], "As set for the key")
        self.choose("Infobar/openSingleServiceEPG")
        self.choose(self.element.choices[-1])
        self.assertEqual(self.key.value, "Infobar/openSingleServiceEPG,Infobar/volumeUp")

    def test_a_key_without_a_function(self):
        self.key.value = ""
        self.assertEqual(self.element.description[self.element.value], "As set for the key")
        self.choose("Infobar/openSingleServiceEPG")
        self.assertEqual(self.choices(), ["Single", "Multi"], "there is nothing to go back to")

    def test_a_host_that_keeps_its_screens_in_another_way(self):
        del sys.modules["Screens.Hotkey"].hotkey
        self.assertEqual(self.choices(), ["Single EPG", "Multi EPG", "Event view", "As set for the key"])


class StoredKeyTest(KeyTest):
    stored = {"veltro_epg_key": "Infobar/volumeUp"}

    def test_the_users_own_is_known_after_a_restart(self):
        self.key.value = "Infobar/openSingleServiceEPG"
        self.assertEqual(self.choices(), ["Single", "Multi", "As set for the key"])
        self.choose(self.element.choices[-1])
        self.assertEqual(self.key.value, "Infobar/volumeUp")
