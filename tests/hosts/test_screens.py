"""Each screen is opened, and left by each key that leaves it, at both resolutions, in two languages and the skins of the kit."""

from __future__ import absolute_import

from . import case

# How many of our screens live on, their session's ones included.
LEFT = ("import gc\ngc.collect()\n"
        "[type(each).__name__ for each in gc.get_objects() if type(each).__name__ in %r]" % (case.OURS,))


class EachScreen(object):
    """The tests; each class below has them in another surrounding."""

    texts = {}
    green = None

    def leave(self, opens, keys, shows):
        """Opens a screen and leaves it, by each of the keys, and comes back to where it was opened from."""
        for key in keys:
            with self.subTest(key=key):
                self.home()
                depth = self.python("len(session.dialog_stack)")
                opens()
                self.press(key)
                self.assertShows(shows)
                self.home()
                self.assertEqual(self.python("len(session.dialog_stack)"), depth)
                self.assertEqual(self.python(LEFT), [])

    def test_settings(self):
        self.leave(self.open_settings, ("exit", "red", "green"), "InfoBar")

    def test_editor(self):
        self.leave(self.open_editor, ("exit", "red", "green"), "Veltro")

    def test_picker(self):
        self.leave(self.open_picker, ("exit", "red"), "Edit_DVB_EPG_Blacklist")

    def test_picker_by_a_choice(self):
        self.leave(self.open_bouquet, ("ok",), "Edit_DVB_EPG_Blacklist")
        self.leave(self.open_picker, ("yellow",), "Edit_DVB_EPG_Blacklist")

    def open_bouquet(self):
        self.open_picker()
        self.press("ok")

    def test_chooser(self):
        self.leave(self.open_chooser, ("exit", "red", "green"), "Veltro")

    def test_choices(self):
        self.leave(self.open_choices, ("exit", "ok"), "Veltro")

    def open_choices(self):
        self.open_settings()
        self.go_to("EPG language selection 1")
        self.press("ok")
        self.assertShows("ChoiceBox", "ListboxSelection", "MessageBox")

    def test_rows(self):
        self.open_settings()
        self.assertEqual(len(self.screen()["rows"]), 22)
        self.go_to("Enable EPG client mode")
        self.press("right")
        self.assertEqual(len(self.screen()["rows"]), 20)
        self.press("right")
        self.assertEqual(len(self.screen()["rows"]), 22)

    def test_texts(self):
        self.open_settings()
        rows = self.screen()["rows"]
        for label, text in self.texts.items():
            self.assertEqual(rows[self.index_of(label, rows)][0], text)
        self.assertEqual(self.text("key_green"), self.green)

    def test_from_the_plugin_browser(self):
        self.python("from Screens.PluginBrowser import PluginBrowser\nsession.open(PluginBrowser)")
        self.host.settle()
        self.press("ok")
        self.assertShows("Veltro")
        self.press("exit")
        self.assertShows("PluginBrowser")


class TestHd(EachScreen, case.HostCase):
    texts = {"Save EPG for X": "Save EPG for X days in future", "Enable EPG client": case.ROWS[17]}
    green = "Save"

    def test_keys_faster_than_screens(self):
        """A key that comes while a screen is about to close must find nothing that is half gone."""
        for keys in (("exit", "exit"), ("green", "green", "ok"), ("red", "blue")):
            for opens in (self.open_settings, self.open_editor, self.open_chooser, self.open_picker):
                with self.subTest(keys=keys, opens=opens.__name__):
                    self.home()
                    opens()
                    self.press(*keys, settle=False)
                    self.host.settle()
                    self.assertAlive()


class TestFhdGerman(EachScreen, case.HostCase):
    resolution = "fhd"
    language = "de_DE"
    texts = {"Save EPG for X": "EPG f\u00fcr X Tage im Voraus speichern",
             "Enable EPG client": "EPG-Client-Modus einschalten (EPG-Datei nicht speichern)",
             "Delete broken": "Defekte epg.dat l\u00f6schen"}
    green = "Speichern"
