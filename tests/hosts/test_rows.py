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
