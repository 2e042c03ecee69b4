"""plugin/src/settings_screen.cpp: how the settings screen is built."""

import sys

from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, PYTHON2, host, press

CONSOLE_LINE = ("console", 'self["title"] was not found in skin\n')
PLACEHOLDERS = ("input_epgpath", "input_epgbackup", "input_epgrestore", "input_epgdelete")
ACTIONS = ["cancel", "down", "green", "ok", "red", "up"]
CONTEXTS = ["SetupActions", "ColorActions", "DirectionActions"]


class Construction(HostTestCase):
    def open(self):
        return self.Veltro.Veltro(host.session, PLUGIN_PATH)

    def test_every_step_in_order(self):
        self.open()
        expected = [("Screen.__init__", "Session"), ("skin_path =", PLUGIN_PATH), ("session =", "Session")]
        for name in PLACEHOLDERS:
            expected += [("ConfigNothing",), ("NoSave", "ConfigNothing"), (name + " =", "ConfigNothing")]
        expected += [
            ("title =", "[ORSA Veltro]"),
            ("StaticText", "[ORSA Veltro]"), ('["title"] =', "StaticText"),
            ("Label",), ('["status"] =', "Label"),
            ("StaticText", "[Exit]"), ('["key_red"] =', "StaticText"),
            ("StaticText", "[Save]"), ('["key_green"] =', "StaticText"),
            ("ActionMap", CONTEXTS, ACTIONS, -2), ('["shortcuts"] =', "ActionMap"),
        ]
        steps = self.steps
        self.assertEqual(steps[:len(expected)], expected)
        then = steps[len(expected):]
        self.assertEqual(then[0][0], "list =")
        self.assertEqual(then[1][0], "ConfigListScreen.__init__")
        self.assertEqual(then[1][-1], {"session": "Session", "on_change": "changedEntry"})
        self.assertEqual(then[2][0], "getConfigListEntry", "createSetup comes last")
        self.assertEqual([step[0] for step in then[-2:]], ["config.list =", "config.l.setList"])

    def test_the_list_is_empty_when_the_list_screen_is_initialised(self):
        given = []
        self.replace(self.Veltro.ConfigListScreen, "__init__", lambda self, list, **keywords: given.append(list[:]))
        self.error_of(KeyError, self.open)  # there is no "config" widget now
        self.assertEqual(given, [[]])

    def test_the_list_screen_gets_the_screens_list_and_its_own_operation(self):
        given = []
        initialise = vars(self.Veltro.ConfigListScreen)["__init__"]

        def spy(screen, list, **keywords):
            given.append((screen.list is list, keywords["session"], keywords["on_change"] == screen.changedEntry))
            initialise(screen, list, **keywords)
        self.replace(self.Veltro.ConfigListScreen, "__init__", spy)
        self.open()
        self.assertEqual(given, [(True, host.session, True)])

    def test_members(self):
        screen = self.open()
        self.assertEqual(screen.skin_path, PLUGIN_PATH)
        self.assertIs(screen.session, host.session)
        self.assertEqual(screen._title, "[ORSA Veltro]")
        self.assertEqual(len(screen.list), 22)
        self.assertFalse(hasattr(screen, "statustext"))
        self.assertFalse(hasattr(screen, "text"))
        self.assertEqual(screen.skinName, "Veltro", "the layout is that of the class name")

    def test_placeholders_are_four_different_ones_that_are_never_saved(self):
        screen = self.open()
        elements = [getattr(screen, name) for name in PLACEHOLDERS]
        self.assertEqual(len(set(id(element) for element in elements)), 4)
        for element in elements:
            self.assertIsInstance(element, self.Veltro.ConfigNothing)
            self.assertTrue(element._never_saved)
        other = self.open()
        self.assertIsNot(other.input_epgpath, screen.input_epgpath)

    def test_a_placeholder_is_what_the_host_gives_back(self):
        self.replace(self.Veltro, "NoSave", lambda element: ("wrapped", element))
        self.replace(self.Veltro.Veltro, "createSetup", lambda self: None)
        self.assertEqual(self.open().input_epgdelete[0], "wrapped")

    def test_widgets(self):
        screen = self.open()
        self.assertEqual(sorted(screen), ["config", "key_green", "key_red", "shortcuts", "status", "title"])
        for name, text in (("title", "[ORSA Veltro]"), ("key_red", "[Exit]"), ("key_green", "[Save]"), ("status", "")):
            self.assertEqual(dict.__getitem__(screen, name)._text, text)

    def test_no_callback_is_registered(self):
        self.assertEqual(self.open().onShown, [])

    def test_key_map(self):
        screen = self.open()
        keys = dict.__getitem__(screen, "shortcuts")
        self.assertEqual(list(keys._contexts), CONTEXTS)
        self.assertEqual(keys._priority, (-2,))
        self.assertEqual(keys._actions, {"ok": screen.keyOk, "cancel": screen.keyClose, "red": screen.keyCancel,
                                         "green": screen.keySave, "up": screen.up, "down": screen.down})

    def test_red_is_the_hosts_own_cancel(self):
        screen = self.settings()
        press(screen, "red")
        self.assertCalls(("keyCancel",))

    def test_exit_reverts_and_closes(self):
        screen = self.settings()
        press(screen, "cancel")
        self.assertEqual(host.recorder.names()[-1], "close")
        self.assertIn("config.usage.epg.eit.cancel", host.recorder.names())

    def test_the_title_widget_shows_the_title_as_the_host_has_it(self):
        kind = self.Veltro.Screen
        self.replace(kind, "title", property(lambda self: "decorated", lambda self, text: None))
        self.assertEqual(dict.__getitem__(self.open(), "title")._text, "decorated")

    def test_texts_are_translated_once_each(self):
        self.open()
        asked = [event[1] for event in host.recorder.events if event[0] == "_"]
        self.assertEqual(asked[:3], ["ORSA Veltro", "Exit", "Save"])
        self.assertNotIn("", asked)

    def test_a_title_that_can_not_be_made_costs_one_console_line(self):
        class Old:
            """An old-style class on Python 2.7, where such a thing can be raised."""
        errors = [Boom(), KeyError("title"), KeyboardInterrupt(), SystemExit(), GeneratorExit()] + [Old()] * PYTHON2
        for event in ("title", "StaticText", '["title"] ='):
            for error in errors:
                host.recorder.clear()
                host.recorder.fail(event, error)
                screen = self.open()
                self.assertEqual(host.recorder.named("console"), [CONSOLE_LINE[1:]])
                self.assertEqual(sorted(screen), ["config", "key_green", "key_red", "shortcuts", "status"])
                self.assertEqual(len(screen.list), 22)
                names = host.recorder.names()
                self.assertEqual(names[names.index("console") + 1], "Label", "the next step follows")

    def test_the_caught_error_leaves_nothing_behind(self):
        host.recorder.fail("StaticText", Boom())
        self.open()
        if not PYTHON2:  # Python 2.7 keeps the error of a handler until its function returns
            self.assertEqual(sys.exc_info(), (None, None, None))

    def test_only_the_title_is_guarded(self):
        for event in ('["status"] =', '["key_red"] =', '["key_green"] =', '["shortcuts"] =', "title =", "Label",
                      "ActionMap", "NoSave", "ConfigListScreen.__init__", "Screen.__init__"):
            error = Boom()
            host.recorder.fail(event, error)
            self.raised_by(error, self.open)
            self.assertEqual(host.recorder.named("console"), [])

    def test_the_screen_works_without_its_title_widget(self):
        host.recorder.fail("StaticText", Boom())
        screen = self.open()
        host.recorder.clear()
        press(screen, "down")
        self.assertEqual(host.recorder.names(), ["status.setText", "config.instance.moveSelection"])
        press(screen, "green")
        self.assertEqual(host.recorder.names()[-1], "close")

    def test_too_few_and_too_many_arguments(self):
        for arguments in ((), (host.session,), (host.session, PLUGIN_PATH, 0, 0)):
            self.error_of(TypeError, self.Veltro.Veltro, *arguments)
        self.assertEqual(host.recorder.events, [])

    def test_screens_are_independent(self):
        one, other = self.open(), self.open()
        self.assertIsNot(one.list, other.list)
        one.close()
        self.assertEqual(len(other.list), 22)
