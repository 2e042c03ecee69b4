"""plugin/src/settings_screen.cpp: the OK key and what it opens."""

from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, PYTHON2, host, press

SAVE_ROW, LOAD_ROW, DELETE_ROW, BLACKLIST_ROW, PATH_ROW, SELECTION_ROW, SWITCH_ROW = 20, 21, 22, 16, 17, 3, 9
CLIENT = "config.misc.epg_is_client_stb.value ="


class OkTestCase(HostTestCase):
    def pressed(self, row, **values):
        screen = self.settings(selected=row, **values)
        self.assertIsNone(press(screen, "ok"))
        return screen

    def acts(self, *expected):
        """The calls, apart from those that read the current row."""
        reading = ("config.l.getCurrentSelection", "config.getCurrent")
        self.assertEqual([call for call in self.calls if call[0] not in reading], list(expected))

    def status(self, screen):
        return dict.__getitem__(screen, "status")._text


class CacheActions(OkTestCase):
    def test_save(self):
        screen = self.pressed(SAVE_ROW)
        text = "[Saving of EPG cache to /media/hdd/epg.dat finished]"
        self.acts(("eEPGCache.getInstance",), ("eEPGCache.save",), ("status.setText", text))
        self.assertEqual((screen.statustext, screen.text, self.status(screen)), (text, text, text))
        self.assertIs(self.value("misc.epg_is_client_stb"), False)

    def test_save_switches_client_mode_off_for_its_duration(self):
        screen = self.settings(selected=SAVE_ROW)
        self.set_value("misc.epg_is_client_stb", True)
        seen = []
        self.replace(self.Veltro, "doEPGAction",
                     lambda *action: seen.append(action + (self.value("misc.epg_is_client_stb"),)))
        screen.keyOk()
        self.assertEqual(seen, [("save", False)])
        self.acts((CLIENT, False), (CLIENT, True),
                  ("status.setText", "[Saving of EPG cache to /media/hdd/epg.dat finished]"))
        self.assertIs(host.recorder.named(CLIENT)[0][0], False)
        self.assertIs(host.recorder.named(CLIENT)[1][0], True)

    def test_the_order_of_a_save_in_client_mode(self):
        screen = self.settings(selected=SAVE_ROW)
        self.set_value("misc.epg_is_client_stb", "yes")
        screen.keyOk()
        self.acts((CLIENT, False), ("eEPGCache.getInstance",), ("eEPGCache.save",), (CLIENT, True),
                  ("status.setText", "[Saving of EPG cache to /media/hdd/epg.dat finished]"))

    def test_a_failing_save_leaves_client_mode_off(self):
        screen = self.settings(selected=SAVE_ROW)
        self.set_value("misc.epg_is_client_stb", True)
        error = Boom()
        host.recorder.fail("eEPGCache.save", error)
        self.raised_by(error, screen.keyOk)
        self.assertIs(self.value("misc.epg_is_client_stb"), False)
        self.assertEqual(self.status(screen), "")
        self.assertFalse(hasattr(screen, "statustext"))

    def test_load(self):
        screen = self.pressed(LOAD_ROW)
        text = "[Loading EPG data from /media/hdd/epg.dat finished]"
        self.acts(("eEPGCache.getInstance",), ("eEPGCache.load",), ("status.setText", text))
        self.assertEqual(screen.statustext, text)

    def test_load_in_client_mode(self):
        self.pressed(20, epg_is_client_stb=True)
        self.acts(("eEPGCache.getInstance",), ("eEPGCache.load",),
                  ("status.setText", "[Loading EPG data from /media/hdd/epg.dat finished]"))

    def test_delete(self):
        screen = self.pressed(DELETE_ROW)
        self.acts(("eEPGCache.getInstance",), ("eEPGCache.clearDB",), ("eEPGCache.save",),
                  ("status.setText", "[Clearing EPG DB finished]"))
        self.assertEqual(screen.statustext, "[Clearing EPG DB finished]")
        self.assertEqual(host.recorder.named("config.misc.epgcache_filename.value"), [])

    def test_the_text_is_translated_first_and_filled_afterwards(self):
        host.catalogue["Saving of EPG cache to %s finished"] = "Fertig: %s"
        host.catalogue["Fertig: %s"] = "translated twice"
        self.set_value("misc.epgcache_filename", "/a %s b")
        self.assertEqual(self.status(self.pressed(SAVE_ROW)), "Fertig: /a %s b")

    def test_a_path_that_is_no_text_is_filled_in_as_text(self):
        screen = self.pressed(LOAD_ROW, epgcache_filename=None)
        self.assertEqual(self.status(screen), "[Loading EPG data from None finished]")

    def test_a_translation_of_the_other_text_type(self):
        host.catalogue["Clearing EPG DB finished"] = u"gel\xf6scht"
        host.catalogue["Loading EPG data from %s finished"] = u"gel\xf6scht %s"
        self.assertEqual(self.status(self.pressed(DELETE_ROW)), u"gel\xf6scht")
        self.assertEqual(self.status(self.pressed(LOAD_ROW)), u"gel\xf6scht /media/hdd/epg.dat")

    if PYTHON2:
        def test_a_path_of_the_other_text_type(self):
            screen = self.pressed(LOAD_ROW, epgcache_filename="/media/hdd/epg.dat")
            self.set_value("misc.epgcache_filename", u"/media/M\xfcsik/epg.dat")
            screen.keyOk()
            self.assertEqual(self.status(screen), u"[Loading EPG data from /media/M\xfcsik/epg.dat finished]")

    def test_the_result_of_the_action_does_not_matter(self):
        screen = self.settings(selected=SAVE_ROW)
        self.replace(self.Veltro, "doEPGAction", lambda action: False)
        screen.keyOk()
        self.assertIn("finished", self.status(screen))

    def test_a_failing_action_shows_nothing(self):
        for row, name in ((SAVE_ROW, "save"), (LOAD_ROW, "load"), (DELETE_ROW, "clearDB"), (DELETE_ROW, "save"),
                          (SAVE_ROW, "getInstance")):
            screen = self.settings(selected=row)
            error = Boom()
            host.recorder.fail("eEPGCache." + name, error)
            self.raised_by(error, screen.keyOk)
            self.assertNotIn("status.setText", host.recorder.names())
            self.assertFalse(hasattr(screen, "statustext"))

    def test_what_is_shown_is_the_member(self):
        class Screen(self.Veltro.Veltro):
            statustext = property(lambda self: "read back", lambda self, value: None)
        screen = Screen(host.session, PLUGIN_PATH)
        dict.__getitem__(screen, "config")._index = DELETE_ROW - 1
        screen.keyOk()
        self.assertEqual(self.status(screen), "read back")

    def test_the_screen_stays_open(self):
        for row in (SAVE_ROW, LOAD_ROW, DELETE_ROW):
            self.assertEqual(len(self.pressed(row).list), 22)
            self.assertNotIn("close", host.recorder.names())

    def test_a_key_clears_the_message(self):
        for key in ("up", "down", "changedEntry"):
            screen = self.pressed(DELETE_ROW)
            getattr(screen, key)()
            self.assertEqual((self.status(screen), screen.statustext), ("", ""))


class OtherScreens(OkTestCase):
    def test_the_path_row_opens_the_chooser(self):
        screen = self.pressed(PATH_ROW)
        self.acts(("session.openWithCallback", "gotEPGpath", "DirChoose", "/media/hdd/"))
        callback, opened, _ = host.recorder.named("session.openWithCallback")[0]
        self.assertEqual(callback, screen.gotEPGpath)
        self.assertIs(opened, self.Veltro.DirChoose)

    def test_the_start_directory_loses_every_file_name(self):
        for path, directory in (("/media/hdd/epg.dat", "/media/hdd/"), ("/data/epg.dat.bak", "/data/.bak"),
                                ("/a/epg.dat/epg.dat", "/a//"), ("/media/other", "/media/other"), ("epg.dat", ""),
                                ("", ""), (None, "None")):
            self.pressed(PATH_ROW, epgcache_filename=path)
            self.assertEqual(host.recorder.named("session.openWithCallback")[0][2], directory)

    def test_the_blacklist_row_opens_the_editor(self):
        self.pressed(BLACKLIST_ROW)
        self.acts(("session.open", "Edit_DVB_EPG_Blacklist", PLUGIN_PATH))
        self.assertIs(host.recorder.named("session.open")[0][0], self.Veltro.Edit_DVB_EPG_Blacklist)

    def test_the_plugin_path_is_the_member(self):
        screen = self.settings(selected=BLACKLIST_ROW)
        screen.skin_path = path = "/elsewhere"
        screen.keyOk()
        self.assertIs(host.recorder.named("session.open")[0][1], path)

    def test_the_session_is_the_member(self):
        for row in (PATH_ROW, BLACKLIST_ROW, SELECTION_ROW):
            opened = []

            class Other(object):
                open = openWithCallback = lambda self, *arguments, **keywords: opened.append(arguments)
            screen = self.settings(selected=row)
            screen.session = Other()
            screen.keyOk()
            self.assertEqual(len(opened), 1)

    def test_the_status_line_is_left_alone(self):
        for row in (PATH_ROW, BLACKLIST_ROW, SELECTION_ROW, SWITCH_ROW):
            screen = self.settings(selected=row)
            screen.epgBackupfinished("before")
            host.recorder.clear()
            screen.keyOk()
            self.assertNotIn("status.setText", host.recorder.names())
            self.assertEqual(self.status(screen), "before")
            self.assertFalse(hasattr(screen, "statustext"))

    def test_tags_are_compared_as_text(self):
        screen = self.settings()
        widget = dict.__getitem__(screen, "config")
        eit = host.element("usage.epg.eit")
        for tag in ("EPGBACKUP", "epgbackup ", "", None, 5, b"epgbackup\xff"):
            widget._rows = [("label", eit, "", tag)]
            widget._index = 0
            host.recorder.clear()
            screen.keyOk()
            self.acts()
        widget._rows = [("label", eit, "", u"epgdelete")]
        screen.keyOk()
        self.assertIn("eEPGCache.clearDB", host.recorder.names())

    def test_rows_may_be_lists(self):
        screen = self.settings()
        dict.__getitem__(screen, "config")._rows = [["label", None, "", "epgrestore"]]
        screen.keyOk()
        self.assertIn("eEPGCache.load", host.recorder.names())


class ReadingTheTag(OkTestCase):
    def test_ordinary_errors_count_as_no_tag(self):
        for error in (Boom(), IndexError(), KeyError(), TypeError(), AttributeError(), StopIteration(), MemoryError()):
            screen = self.settings(selected=SWITCH_ROW)
            host.recorder.fail("config.l.getCurrentSelection", error)
            self.assertIsNone(screen.keyOk())
            self.assertCalls(("config.l.getCurrentSelection",), ("config.getCurrent",))

    def test_an_action_row_whose_tag_can_not_be_read_does_not_act(self):
        screen = self.settings(selected=DELETE_ROW)
        host.recorder.fail("config.l.getCurrentSelection", Boom())
        screen.keyOk()
        self.assertNotIn("eEPGCache.getInstance", host.recorder.names())

    def test_the_end_of_the_program_is_no_ordinary_error(self):
        for error in (KeyboardInterrupt(), SystemExit(), GeneratorExit()):
            screen = self.settings(selected=SWITCH_ROW)
            host.recorder.fail("config.l.getCurrentSelection", error)
            self.raised_by(error, screen.keyOk)
            self.assertCalls(("config.l.getCurrentSelection",))

    if PYTHON2:
        def test_an_error_of_an_old_style_class_is_no_ordinary_error(self):
            class Old:
                pass
            screen = self.settings(selected=SWITCH_ROW)
            host.recorder.fail("config.l.getCurrentSelection", Old())
            self.error_of(Old, screen.keyOk)

    def test_a_missing_widget_is_swallowed_there_but_not_afterwards(self):
        screen = self.settings()
        dict.pop(screen, "config")
        self.error_of(KeyError, screen.keyOk)
        self.assertEqual([event[0] for event in host.recorder.events], ['["config"]', '["config"]'])

    def test_no_selected_row_ends_with_an_error_at_the_selection_test(self):
        screen = self.settings()
        dict.__getitem__(screen, "config")._rows = []
        self.error_of(TypeError, screen.keyOk)
        self.assertCalls(("config.l.getCurrentSelection",), ("config.getCurrent",))

    def test_a_short_row_has_no_tag(self):
        screen = self.settings()
        widget = dict.__getitem__(screen, "config")
        widget._rows = [("label", host.element("usage.epg_default_view"), "epgdelete")]
        screen.keyOk()
        self.assertEqual(host.recorder.names()[-1], "session.openWithCallback")
        widget._rows = [("label",)]
        self.error_of(IndexError, screen.keyOk)

    def test_nothing_is_said_about_it(self):
        screen = self.settings(selected=SWITCH_ROW)
        host.recorder.fail("config.l.getCurrentSelection", Boom())
        screen.keyOk()
        self.assertEqual(host.recorder.named("console"), [])

    def test_the_tag_comes_from_the_list_content_and_the_rest_from_the_widget(self):
        screen = self.settings(selected=SELECTION_ROW)
        widget = dict.__getitem__(screen, "config")
        self.replace(type(widget._content), "getCurrentSelection", lambda self: ("", None, "", "epgrestore"))
        screen.keyOk()
        self.assertIn("eEPGCache.load", host.recorder.names())
