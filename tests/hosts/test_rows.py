"""The rows of the settings: changed, reverted, saved, and read again after a restart and after a power failure."""

from __future__ import absolute_import

from . import case

# The rows with a value. Client mode comes last, since it changes which rows there are. The second language is left out: while
# it is set, hosts do not offer "none" for the first one, so that even their own setup can't revert both.
VALUES = (0, 1, 2, 3, 4, 5, 6, 8, 9, 10, 11, 12, 13, 14, 18, 17)


class TestRows(case.HostCase):
    def values_of(self):
        rows = self.screen()["rows"]
        return [rows[index][1] for index in VALUES]

    def change(self, key="right"):
        """Changes each row that has a value; (values before, values after)."""
        before, after = self.values_of(), []
        for index in VALUES:
            self.select(index)
            self.press(key)
            after.append(self.row()[1])
        return before, after

    def test_change_revert_save_restart(self):
        self.open_settings()
        self.assertEqual(tuple(self.rows())[:16], case.ROWS[:16])
        original, changed = self.change()
        for index, old, new in zip(VALUES, original, changed):
            self.assertNotEqual(old, new, case.ROWS[index])
        self.press("exit")
        if self.name() == "MessageBox":  # the host asks
            self.press("ok")
        self.open_settings()
        self.assertEqual(self.values_of(), original)

        self.change()
        self.press("green")
        self.assertShows("InfoBar")
        self.host.kill()  # the power fails
        self.host.start()
        self.open_settings()
        self.assertEqual(self.values_of(), changed)

        self.change("left")
        self.press("green")
        self.restart()
        self.open_settings()
        self.assertEqual(self.values_of(), original)

    def test_choices(self):
        """OK offers all values of a selection; what is chosen counts, and EXIT there changes nothing."""
        self.open_settings()
        for index in (2, 3, 4, 6, 7, 18):
            with self.subTest(row=case.ROWS[index]):
                self.select(index)
                value = self.row()[1]
                self.press("ok")
                self.assertNotEqual(self.name(), "Veltro")
                self.press("down", "exit")
                self.assertShows("Veltro")
                self.assertEqual(self.row()[1], value)
                self.press("ok", "down", "ok")
                self.assertShows("Veltro")
                self.assertNotEqual(self.row()[1], value)
        changed = self.values_of()
        self.press("green")
        self.open_settings()
        self.assertEqual(self.values_of(), changed)

    def test_second_language(self):
        self.open_settings()
        self.select(6)
        self.press("right")
        self.select(7)
        self.press("right")
        value = self.row()[1]
        self.press("green")
        self.restart()
        self.open_settings()
        self.assertEqual(self.value("EPG language selection 2"), value)
        self.select(7)
        self.press("left", "left")
        self.assertNotEqual(self.row()[1], value)
        self.press("exit")
        self.open_settings()
        self.assertEqual(self.value("EPG language selection 2"), value)

    def test_both_languages_go_back(self):
        """Some hosts take "None" out of one's choices while the other is set."""
        labels = "EPG language selection 1", "EPG language selection 2"
        self.open_settings()
        before = [self.value(label) for label in labels]
        for label in labels:
            self.go_to(label)
            self.press("right")
        self.press("exit")
        self.open_settings()
        self.assertEqual([self.value(label) for label in labels], before)

    def test_other_keys(self):
        """What a host's own list of settings has on other keys does no harm, on any kind of row."""
        for index in (0, 2, 15, 18):
            self.open_settings()
            self.select(index)
            for key in ("menu", "info", "text", "pvr", "5", "help", "end", "tv", "long:ok"):
                with self.subTest(row=case.ROWS[index], key=key):
                    self.press(key)
                    self.assertAlive()
                    while self.name() not in ("Veltro", "InfoBar"):
                        self.press("exit")
                    self.assertShows("Veltro")
                    self.select(index)
            self.press("exit")


class TestOddSettings(case.HostCase):
    """A settings file that somebody has edited: the host starts, and every row can be seen and changed."""

    values = {
        "config.misc.epg_data_timer": "soon", "config.usage.epg_buffer": "-1", "config.usage.epg_default_view": "<b>%s",
        "config.misc.epg_dvb_blacklist_mode": "perhaps", "config.misc.epg_is_client_stb": "0",
        "config.misc.timer_show_movie_available": "", "config.misc.epgcache_filename": "/media/usb/gone/100%s/epg.dat",
        "config.misc.epgcachepath": "/media/usb/gone/", "config.epg.histminutes": "a year",
        "config.autolanguage.audio_epglanguage": "tlh", "config.misc.hotkey.epg": "Plugins/Extensions/Nothing/1,,x"}

    def test_rows(self):
        self.open_settings()
        self.assertEqual(len(self.rows()), 22)
        for index in VALUES[:-1]:
            self.select(index)
            value = self.row()[1]
            self.press("right")
            self.assertNotEqual(self.row()[1], value, case.ROWS[index])
        for label in ("Save EPG cache", "Load EPG data from epg", "Delete broken"):
            self.go_to(label)
            self.press("ok")
            self.home_to_settings()
        self.press("green")
        self.restart()
        self.open_settings()
        self.assertEqual(len(self.rows()), 22)
        self.open_the_chooser()

    def home_to_settings(self):
        if self.name() != "Veltro":
            self.press("exit")
        self.assertShows("Veltro")

    def open_the_chooser(self):
        self.go_to("EPG Path")
        self.press("ok")
        self.assertShows("DirChoose")
        self.press("down", "up", "exit")
        self.assertShows("Veltro")
