"""The settings' rows: what each is on this image, that it is read there, its help line, and the keys on it."""

from __future__ import absolute_import

import re

from . import case, rows_seen

ROWS = "[[row[0], row[2], row[3]] for row in session.current_dialog['config'].list]"
NOT_USED = "This image does not use this setting."
TREE = "from Components.config import config\n"


class TestRows(case.HostCase):
    def setUp(self):
        case.HostCase.setUp(self)
        self.open_settings()

    def has(self, what):
        """Whether the host has it, as Python in it says."""
        return self.python(TREE + "import enigma\nbool(%s)" % what)

    def leave(self):
        self.press("exit")
        self.assertShows("InfoBar")

    # What a row says

    def test_every_row_has_a_help_line(self):
        self.assertEqual([row for row in self.python(ROWS) if not row[1]], [])
        self.go_to("Enable EPG client mode")
        self.press("right")
        self.assertEqual(len(self.python(ROWS)), 20)
        self.assertEqual([row for row in self.python(ROWS) if not row[1]], [])
        self.leave()

    def test_the_table_of_rows(self):
        """docs/hosts.md says of each row what is seen here."""
        seen = dict((label, NOT_USED not in text) for label, text, _ in self.python(ROWS))
        self.assertEqual(rows_seen.documented(case.KIT, seen), seen)

    def test_bouquet_selection(self):
        """Used where code of the info bar or of a plug-in asks for it."""
        used = self.python("import sys, inspect\nany('usage.multiepg_ask_bouquet.value' in open(f).read() for f in set("
                           "getattr(m, '__file__', '').replace('.pyo', '.py').replace('.pyc', '.py') for n, m in "
                           "list(sys.modules.items()) if m is not None and n.startswith('Screens.')))")
        self.assertEqual(self.python(ROWS)[0][1] != NOT_USED, used)

    # Default EPG view

    def test_default_view_of_the_image(self):
        if not self.has("hasattr(config.usage, 'defaultEPGType')"):
            self.skipTest("this image has no such setting")
        self.go_to("Default EPG view")
        self.assertEqual(self.row()[1], "Grid EPG")
        opened = "session.current_dialog.defaultEPGType.__name__"
        self.press("ok")
        self.assertShows("ChoiceBox")
        self.select_text("Single EPG")
        self.press("ok")
        self.assertEqual(self.row()[1], "Single EPG")
        self.leave()
        self.assertEqual(self.python(opened), "openGridEPG", "EXIT takes it back")
        self.open_settings()
        self.go_to("Default EPG view")
        self.press("left", "green")
        self.assertShows("InfoBar")
        self.assertEqual(self.python(opened), "openEventView", "at once")
        self.restart()
        self.open_settings()
        self.assertEqual(self.value("Default EPG view"), "Event Info")
        self.go_to("Default EPG view")
        self.press("right", "green")
        self.assertIsNone(self.stored("config.usage.epg_default_view"))

    def test_default_view_as_function_of_the_key(self):
        if not self.has("hasattr(config.misc, 'hotkey')"):
            self.skipTest("this image's keys have no functions")
        key = TREE + "config.misc.hotkey.epg.value"
        before = self.python(key)
        self.assertEqual(self.value("Default EPG view"), "As set for the key")
        self.go_to("Default EPG view")
        self.press("ok")
        self.select_text("Show single service EPG")
        self.press("ok")
        self.assertEqual(self.row()[1], "Show single service EPG")
        self.assertEqual(self.python(key), before)
        self.press("green")
        self.assertEqual(self.python(key), "Infobar/openSingleServiceEPG")
        self.restart()
        self.assertEqual(self.python(key), "Infobar/openSingleServiceEPG")
        self.open_settings()
        self.assertEqual(self.value("Default EPG view"), "Show single service EPG")
        self.go_to("Default EPG view")
        self.press("ok")
        self.select_text("As set for the key")
        self.press("ok", "green")
        self.assertEqual(self.python(key), before, "the user's own is there again")

    def test_the_key_opens_it(self):
        if not self.has("hasattr(config.misc, 'hotkey')"):
            self.skipTest("this image's keys have no functions")
        self.go_to("Default EPG view")
        self.press("ok")
        self.select_text("Show multi channel EPG")
        self.press("ok", "green")
        self.python("opened = []\nsession.current_dialog.openMultiServiceEPG = lambda: opened.append('multi')")
        self.press("epg")
        self.assertEqual(self.python("opened"), ["multi"])
        self.python(TREE + "config.misc.hotkey.epg.value = config.misc.hotkey.epg.default\nconfig.misc.hotkey.epg.save()")

    # The blacklist

    def test_blacklist_in_force(self):
        if not self.has("hasattr(enigma.eEPGCache, 'reloadEITConfig')"):
            self.assertEqual([row[1] for row in self.python(ROWS) if "black" in row[0]], [NOT_USED] * 2)
            self.skipTest("this image has no blacklist by service")
        his, ours = b"1:0:1:1:2:3:4:0:0:0:\n# his\n", b"1:0:19:2B66:3F3:1:C00000:0:0:0:"
        self.write("/etc/enigma2/blacklist.eit", his)
        self.write(case.BLACKLIST, b"#SERVICE " + ours + b"\n")
        self.python("import enigma\nreal = enigma.eEPGCache.reloadEITConfig\nreloads = []\n"
                    "def reload(self, kind):\n    reloads.append(kind)\n    return real(self, kind)\n"
                    "enigma.eEPGCache.reloadEITConfig = reload")
        length = len(self.host.log)
        self.python("enigma.eEPGCache.getInstance().reloadEITConfig(2)\nreloads.clear()")
        read = "eServiceReference string"  # what this host says of a line that is no service
        self.assertIn(read, self.host.log[length:])
        self.go_to("Forbid DVB EPG update")
        self.press("ok")
        self.assertEqual(self.row()[1], "Yes")
        self.leave()
        self.assertEqual(self.read("/etc/enigma2/blacklist.eit"), his)
        self.open_settings()
        self.go_to("Forbid DVB EPG update")
        length = len(self.host.log)
        self.press("right", "green")
        self.assertEqual(self.read("/etc/enigma2/blacklist.eit"), ours + b"\n" + his)
        self.assertIn(read, self.host.log[length:], "the cache has read the file again")
        self.assertEqual(self.python("reloads"), [2])
        self.open_settings()
        self.go_to("Edit blacklist")
        self.press("ok", "yellow", "green")
        self.assertEqual(self.read("/etc/enigma2/blacklist.eit"), his, "after a save of the editor")
        self.assertEqual(self.python("reloads"), [2, 2])
        self.write(case.BLACKLIST, b"#SERVICE " + ours + b"\n")
        self.restart()
        self.assertEqual(self.read("/etc/enigma2/blacklist.eit"), ours + b"\n" + his, "after a restart")
        self.open_settings()
        self.go_to("Forbid DVB EPG update")
        self.press("left", "green")
        self.assertEqual(self.read("/etc/enigma2/blacklist.eit"), his)

    # Keys

    def test_red_asks_before_it_drops_changes(self):
        label = "Enable MHW"
        self.go_to(label)
        before = self.row()[1]
        self.press("right", "red")
        self.assertShows("MessageBox")
        self.press("exit")
        self.assertShows("Veltro")
        self.assertNotEqual(self.value(label), before)
        self.press("red")
        if self.screen()["texts"]["selectedChoice"].lower() == "no":
            self.press("up")
        self.press("ok")
        self.assertShows("InfoBar")
        self.open_settings()
        self.assertEqual(self.value(label), before)

    def test_red_and_exit_without_changes(self):
        for key in ("red", "exit"):
            self.press(key)
            self.assertShows("InfoBar")
            self.open_settings()

    def test_exit_does_not_ask(self):
        self.press("right", "exit")
        self.assertShows("InfoBar")

    def test_ok_on_yes_and_no_is_as_in_the_images_own_setup(self):
        self.leave()
        answers = []
        for opener in ("from Screens.Setup import Setup\nsession.open(Setup, 'epgsettings')", None):
            if opener:
                self.python(opener)
                self.host.settle()
            else:
                self.open_settings()
            rows = self.screen()["rows"]
            index = [i for i, row in enumerate(rows) if re.search("EIT EPG", row[0])][0]
            self.press(*["down"] * (index - self.screen()["index"]))
            before = self.row()[1]
            self.press("ok")
            answers.append(self.row()[1] != before)
            self.press("ok" if answers[-1] else "info")
            self.home()
        self.assertEqual(answers[0], answers[1])

    def test_keys_that_mean_nothing_on_an_action_row(self):
        for label in ("Edit blacklist", "EPG Path", "Save EPG cache", "Delete broken"):
            self.go_to(label)
            rows = self.screen()["rows"]
            for key in ("menu", "pvr", "file", "list", "media", "left", "right", "1", "0", "info", "text"):
                self.press(key)
                self.assertShows("Veltro")
                self.assertEqual(self.screen()["rows"], rows, key)

    def test_digits_type_a_number(self):
        self.go_to("Save EPG data every")
        self.press("3", "0")
        self.assertEqual(self.row()[1], "30")
        self.press("red")
        self.assertShows("MessageBox")
        self.press("exit")

    def test_many_numbers_are_typed(self):
        """A setting of 365 numbers, as one image has it."""
        self.leave()
        self.python(TREE + "from Components.config import ConfigSelectionNumber\n"
                    "import Plugins.Extensions.Veltro.bridge.keys as keys\n"
                    "many = ConfigSelectionNumber(1, 365, 1, default=7)\nveltro = __import__('Veltro')\n"
                    "veltro.config.usage.epg_buffer = many\nkeys._paths[id(many)] = 'usage.epg_buffer'")
        self.open_settings()
        self.go_to("Save EPG for X days")
        self.press("ok", "menu")
        self.assertShows("Veltro")
        self.press("1", "4", "0")
        self.assertEqual(self.row()[1], "140")
        self.press("right")
        self.assertEqual(self.row()[1], "141")

    # The picker

    def test_green_in_the_picker(self):
        self.go_to("Edit blacklist")
        self.press("ok", "blue")
        self.assertShows("DVB_EPG_blacklist_ChannelSelection")
        labels = "[session.current_dialog['key_' + key].text for key in ('red', 'green', 'yellow', 'blue')]"
        wanted = ["Close", "All services", "Add bouquet", "Favourites"]
        self.assertEqual(self.python(labels), wanted)
        root = "session.current_dialog.getRoot().getPath()"
        for key in ("green", "blue", "green", "radio", "tv", "green"):
            self.press(key)
            self.assertEqual(self.python(labels), wanted)
        self.assertNotIn("bouquet", self.python(root))
        self.press("red")
        self.assertShows("Edit_DVB_EPG_Blacklist")


class TestWords(case.HostCase):
    """Our own words in the language of the GUI, also where the image has a word for a text of ours."""

    language = "de_DE"

    def test_one_hand(self):
        self.open_settings()
        rows = self.python(ROWS)
        self.assertIn("FreeSat-EPG einschalten", [row[0] for row in rows])
        self.assertIn("ViaSat-EPG einschalten", [row[0] for row in rows])
        self.assertIn("Dieses Image verwendet diese Einstellung nicht.", [row[1] for row in rows])
