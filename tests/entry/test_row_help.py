"""The help line of every row, and what it says where the host does not act on a setting."""

import sys
import types

from tests.entry.case import BoxTest
from tests.entry.fake_config import ConfigYesNo

NOT_USED = "This image does not use this setting."


class HelpTest(BoxTest):
    def rows(self):
        self.load()
        return self.box.session.open(self.module.Veltro, "/plugin").list

    def unused(self):
        return [number for number, row in enumerate(self.rows(), 1) if row[2] == NOT_USED]

    def test_every_row_has_one(self):
        self.load()
        screen = self.box.session.open(self.module.Veltro, "/plugin")
        for client in (False, True):
            self.module.config.misc.epg_is_client_stb.value = client
            screen.createSetup()
            self.assertEqual([row[0] for row in screen.list if not row[2]], [])

    def test_what_the_module_says_itself_stays(self):
        self.assertEqual(self.rows()[8][2], "Use EIT EPG information when it is available.")

    def test_what_the_host_does_not_have(self):
        self.assertEqual(self.unused(), [1, 2, 3, 4, 15, 16])

    def test_what_the_host_has(self):
        self.config.misc.timer_show_movie_available = ConfigYesNo()
        self.config.usage.epg_buffer = ConfigYesNo()
        self.config.misc.epg_dvb_blacklist_mode = ConfigYesNo()
        del self.config.epg.__dict__["mhw"]
        self.assertEqual(self.unused(), [1, 3, 10])

    def test_the_two_labels_of_the_timer(self):
        self.load()
        screen = self.box.session.open(self.module.Veltro, "/plugin")
        self.assertIn("Save", screen.list[18][2])
        self.module.config.misc.epg_is_client_stb.value = True
        screen.createSetup()
        self.assertIn("Load", screen.list[18][2])

    def test_client_mode_without_a_switch_says_so(self):
        self.assertIn("own saving", self.rows()[17][2])

    def test_translated(self):
        self.box.catalogue = {NOT_USED: "Braucht hier keiner."}
        self.assertEqual(self.rows()[1][2], "Braucht hier keiner.")


class CompleteTest(BoxTest):
    facts = {"contract": True}

    def test_a_host_that_has_every_key_and_lacks_something_else(self):
        del self.box.modules["Components.ConfigList"].getSelectionChoices
        self.load()
        rows = self.box.session.open(self.module.Veltro, "/plugin").list
        self.assertEqual((len(rows), [row[0] for row in rows if not row[2]]), (22, []))
        self.assertIn("Save", rows[18][2])


class SwitchTest(HelpTest):
    facts = {"cache": ("flushEPG", "setSave")}

    def test_client_mode_without_a_switch_says_so(self):
        self.assertNotIn("own saving", self.rows()[17][2])


class ReaderTest(BoxTest):
    """A setting that the host keeps is used when code of a screen or a plug-in asks for it."""

    def used(self, source, name="Screens.Some"):
        some = types.ModuleType(name)
        exec(source, vars(some))
        sys.modules[name] = some
        self.addCleanup(sys.modules.pop, name)
        self.load()
        return self.box.session.open(self.module.Veltro, "/plugin").list[0][2] != NOT_USED

    def test_nobody(self):
        self.assertFalse(self.used("def f(): return config.usage.something_else.value"))

    def test_a_function(self):
        self.assertTrue(self.used("def f(): return config.usage.multiepg_ask_bouquet.value"))

    def test_a_method(self):
        self.assertTrue(self.used("class Some:\n def f(self):\n  return config.usage.multiepg_ask_bouquet.value"))

    def test_a_function_in_a_method_of_a_plugin(self):
        self.assertTrue(self.used("class Some(object):\n def f(self):\n  return lambda: config.usage.multiepg_ask_bouquet",
                                  "Plugins.Extensions.Grid.plugin"))

    def test_one_that_comes_later(self):
        self.assertFalse(self.used("", "Screens.First"))
        self.assertTrue(self.used("def f(): return config.usage.multiepg_ask_bouquet", "Screens.Second"))

    def test_who_defines_it_is_no_reader(self):
        self.assertFalse(self.used("def f(): config.usage.multiepg_ask_bouquet = 0", "Components.Some"))
