"""Names that a host lacks."""

import sys
import types

from tests.entry.case import BoxTest
from tests.entry.fake_config import ConfigSelection


class NamesTest(BoxTest):
    def changes(self):
        self.import_entry()
        return self.box.part("bridge.names").changes()

    def test_what_boxes_lack(self):
        changes = self.changes()
        self.assertEqual(changes["Screens.ChannelSelection"], {"eEnv": self.box.modules["enigma"].eEnv})
        self.assertEqual(list(changes["Components.ConfigList"]), ["getSelectionChoices"])
        self.assertNotIn("_enigma", changes)

    def test_new_is_made_only_where_it_is_missing(self):
        sys.modules["new"] = types.ModuleType("new")
        self.addCleanup(sys.modules.pop, "new")
        self.assertNotIn("new", self.changes())
        sys.modules["new"] = None  # the import of it fails
        del self.box.modules["_enigma"], sys.modules["_enigma"]
        changes = self.changes()
        self.assertEqual((changes["new"], changes["_enigma"]), ({}, {}))

    def test_other_names_that_a_wholesale_import_must_bring(self):
        channel_list = self.box.modules["Screens.ChannelSelection"]
        for name in ("eServiceReference", "eServiceCenter", "ServiceReference"):
            delattr(channel_list, name)
        changes = self.changes()["Screens.ChannelSelection"]
        self.assertIs(changes["eServiceCenter"], self.box.modules["enigma"].eServiceCenter)
        self.assertIs(changes["ServiceReference"], self.box.modules["ServiceReference"].ServiceReference)
        self.assertIs(changes["eServiceReference"], self.box.modules["enigma"].eServiceReference)

    def test_choices_of_a_selection(self):
        self.import_entry()
        element = ConfigSelection([("a", "First"), ("b", "Second"), "c"], "b")
        choices, index = self.box.part("bridge.names").getSelectionChoices(element)
        self.assertEqual((choices, index), ([("First", "a"), ("Second", "b"), ("c", "c")], 1))


class NamesOfTheContractTest(BoxTest):
    facts = {"contract": True}

    def test_nothing(self):
        self.import_entry()
        self.assertEqual(self.box.part("bridge.names").changes(), {})
        self.assertEqual(self.box.part("bridge").changes(), {})
