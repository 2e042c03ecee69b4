"""plugin/src/settings_screen.cpp: OK on a selection, and what the opened screens give back."""

from tests.module.case import Boom, HostTestCase, PYTHON2, SETTING_KEYS, host

SELECTION_ROW = 3


class ChoicesTestCase(HostTestCase):
    def pressed(self, row):
        screen = self.settings(selected=row)
        self.assertIsNone(screen.keyOk())
        return screen

    def acts(self, *expected):
        """The calls, apart from those that read the current row."""
        reading = ("config.l.getCurrentSelection", "config.getCurrent")
        self.assertEqual([call for call in self.calls if call[0] not in reading], list(expected))


class Choices(ChoicesTestCase):
    def test_a_selection_offers_its_choices(self):
        screen = self.pressed(SELECTION_ROW)
        element = host.element("usage.epg_default_view")
        self.acts(("getSelectionChoices", "config.usage.epg_default_view"),
                  ("session.openWithCallback", "configSelectionCallBack", "ChoiceBox", {
                      "title": "[Default EPG view (EPG button)]",
                      "list": [("Single view", "single"), ("Multi view", "multi"), ("Deutsch", "deu"),
                               ("English", "eng")],
                      "selection": 0,
                      "keys": ["1", "2", "3", "4", "5", "6", "7", "8", "9"]}))
        callback, opened, _ = host.recorder.named("session.openWithCallback")[0]
        self.assertEqual(callback, screen.configSelectionCallBack)
        self.assertIs(opened, self.Veltro.ChoiceBox)
        self.assertIs(host.recorder.named("getSelectionChoices")[0][0], element)

    def test_the_present_value_is_preselected(self):
        self.set_value("usage.epg_default_view", "deu")
        self.pressed(SELECTION_ROW)
        self.assertEqual(host.recorder.calls[-1][-1]["selection"], 2)

    def test_what_the_host_offers_is_passed_on_as_it_is(self):
        choices, index = object(), object()
        for result in ((choices, index), [choices, index]):
            self.replace(self.Veltro, "getSelectionChoices", lambda element: result)
            self.pressed(SELECTION_ROW)
            keywords = host.recorder.calls[-1][-1]
            self.assertIs(keywords["list"], choices)
            self.assertIs(keywords["selection"], index)

    def test_any_iterable_of_two_unpacks(self):
        self.replace(self.Veltro, "getSelectionChoices", lambda element: iter([[], 0]))
        self.pressed(SELECTION_ROW)
        self.assertEqual(host.recorder.calls[-1][-1]["list"], [])

    def test_a_result_that_does_not_unpack_into_two_is_an_error(self):
        screen = self.settings(selected=SELECTION_ROW)
        for result, kind in (((1,), ValueError), ((1, 2, 3), ValueError), ((), ValueError), (None, TypeError),
                             (5, TypeError)):
            self.replace(self.Veltro, "getSelectionChoices", lambda element: result)
            host.recorder.clear()
            self.error_of(kind, screen.keyOk)
            self.assertNotIn("session.openWithCallback", host.recorder.names())

    def test_rows_that_are_no_selection_do_nothing(self):
        for number, key in enumerate(SETTING_KEYS[:15], 1):
            screen = self.settings(selected=number)
            if not isinstance(host.element(key), self.Veltro.ConfigSelection):
                self.assertIsNone(screen.keyOk())
                self.acts()

    def test_an_element_that_derives_from_a_selection_is_one(self):
        class Derived(self.Veltro.ConfigSelection):
            pass
        screen = self.settings()
        dict.__getitem__(screen, "config")._rows = [("label", Derived("x", "multi"), "", "to_save")]
        screen.keyOk()
        self.assertEqual(host.recorder.calls[-1][-1]["selection"], 1)

    def test_anything_else_is_no_selection(self):
        screen = self.settings()
        for element in (None, 5, "text", object()):
            dict.__getitem__(screen, "config")._rows = [("label", element, "", "to_save")]
            host.recorder.clear()
            self.assertIsNone(screen.keyOk())
            self.acts()

    def test_the_title_is_the_label_as_text_and_not_translated_again(self):
        class Text(object):
            def __str__(self):
                return "label"
        screen = self.settings()
        element = host.element("usage.epg_default_view")
        for label, title in (("[x]", "[x]"), (Text(), "label"), (5, "5"), (u"x", "x")):
            dict.__getitem__(screen, "config")._rows = [(label, element, "", "to_save")]
            host.recorder.clear()
            screen.keyOk()
            self.assertEqual(host.recorder.calls[-1][-1]["title"], title)
            self.assertIs(type(host.recorder.calls[-1][-1]["title"]), str)
            self.assertEqual(host.recorder.named("_"), [])

    def test_each_pop_up_has_its_own_list_of_keys(self):
        """The host pads the list that it gets."""
        screen = self.pressed(SELECTION_ROW)
        host.recorder.calls[-1][-1]["keys"].append("0")
        screen.keyOk()
        self.assertEqual(host.recorder.calls[-1][-1]["keys"], list("123456789"))


class Callbacks(ChoicesTestCase):
    def choose(self, *result):
        screen = self.settings(selected=SELECTION_ROW)
        self.assertIsNone(screen.configSelectionCallBack(*result))
        return screen

    def test_a_choice_sets_the_value(self):
        for result in (("Multi view", "multi"), ["Multi view", "multi"], ("Multi view", "multi", "help"), "xmulti"):
            self.choose(result)
            self.assertCalls(("config.getCurrent",), ("config.usage.epg_default_view.value =", result[1]))

    def test_no_choice_does_nothing(self):
        for result in ((), (None,), (False,), ([],), (("Multi view",),), ("",), ("x",), ({},)):
            self.choose(*result)
            self.assertCalls()
            self.assertEqual(self.value("usage.epg_default_view"), "single")

    def test_a_result_without_length_is_an_error(self):
        screen = self.settings(selected=SELECTION_ROW)
        self.error_of(TypeError, screen.configSelectionCallBack, True)
        self.assertCalls()

    def test_a_choice_neither_saves_nor_rebuilds(self):
        screen = self.settings(selected=SELECTION_ROW)
        before = screen.list
        screen.configSelectionCallBack(("Multi view", "multi"))
        self.assertIs(screen.list, before)
        self.assertEqual(host.element("usage.epg_default_view")._saved, "single")
        self.assertFalse(hasattr(screen, "text"))

    def test_got_path_stores_and_saves_at_once(self):
        screen = self.settings()
        path = "/media/usb/epg.dat"
        self.assertIsNone(screen.gotEPGpath(path))
        self.assertCalls(("config.misc.epgcache_filename.value =", path), ("config.misc.epgcache_filename.save",))
        self.assertIs(self.value("misc.epgcache_filename"), path)

    def test_the_path_row_keeps_the_old_directory_until_a_rebuild(self):
        screen = self.settings()
        screen.gotEPGpath("/media/usb/epg.dat")
        self.assertEqual(screen.list[16][0], "[EPG Path :] /media/hdd")
        screen.changedEntry()
        self.assertEqual(screen.list[16][0], "[EPG Path :] /media/usb")

    def test_a_cancelled_chooser_changes_nothing(self):
        screen = self.settings()
        for result in (None, "", False, 0, ()):
            self.assertIsNone(screen.gotEPGpath(result))
        self.assertEqual(host.recorder.events, [])

    def test_a_path_needs_its_argument(self):
        self.error_of(TypeError, self.settings().gotEPGpath)

    def test_a_failing_save_of_the_path(self):
        screen = self.settings()
        error = Boom()
        host.recorder.fail("config.misc.epgcache_filename.save", error)
        self.raised_by(error, screen.gotEPGpath, "/x")
        self.assertEqual(self.value("misc.epgcache_filename"), "/x")

    if PYTHON2:
        def test_a_path_of_the_other_text_type(self):
            self.settings().gotEPGpath(u"/media/usb/epg.dat")
            self.assertIs(type(self.value("misc.epgcache_filename")), type(u""))
