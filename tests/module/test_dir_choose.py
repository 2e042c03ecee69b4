"""plugin/src/dir_choose.cpp: the directory chooser."""

from tests.module.case import Boom, HostTestCase, PYTHON2, host, press

CONSOLE_LINE = 'self["title"] was not found in skin\n'
CONTEXTS = ["WizardActions", "DirectionActions", "ColorActions", "EPGSelectActions"]
ACTIONS = ["back", "down", "green", "left", "ok", "red", "right", "up"]
INVALID = "[Invalid Choice]"
LOOKED = [("filelist.getSelection",)] * 2


class ChooserTestCase(HostTestCase):
    def text(self, screen):
        return dict.__getitem__(screen, "driverfile")._text

    def at(self, path, is_directory):
        return self.chooser(entries=[(path, is_directory)])


class Construction(ChooserTestCase):
    def open(self):
        return self.Veltro.DirChoose(host.session, "/media/hdd/")

    def test_every_step_in_order(self):
        self.open()
        self.assertEqual(self.steps, [
            ("Screen.__init__", "Session"),
            ("skinName =", ["KelmarFile", "FileBrowser", "EPGPathBrowser"]),
            ("FileList", "/media/hdd/", {"inhibitMounts": False, "inhibitDirs": False, "showMountpoints": False}),
            ('["filelist"] =', "FileList"),
            ("Label",), ('["driverfile"] =', "Label"),
            ("ActionMap", CONTEXTS, ACTIONS, -1), ('["actions"] =', "ActionMap"),
            ("title =", "[ORSA Veltro]"),
            ("StaticText", "[ORSA Veltro]"), ('["title"] =', "StaticText"),
            ("StaticText", "[Cancel]"), ('["key_red"] =', "StaticText"),
            ("StaticText", "[OK]"), ('["key_green"] =', "StaticText"),
        ])

    def test_the_start_directory_is_passed_as_it_is(self):
        for directory in ("/media/hdd/", "", "/gone", None, u"/m\xfc/"):
            host.recorder.clear()
            self.Veltro.DirChoose(host.session, directory)
            self.assertIs(host.recorder.named("FileList")[0][0], directory)

    def test_switches_of_the_file_list_are_booleans(self):
        self.open()
        for value in host.recorder.named("FileList")[0][-1].values():
            self.assertIs(value, False)

    def test_layout_names_are_a_list(self):
        self.assertEqual(type(self.open().skinName), list)
        self.assertIsNot(self.open().skinName, self.open().skinName)

    def test_key_map(self):
        screen = self.open()
        keys = dict.__getitem__(screen, "actions")
        self.assertEqual(list(keys._contexts), CONTEXTS)
        self.assertEqual(keys._priority, (-1,))
        self.assertEqual(keys._actions, {
            "back": screen.cancel, "left": screen.left, "right": screen.right, "up": screen.up, "down": screen.down,
            "ok": screen.ok, "green": screen.green, "red": screen.cancel})

    def test_the_text_line_is_empty_and_nothing_is_asked(self):
        screen = self.chooser()
        self.assertEqual(self.text(screen), "")
        self.assertEqual(screen.onShown, [])
        self.assertFalse(hasattr(screen, "fullpath"))

    def test_a_title_that_can_not_be_made_costs_one_console_line(self):
        for event in ("StaticText", '["title"] ='):
            for error in (Boom(), KeyError("title"), KeyboardInterrupt(), SystemExit()):
                host.recorder.clear()
                host.recorder.fail(event, error)
                screen = self.open()
                self.assertEqual(host.recorder.named("console"), [(CONSOLE_LINE,)])
                self.assertEqual(sorted(screen), ["actions", "driverfile", "filelist", "key_green", "key_red"])

    def test_only_the_title_is_guarded(self):
        for event, nth in (("StaticText", 2), ("StaticText", 3), ("FileList", 1), ('["filelist"] =', 1),
                           ("title =", 1)):
            error = Boom()
            host.recorder.fail(event, error, nth)
            self.raised_by(error, self.open)

    def test_arguments(self):
        for arguments in ((), (host.session,), (host.session, "/", 1)):
            self.error_of(TypeError, self.Veltro.DirChoose, *arguments)


class Moving(ChooserTestCase):
    KEYS = (("up", "up"), ("down", "down"), ("left", "pageUp"), ("right", "pageDown"))

    def test_moves_first_and_shows_then(self):
        for key, movement in self.KEYS:
            screen = self.at("/media/usb/", True)
            self.assertIsNone(press(screen, key))
            self.assertCalls(("filelist." + movement,), *LOOKED + [("driverfile.setText", "/media/usb/")])

    def test_a_file_is_an_invalid_choice(self):
        for key, movement in self.KEYS:
            screen = self.at("film.ts", False)
            press(screen, key)
            self.assertCalls(("filelist." + movement,), *LOOKED + [("driverfile.setText", INVALID)])

    def test_a_walk(self):
        screen = self.chooser()
        shown = []
        for key in ("down", "down", "up", "left", "right"):
            press(screen, key)
            shown.append(self.text(screen))
        self.assertEqual(shown, ["/media/hdd/movie/", INVALID, "/media/hdd/movie/", "/media/", INVALID])

    def test_the_path_is_shown_as_it_stands(self):
        path = "/media/" + ("M\xc3\xbcsik/" if PYTHON2 else u"M\xfcsik/")
        screen = self.at(path, True)
        screen.updateFile()
        self.assertIs(self.text(screen), path)

    def test_the_flag_is_tested_for_truth(self):
        for flag, text in ((1, "/x"), ("yes", "/x"), (0, INVALID), (None, INVALID)):
            screen = self.at("/x", flag)
            screen.updateFile()
            self.assertEqual(self.text(screen), text)

    def test_longer_entries_are_fine(self):
        screen = self.chooser(entries=[("/media/usb/", True, False, None)])
        screen.down()
        self.assertEqual(self.text(screen), "/media/usb/")

    def test_update_reads_the_selection_twice(self):
        """Path and flag each come from a selection of their own; a cursor between them is the host's affair."""
        answers = iter([("/first", False), ("/second", True)])
        screen = self.at("/x", True)
        self.replace(self.Veltro.FileList, "getSelection", lambda self: next(answers))
        screen.updateFile()
        self.assertEqual(self.text(screen), "/first")

    def test_a_failing_movement_shows_nothing(self):
        for key, movement in self.KEYS:
            screen = self.at("/x", True)
            error = Boom()
            host.recorder.fail("filelist." + movement, error)
            self.raised_by(error, getattr(screen, key))
            self.assertCalls(("filelist." + movement,))


class Choosing(ChooserTestCase):
    def test_green_on_a_directory_closes_with_the_file_in_it(self):
        for path, file_name in (("/media/usb/", "/media/usb/epg.dat"), ("/media/usb", "/media/usb/epg.dat"),
                                ("/", "/epg.dat"), ("", "/epg.dat"), ("/a//", "/a//epg.dat")):
            screen = self.at(path, True)
            self.assertIsNone(press(screen, "green"))
            self.assertCalls(*LOOKED + [("close", file_name)])
            self.assertEqual(host.recorder.named("fullpath ="), [(file_name,)])

    def test_the_path_may_have_any_letters(self):
        path = "/media/M\xc3\xbcsik" if PYTHON2 else u"/media/M\xfcsik\udcff"
        screen = self.at(path, True)
        screen.green()
        self.assertCalls(*LOOKED + [("close", path + "/epg.dat")])

    def test_the_result_is_the_member(self):
        class Chooser(self.Veltro.DirChoose):
            fullpath = property(lambda self: "read back", lambda self, value: None)
        host.listings["/"] = [("/media/", True)]
        Chooser(host.session, "/").green()
        self.assertEqual(host.recorder.calls[-1], ("close", "read back"))

    def test_green_asks_afresh_for_the_path(self):
        answers = iter([("/first", True), ("/second", False)])
        screen = self.at("/x", True)
        self.replace(self.Veltro.FileList, "getSelection", lambda self: next(answers))
        screen.green()
        self.assertEqual(host.recorder.calls[-1], ("close", "/second/epg.dat"))

    def test_green_on_a_file_is_an_invalid_choice(self):
        screen = self.at("film.ts", False)
        self.assertIsNone(press(screen, "green"))
        self.assertCalls(("filelist.getSelection",), ("driverfile.setText", INVALID))

    def test_ok_on_a_directory_enters_it(self):
        screen = self.chooser()
        host.listings["/media/"] = [("/", True), ("/media/hdd/", True)]
        self.assertIsNone(press(screen, "ok"))
        self.assertCalls(("filelist.canDescent",), ("filelist.descent",), *LOOKED + [("driverfile.setText", "/")])

    def test_ok_on_a_file_is_an_invalid_choice(self):
        screen = self.at("film.ts", False)
        self.assertIsNone(press(screen, "ok"))
        self.assertCalls(("filelist.canDescent",), ("filelist.getSelection",), ("driverfile.setText", INVALID))

    def test_ok_on_a_directory_that_can_not_be_entered_chooses_it(self):
        screen = self.at("/media/usb/", True)
        self.replace(self.Veltro.FileList, "canDescent", lambda self: 0)
        screen.ok()
        self.assertCalls(*LOOKED + [("close", "/media/usb/epg.dat")])

    def test_back_and_red_close_with_no_value(self):
        for key in ("back", "red"):
            screen = self.chooser()
            self.assertIsNone(press(screen, key))
            self.assertCalls(("close", None))

    def test_the_answer_fits_the_opener(self):
        """The settings screen's callback takes exactly what the chooser closes with."""
        settings = self.settings()
        for key in ("green", "red"):
            press(self.at("/media/usb/", True), key)
            settings.gotEPGpath(*host.recorder.named("close")[-1])
        self.assertEqual(self.value("misc.epgcache_filename"), "/media/usb/epg.dat")

    def test_an_empty_list_is_an_error(self):
        for operation in ("updateFile", "green", "ok", "up", "down", "left", "right"):
            screen = self.chooser(entries=[])
            self.error_of(TypeError, getattr(screen, operation))
            self.assertNotIn("driverfile.setText", host.recorder.names())
            self.assertNotIn("close", host.recorder.names())

    def test_a_path_that_is_no_text_is_an_error_and_leaves_the_screen_open(self):
        screen = self.chooser(entries=[(None, True)])
        self.error_of((TypeError, AttributeError), screen.green)
        self.assertNotIn("close", host.recorder.names())
