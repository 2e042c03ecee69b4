"""plugin/src/settings_screen.cpp: createSetup, the rows of the settings list."""

from tests.module.case import Boom, HostTestCase, PYTHON2, SETTING_KEYS, host, shape

SAVE = "to_save"
SOURCE = "[Use %s EPG information when it is available.]"
FIXED = [
    ("[Multi-EPG bouquet selection]", "config.usage.multiepg_ask_bouquet", "", SAVE),
    ("[Show icon when movie is in database]", "config.misc.timer_show_movie_available", "", SAVE),
    ("[Default EPG view (EPG button)]", "config.usage.epg_default_view", "", SAVE),
    ("[Save EPG for X days in future]", "config.usage.epg_buffer", "", SAVE),
    ("[Show EPG data in single EPG list older than]", "config.usage.show_old_epg", "", SAVE),
    ("[Show Now/Next EIT EPG at InfoBar]", "config.usage.show_nownext_eit", "", SAVE),
    ("[EPG language selection 1]", "config.usage.autolanguage.epglanguage",
     "[Configure the primary EPG language.]", SAVE),
    ("[EPG language selection 2]", "config.usage.autolanguage.epglanguage_alternative",
     "[Configure the secondary EPG language.]", SAVE),
    ("[Enable EIT EPG]", "config.usage.epg.eit", SOURCE % "EIT", SAVE),
    ("[Enable MHW EPG]", "config.usage.epg.mhw", SOURCE % "MHW", SAVE),
    ("[Enable freesat EPG]", "config.usage.epg.freesat", SOURCE % "FreeSat", SAVE),
    ("[Enable ViaSat EPG]", "config.usage.epg.viasat", SOURCE % "ViaSat", SAVE),
    ("[Enable Netmed EPG]", "config.usage.epg.netmed", SOURCE % "Netmed", SAVE),
    ("[Enable Virgin EPG]", "config.usage.epg.virgin", SOURCE % "Virgin", SAVE),
    ("[Forbid DVB EPG update for black listed services]", "config.misc.epg_dvb_blacklist_mode", "", SAVE),
    ("[Edit blacklist for DVB EPG]", "ConfigNothing", "", "edit_dvb_epg_blacklist"),
    ("[EPG Path :] /media/hdd", "ConfigNothing", "", "epgpath"),
    ("[Enable EPG client mode (don't save EPG file)]", "config.misc.epg_is_client_stb", "", SAVE),
]
CLIENT = [
    ("[Load EPG data from file every X minutes (0 = off)]", "config.misc.epg_data_timer", "", SAVE),
    ("[Load EPG data from epg.dat]", "ConfigNothing", "", "epgrestore"),
]
NORMAL = [
    ("[Save EPG data every X minutes to file (0 = off)]", "config.misc.epg_data_timer", "", SAVE),
    ("[Save EPG cache to epg.dat]", "ConfigNothing", "", "epgbackup"),
    ("[Load EPG data from epg.dat]", "ConfigNothing", "", "epgrestore"),
    ("[Delete broken epg.dat]", "ConfigNothing", "", "epgdelete"),
]


class CreateSetup(HostTestCase):
    def rows(self, **values):
        return self.settings(**values).list

    def path_row(self, file_name):
        return self.rows(epgcache_filename=file_name)[16][0]

    def test_the_rows_of_a_receiver(self):
        self.assertEqual(shape(self.rows()), FIXED + NORMAL)

    def test_the_rows_of_a_client(self):
        self.assertEqual(shape(self.rows(epg_is_client_stb=True)), FIXED + CLIENT)

    def test_client_mode_is_tested_for_truth(self):
        for value, count in ((1, 20), ("no", 20), (0, 22), ("", 22), (None, 22)):
            self.assertEqual(len(self.rows(epg_is_client_stb=value)), count)

    def test_each_row_carries_the_hosts_element_itself(self):
        elements = [row[1] for row in self.rows() if row[3] == SAVE]
        for element, key in zip(elements, SETTING_KEYS):
            self.assertIs(element, host.element(key))
        self.assertEqual(len(elements), len(SETTING_KEYS))

    def test_action_rows_carry_the_screens_placeholders(self):
        screen = self.settings()
        for row, name in ((16, "input_epgpath"), (17, "input_epgpath"), (20, "input_epgbackup"),
                          (21, "input_epgrestore"), (22, "input_epgdelete")):
            self.assertIs(screen.list[row - 1][1], getattr(screen, name))
        screen = self.settings(epg_is_client_stb=True)
        self.assertIs(screen.list[19][1], screen.input_epgrestore)

    def test_the_rows_to_save(self):
        for client in (False, True):
            rows = self.rows(epg_is_client_stb=client)
            self.assertEqual([number for number, row in enumerate(rows, 1) if row[3] == SAVE],
                             list(range(1, 16)) + [18, 19])

    def test_rows_are_what_the_host_makes_of_four_fields(self):
        screen = self.settings()
        screen.createSetup()
        self.assertEqual([event[1:] for event in host.recorder.calls if event[0] == "getConfigListEntry"], screen.list)

    def test_the_order_of_the_steps(self):
        screen = self.settings()
        self.assertIsNone(screen.createSetup())
        self.assertEqual([step[0] for step in self.steps], ["getConfigListEntry"] * 18 + ["list ="]
                         + ["getConfigListEntry"] * 4 + ["config.list =", "config.l.setList"])

    def test_the_widget_gets_the_screens_own_list(self):
        screen = self.settings()
        before = screen.list
        screen.createSetup()
        self.assertIsNot(screen.list, before)
        self.assertEqual(type(screen.list), list)
        for name in ("config.list =", "config.l.setList"):
            self.assertIs(host.recorder.named(name)[0][0], screen.list)

    def test_what_is_shown_are_all_rows(self):
        screen = self.settings()
        self.assertEqual(dict.__getitem__(screen, "config")._shown, screen.list)

    def test_the_selection_is_left_alone(self):
        screen = self.settings(selected=7)
        screen.createSetup()
        self.assertEqual(dict.__getitem__(screen, "config")._index, 6)

    def test_placeholders_survive_a_rebuild(self):
        screen = self.settings()
        before = screen.input_epgbackup
        screen.createSetup()
        self.assertIs(screen.input_epgbackup, before)
        self.assertIs(screen.list[19][1], before)

    def test_the_path_row(self):
        for file_name, shown in (("/media/hdd/epg.dat", "/media/hdd"), ("/data/other", "/data/other"), ("", ""),
                                 ("/epg.dat", ""), ("/a/epg.dat/b/epg.dat", "/a/b"), ("/a/epg.data", "/aa"),
                                 ("/data/epg.dat.bak", "/data.bak"), ("epg.dat", "epg.dat"), ("/EPG.DAT", "/EPG.DAT"),
                                 ("/epg.d/epg.datat", "/epg.dat"), ("/100%/%s %d/epg.dat", "/100%/%s %d")):
            self.assertEqual(self.path_row(file_name), "[EPG Path :] " + shown)

    def test_the_path_is_converted_to_text(self):
        class Name(object):
            def __str__(self):
                return "/media/usb/epg.dat"
        self.assertEqual(self.path_row(Name()), "[EPG Path :] /media/usb")
        self.assertEqual(self.path_row(None), "[EPG Path :] None")
        self.assertEqual(self.path_row(5), "[EPG Path :] 5")

    def test_a_path_with_other_letters(self):
        path = "/media/M\xc3\xbcsik/epg.dat" if PYTHON2 else u"/media/M\xfcsik/epg.dat"
        self.assertEqual(self.path_row(path), "[EPG Path :] " + path.replace("/epg.dat", ""))

    def test_a_path_with_undecodable_bytes(self):
        path = "/media/\xff/epg.dat" if PYTHON2 else "/media/\udcff/epg.dat"
        self.assertEqual(self.path_row(path), "[EPG Path :] " + path.replace("/epg.dat", ""))

    def test_only_the_path_is_formatted_into_the_label(self):
        host.catalogue["EPG Path :"] = "100% %s EPG:"
        self.assertEqual(self.path_row("/x/epg.dat"), "100% %s EPG: /x")

    def test_a_translation_of_the_other_text_type(self):
        """Catalogues of Python 2.7 may give unicode."""
        host.catalogue["EPG Path :"] = u"EPG-Pfad:"
        self.assertEqual(self.path_row("/x/epg.dat"), u"EPG-Pfad: /x")

    def test_labels_and_descriptions_are_translated_once_per_build_and_the_empty_text_never(self):
        screen = self.settings()
        screen.createSetup()
        asked = [event[1] for event in host.recorder.events if event[0] == "_"]
        texts = [text for row in FIXED + NORMAL for text in (row[0], row[2]) if text]
        self.assertEqual(asked, [text[1:text.index("]")] for text in texts])

    def test_descriptions_that_are_empty_are_the_empty_text(self):
        self.assertEqual(sum(row[2] == "" for row in self.rows()), 22 - 8)

    def test_each_missing_key_ends_the_construction(self):
        for key in SETTING_KEYS + ("misc.epgcache_filename",):
            host.reset()
            self.Veltro = host.load()
            host.remove_key(key)
            error = self.error_of(AttributeError, self.settings)
            self.assertIn("config." + key, str(error))
            self.assertNotIn("config.l.setList", host.recorder.names())

    def test_a_missing_key_of_the_fixed_rows_leaves_the_old_list(self):
        screen = self.settings()
        before = screen.list
        host.remove_key("misc.epg_dvb_blacklist_mode")
        self.error_of(AttributeError, screen.createSetup)
        self.assertIs(screen.list, before)

    def test_the_client_key_is_read_after_the_fixed_rows(self):
        screen = self.settings()

        class Moody(object):
            def __bool__(self):
                raise Boom()
            __nonzero__ = __bool__
        self.set_value("misc.epg_is_client_stb", Moody())
        self.error_of(Boom, screen.createSetup)
        self.assertEqual(len(screen.list), 18)
        self.assertEqual(len(dict.__getitem__(screen, "config")._shown), 22)

    def test_the_path_is_read_first(self):
        self.settings().createSetup()
        self.assertEqual(host.recorder.events[0:3], [("config.misc",), ("config.misc.epgcache_filename",),
                                                     ("config.misc.epgcache_filename.value",)])
