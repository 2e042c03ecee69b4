"""Configuration keys: the host's own under the module's paths, and new ones that the host stores."""

from tests.entry.case import BoxTest
from tests.entry.fake_config import ConfigSelection, ConfigSubsection, ConfigText, ConfigYesNo


class KeysTest(BoxTest):
    def view(self):
        self.import_entry()
        return self.box.part("bridge.keys").changes()["Components.config"]["config"]

    def test_same_elements_under_both_paths(self):
        view, config = self.view(), self.config
        for element, host in (
                (view.usage.show_old_epg, config.epg.histminutes),
                (view.usage.show_nownext_eit, config.usage.show_eit_nownext),
                (view.usage.autolanguage.epglanguage, config.autolanguage.audio_epglanguage),
                (view.usage.autolanguage.epglanguage_alternative, config.autolanguage.audio_epglanguage_alternative),
                (view.usage.epg.eit, config.epg.eit), (view.usage.epg.mhw, config.epg.mhw),
                (view.usage.epg.freesat, config.epg.freesat), (view.usage.epg.viasat, config.epg.viasat),
                (view.usage.epg.netmed, config.epg.netmed), (view.usage.epg.virgin, config.epg.virgin),
                (view.usage.multiepg_ask_bouquet, config.usage.multiepg_ask_bouquet)):
            self.assertIs(element, host)
        self.assertFalse(hasattr(config.usage, "epg"), "the host's tree does not get them twice")
        self.assertFalse(hasattr(config.usage, "autolanguage"))

    def test_the_rest_of_the_tree_is_there(self):
        view = self.view()
        self.assertIs(view.epg, self.config.epg)
        self.config.misc.anything = ConfigText("later")
        self.assertEqual(view.misc.anything.value, "later")
        with self.assertRaises(AttributeError):
            view.usage.no_such_key

    def test_new_elements_are_in_the_hosts_tree(self):
        view, config = self.view(), self.config
        for name in ("timer_show_movie_available", "epg_dvb_blacklist_mode", "epg_is_client_stb"):
            self.assertIsInstance(getattr(config.misc, name), ConfigYesNo)
            self.assertIs(getattr(view.misc, name), getattr(config.misc, name))
        for name in ("epg_default_view", "epg_buffer"):
            element = getattr(view.usage, name)
            self.assertIsInstance(element, ConfigSelection)
            self.assertIs(element, getattr(config.usage, name))
        self.assertEqual(int(config.misc.epg_data_timer.value), 0, "nothing is saved unless the user wants it")
        self.assertTrue(all(int(choice) >= 0 for choice in config.misc.epg_data_timer.choices))

    def test_keys_of_some_images(self):
        self.config.plisettings = ConfigSubsection()
        self.config.plisettings.PLIEPG_mode = ConfigSelection([("pliepg", "Graphical")])
        self.config.epg.maxdays = ConfigSelection(["7", "8"])
        view = self.view()
        self.assertIs(view.usage.epg_default_view, self.config.plisettings.PLIEPG_mode)
        self.assertIs(view.usage.epg_buffer, self.config.epg.maxdays)
        self.assertFalse(hasattr(self.config.usage, "epg_buffer"))

    def test_a_host_without_any_of_the_sources(self):
        self.box.config.__dict__.pop("epg")
        self.box.config.__dict__.pop("autolanguage")
        view = self.view()
        self.assertIs(view.usage.epg.eit, self.config.usage.epg.eit)
        self.assertIs(view.usage.autolanguage.epglanguage, self.config.usage.autolanguage.epglanguage)

    def test_every_row_can_be_shown(self):
        self.load()
        screen = self.box.session.open(self.module.Veltro, "/plugin")
        self.assertEqual(len(screen.list), 22)
        self.module.config.misc.epg_is_client_stb.value = True
        screen.createSetup()
        self.assertEqual(len(screen.list), 20)


class StoredTest(BoxTest):
    facts = {"stored": {"epg_data_timer": "30"}}

    def test_a_stored_value_comes_back(self):
        self.load()
        self.assertEqual(self.module.config.misc.epg_data_timer.value, "30")
        self.module.epg_timer.init_timer()
        self.assertEqual(self.module.epg_timer.epg_timer._timer.started, [(30 * 60000, True)])


class ClientTest(BoxTest):
    """The host's own saving follows client mode where it has a switch."""

    facts = {"cache": ("flushEPG", "setSave")}

    def switch(self, value):
        calls = self.box.eEPGCache.getInstance().calls
        del calls[:]
        self.client.value = value
        return calls[-1]

    def start(self):
        self.load()
        self.client = self.module.config.misc.epg_is_client_stb

    def test_saving_follows(self):
        self.start()
        self.assertEqual(self.box.eEPGCache.getInstance().calls, [("setSave", True)])
        self.assertEqual(self.switch(True), ("setSave", False))
        self.assertEqual(self.switch(False), ("setSave", True))

    def test_the_users_own_setting_stays(self):
        self.config.epg.saveepg = ConfigYesNo(False)
        self.start()
        self.assertEqual(self.switch(True), ("setSave", False))
        self.assertEqual(self.switch(False), ("setSave", False))
        self.assertFalse(self.config.epg.saveepg.value)

    def test_saving_by_hand_works_in_client_mode(self):
        self.start()
        self.client.value = True
        screen = self.box.session.open(self.module.Veltro, "/plugin")
        calls = self.box.eEPGCache.getInstance().calls
        del calls[:]
        self.client.value = False
        self.module.doEPGAction("save")
        self.client.value = True
        self.assertEqual(calls, [("setSave", True), ("save",), ("setSave", False)])
        self.assertEqual(len(screen.list), 20)
