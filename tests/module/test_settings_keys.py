"""plugin/src/settings_screen.cpp: moving, changing, saving and leaving."""

from tests.module.case import Boom, HostTestCase, SETTING_KEYS, host, press


class SettingsKeysTestCase(HostTestCase):
    def status(self, screen):
        return dict.__getitem__(screen, "status")._text

    def index(self, screen):
        return dict.__getitem__(screen, "config")._index

    def with_message(self, **settings):
        screen = self.settings(**settings)
        screen.statustext = "Saving finished"
        screen.epgBackupfinished("Saving finished")
        host.recorder.clear()
        return screen


class Moving(SettingsKeysTestCase):
    def test_up_and_down(self):
        for key, direction, row in (("down", "moveDown", 4), ("up", "moveUp", 2)):
            screen = self.with_message(selected=3)
            self.assertIsNone(press(screen, key))
            self.assertCalls(("status.setText", ""), ("config.instance.moveSelection", direction))
            self.assertEqual((self.index(screen), self.status(screen)), (row - 1, ""))
            self.assertEqual((screen.statustext, screen.text), ("", ""))

    def test_wrapping_is_the_widgets_affair(self):
        screen = self.settings(selected=1)
        screen.up()
        self.assertEqual(self.index(screen), 21)

    def test_the_status_line_is_cleared_first(self):
        for key in ("up", "down"):
            screen = self.with_message()
            screen_steps = [step for step in self.pressed(screen, key)]
            self.assertEqual(screen_steps, [("statustext =", ""), ("text =", ""), ("status.setText", ""),
                                            ("config.instance.moveSelection", "moveUp" if key == "up" else "moveDown")])

    def pressed(self, screen, key):
        host.recorder.clear()
        getattr(screen, key)()
        return self.steps

    def test_an_empty_list_only_clears_the_status_line(self):
        for key in ("up", "down"):
            screen = self.with_message()
            dict.__getitem__(screen, "config")._rows = []
            self.assertIsNone(getattr(screen, key)())
            self.assertCalls(("status.setText", ""))

    def test_the_widgets_list_counts_not_the_screens(self):
        screen = self.settings()
        screen.list = []
        screen.down()
        self.assertIn("config.instance.moveSelection", host.recorder.names())

    def test_a_list_of_one_row_is_moved(self):
        screen = self.settings()
        dict.__getitem__(screen, "config")._rows = screen.list[:1]
        screen.down()
        self.assertIn("config.instance.moveSelection", host.recorder.names())

    def test_without_an_instance_moving_fails_after_clearing(self):
        for key in ("up", "down"):
            screen = self.with_message()
            dict.__getitem__(screen, "config")._instance = None
            self.error_of(AttributeError, getattr(screen, key))
            self.assertCalls(("status.setText", ""))


class EpgBackupfinished(SettingsKeysTestCase):
    def test_stores_and_shows_the_text(self):
        screen = self.settings()
        text = "a text of its own"
        self.assertIsNone(screen.epgBackupfinished(text))
        self.assertEqual(self.steps, [("text =", text), ("status.setText", text)])
        self.assertIs(screen.text, text)
        self.assertIs(self.status(screen), text)
        self.assertFalse(hasattr(screen, "statustext"))

    def test_the_member_is_what_is_shown(self):
        class Upper(self.Veltro.Veltro):
            text = property(lambda self: self._shown.upper(), lambda self, value: self.__dict__.update(_shown=value))
        screen = Upper(host.session, "")
        screen.epgBackupfinished("abc")
        self.assertEqual(self.status(screen), "ABC")

    def test_any_value_is_passed_on(self):
        screen = self.settings()
        for value in (None, 5, u"\xe4", b"\xff"):
            screen.epgBackupfinished(value)
            self.assertIs(host.recorder.calls[-1][1], value)


class ChangedEntry(SettingsKeysTestCase):
    def test_clears_the_status_line_and_rebuilds(self):
        screen = self.with_message()
        before = screen.list
        self.assertIsNone(screen.changedEntry())
        self.assertEqual(self.calls[0], ("status.setText", ""))
        self.assertEqual(host.recorder.names()[-1], "config.l.setList")
        self.assertIsNot(screen.list, before)
        self.assertEqual((screen.statustext, screen.text), ("", ""))

    def test_the_host_calls_it_after_a_change(self):
        self.Veltro.Veltro(host.session, "")
        on_change = host.recorder.named("ConfigListScreen.__init__")[0][-1]["on_change"]
        host.recorder.clear()
        self.assertIsNone(on_change())
        self.assertEqual(host.recorder.names()[-1], "config.l.setList")

    def test_client_mode_shows_at_once(self):
        screen = self.settings()
        for client, count in ((True, 20), (False, 22)):
            self.set_value("misc.epg_is_client_stb", client)
            screen.changedEntry()
            self.assertEqual(len(dict.__getitem__(screen, "config")._shown), count)
        self.assertFalse([name for name in host.recorder.names() if name.endswith(".save")])


class KeySave(SettingsKeysTestCase):
    def expected(self, *before_close):
        return ([("eEPGCache.getInstance",), ("eEPGCache.setCacheFile", "/media/hdd/epg.dat")]
                + [("config.%s.save" % key,) for key in SETTING_KEYS] + [("close",)])

    def test_tells_the_cache_saves_the_rows_and_closes(self):
        for client in (False, True):
            screen = self.settings(epg_is_client_stb=client)
            self.assertIsNone(press(screen, "green"))
            self.assertCalls(*self.expected())

    def test_the_cache_is_told_the_present_path(self):
        screen = self.settings()
        path = "/media/usb/" + "epg.dat"
        self.set_value("misc.epgcache_filename", path)
        screen.keySave()
        self.assertIs(host.recorder.named("eEPGCache.setCacheFile")[0][0], path)

    def test_only_rows_tagged_to_save_in_list_order(self):
        screen = self.settings()
        eit, mhw = host.element("usage.epg.eit"), host.element("usage.epg.mhw")
        screen.list = [("a", mhw, "", "to_save"), ("b", eit, "", "To_save"), ("c", eit, "", None),
                       ("d", eit, "", "epgpath"), ["e", eit, "", "to_save"], ("f", mhw, "", u"to_save")]
        screen.keySave()
        self.assertEqual(self.calls[2:], [("config.usage.epg.mhw.save",), ("config.usage.epg.eit.save",),
                                          ("config.usage.epg.mhw.save",), ("close",)])

    def test_an_empty_list(self):
        screen = self.settings()
        screen.list = []
        screen.keySave()
        self.assertEqual(host.recorder.names(), ["eEPGCache.getInstance", "eEPGCache.setCacheFile", "close"])

    def test_a_row_that_is_too_short_stops_it(self):
        screen = self.settings()
        screen.list = screen.list[:1] + [("a", None)] + screen.list[2:]
        self.error_of(IndexError, screen.keySave)
        self.assertEqual(host.recorder.names()[2:], ["config.usage.multiepg_ask_bouquet.save"])

    def test_a_failing_save_leaves_the_screen_open(self):
        screen = self.settings()
        error = Boom()
        host.recorder.fail("config.usage.epg_buffer.save", error)
        self.raised_by(error, screen.keySave)
        self.assertEqual(self.calls, self.expected()[:6])
        self.assertEqual(len(screen.list), 22)

    def test_a_failing_cache_saves_nothing(self):
        screen = self.settings()
        error = Boom()
        host.recorder.fail("eEPGCache.setCacheFile", error)
        self.raised_by(error, screen.keySave)
        self.assertEqual(self.calls, self.expected()[:2])

    def test_values_are_saved(self):
        screen = self.settings()
        self.set_value("usage.epg.eit", False)
        screen.keySave()
        self.assertEqual(host.element("usage.epg.eit")._saved, False)

    def test_the_path_itself_is_not_saved_here(self):
        self.settings().keySave()
        self.assertNotIn("config.misc.epgcache_filename.save", host.recorder.names())


class KeyClose(SettingsKeysTestCase):
    def test_reverts_the_rows_and_closes(self):
        for client in (False, True):
            screen = self.settings(epg_is_client_stb=client)
            self.assertIsNone(screen.keyClose())
            self.assertCalls(*[("config.%s.cancel" % key,) for key in SETTING_KEYS] + [("close",)])

    def test_changed_values_come_back(self):
        screen = self.settings()
        before = [self.value(key) for key in SETTING_KEYS]
        for key in SETTING_KEYS:
            self.set_value(key, "changed")
        screen.changedEntry()
        press(screen, "cancel")
        self.assertEqual([self.value(key) for key in SETTING_KEYS], before)

    def test_a_chosen_directory_is_not_undone(self):
        screen = self.settings()
        screen.gotEPGpath("/media/usb/epg.dat")
        screen.keyClose()
        self.assertEqual(self.value("misc.epgcache_filename"), "/media/usb/epg.dat")

    def test_the_cache_is_not_touched(self):
        self.settings().keyClose()
        self.assertNotIn("eEPGCache.getInstance", host.recorder.names())

    def test_a_failing_cancel_leaves_the_screen_open(self):
        screen = self.settings()
        error = Boom()
        host.recorder.fail("config.usage.epg.eit.cancel", error)
        self.raised_by(error, screen.keyClose)
        self.assertCalls(*[("config.%s.cancel" % key,) for key in SETTING_KEYS[:9]])

    def test_a_list_that_is_rebuilt_meanwhile(self):
        """A host whose elements report a change while they are reverted makes the screen build a new list."""
        screen = self.settings(epg_is_client_stb=True)
        before = list(screen.list)
        reverted = []

        class Eager(object):
            def cancel(self):
                reverted.append(1)
                screen.changedEntry()
        screen.list[:] = [("a", Eager(), "", "to_save")] + before
        self.set_value("misc.epg_is_client_stb", False)
        screen.keyClose()
        self.assertEqual(len(reverted), 1)
        self.assertEqual(host.recorder.names().count("config.usage.multiepg_ask_bouquet.cancel"), 1)
        self.assertEqual(host.recorder.names()[-1], "close")

    def test_rows_present_at_that_moment(self):
        screen = self.settings()
        screen.list = [row for row in screen.list if row[3] != "to_save"]
        screen.keyClose()
        self.assertCalls(("close",))
