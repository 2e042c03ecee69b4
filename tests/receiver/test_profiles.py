"""The plug-in on every image that the receiver can be like: every flow of its screens, and what the bridge is for."""

import importlib
import os
import sys
import unittest
from unittest import mock

from receiver.actions import BREAK, MAKE, read_keymap
from receiver.gui import find
from receiver.places import HOST_MODULES
from receiver.profile import PROFILES
from receiver.session import Session
from tests.receiver.tv import TvTest, host, run_cli

SAVE, LOAD, DELETE = "Save EPG cache to epg.dat", "Load EPG data from epg.dat", "Delete broken epg.dat"
NOTHING = "0 events, 0 services"
SERVICE = "1:0:19:102:401:FE:640000:0:0:0:"


def bridge(name):
    return importlib.import_module("Plugins.Extensions.Veltro.bridge." + name)


def host_names():
    """Every name of every host module that is loaded now, with what it stands for."""
    modules = {name: module for name, module in sys.modules.items()
               if (getattr(module, "__file__", None) or "").startswith(str(HOST_MODULES))}
    return {name: {key: id(value) for key, value in vars(module).items()} for name, module in modules.items()}


class ImageTest(TvTest):
    """A receiver like one of the images; `Flows` and `Boxes` below run on each of them."""

    def key(self, path):
        """Where the image has a key; one that it does not have, the plug-in puts where it looks for it."""
        return PROFILES[self.image].keys.get(path) or path

    @property
    def epg_file(self):
        """Where the image keeps the EPG file at first."""
        return (self.etc if PROFILES[self.image].builds_cache_path else self.hdd) / "epg.dat"

    def shown(self, path):
        """A path as the TV shows it."""
        return str(path)[len(str(self.root)):]

    def element(self, path):
        return find(host("Components.config").config, self.key(path))

    def settings(self):
        path = self.etc / "settings"
        return path.read_text() if path.exists() else ""

    def set(self, path, text):
        with open(self.etc / "settings", "a") as file:
            file.write("config.%s=%s\n" % (self.key(path), text))

    def choose(self, folder):
        """Choose a folder of the box for the EPG file."""
        self.go_to("EPG Path")
        self.press("ok")
        while "etc" not in self.labels:
            self.press("left*2")
            self.go_to("<Parent directory>")
            self.press("ok")
        self.press("left*2")
        for name in folder.split("/"):
            self.go_to(name)
            if not folder.endswith(name):
                self.press("ok")
        self.press("green")
        self.assertEqual(self.top.name, "Veltro")


class Flows:
    """What works on every image, and on the receiver that is like none of them."""

    def test_settings_last(self):
        self.switch_on()
        for label in ("Show icon when movie", "Save EPG for X days", "Enable MHW EPG", "Forbid DVB EPG update"):
            self.go_to(label)
            self.press("right")
        shown = {row.label: row.value for row in self.list.rows}
        self.press("green")
        self.assertShows("Main menu")
        self.new_receiver()  # not even the end in good order is needed
        self.switch_on()
        self.assertEqual({row.label: row.value for row in self.list.rows}, shown)
        self.assertEqual(shown["Enable MHW EPG"], "yes")
        self.assertEqual(self.settings().count("epg.mhw=True"), 1, "stored once, where the image has it")
        self.assertIn("config.%s=True\n" % self.key("usage.epg.mhw"), self.settings())

    def test_exit_and_red_revert(self):
        self.switch_on()
        for key in ("exit", "red"):
            self.go_to("Enable MHW EPG")
            self.press("right exit" if key == "exit" else "right red up ok")
            self.assertShows("Main menu")
            self.assertFalse(self.element("usage.epg.mhw").value)
            self.press("ok")
        self.assertNotIn("mhw", self.settings())

    def test_ok_on_a_yes_no_row(self):
        """As in the image's own setup; the host that the module was made for leaves it alone."""
        self.switch_on()
        self.go_to("Enable MHW EPG")
        self.press("ok")
        self.assertEqual(self.selected.value, "no" if self.image == "full" else "yes")

    def test_digits_type_a_number(self):
        self.switch_on()
        self.go_to("Save EPG for X days")
        self.press("1 4")
        if self.image != "full":
            self.assertEqual(self.selected.value, "14")

    def test_red_asks_before_it_drops_changes(self):
        self.switch_on()
        self.go_to("Enable MHW EPG")
        self.press("right red")
        self.assertEqual(self.top.name, "MessageBox")
        self.press("exit")
        self.assertEqual(self.selected.value, "yes")

    def test_client_mode_changes_the_rows_at_once(self):
        self.switch_on()
        self.go_to("Enable EPG client mode")
        self.assertEqual(self.list.total, 22)
        self.press("right")
        self.assertEqual(self.list.total, 20)
        self.assertEqual(self.labels[-1], LOAD)
        self.press("left")
        self.assertEqual(self.list.total, 22)

    def test_pop_up_of_a_selection(self):
        self.switch_on()
        for label in ("Default EPG view", "EPG language selection 1", "Show EPG data in single"):
            self.go_to(label)
            before = self.selected.value
            self.press("ok")
            self.assertEqual(self.top.name, "ChoiceBox")
            self.assertEqual(self.selected.label, before)
            self.press("down")
            choice = self.selected.label
            self.press("ok")
            self.assertEqual(self.selected.value, choice)

    def test_help_text(self):
        self.switch_on()
        self.assertEqual(self.text("description") != "", self.image != "full")
        self.go_to("Enable freesat EPG")
        self.assertEqual(self.text("description"), "Use FreeSat EPG information when it is available.")

    def test_what_the_image_does_not_use(self):
        """Said in the help line, and nowhere else."""
        self.switch_on()
        rows = self.receiver._gui.session.current_dialog["config"].list
        unused = [number for number, row in enumerate(rows, 1) if row[2] == "This image does not use this setting."]
        self.assertEqual(unused, {"full": [], "openpli": [1, 2, 4, 15, 16], "openatv": [1, 2, 15, 16],
                                  "openvix": [1, 2, 4]}[self.image])

    def test_the_blacklist_in_force(self):
        (self.etc / "blacklist.eit").write_text("his\n")
        (self.etc / "blacklist_dvb_epg").write_text("#SERVICE %s\n" % SERVICE)
        self.switch_on()
        in_force = SERVICE + "\nhis\n" if self.image == "openvix" else "his\n"
        for key, text in (("right", in_force), ("left", "his\n")):
            self.go_to("Forbid DVB EPG update")
            self.press(key + " green")
            self.assertEqual((self.etc / "blacklist.eit").read_text(), text)
            self.press("ok")

    def test_every_row_is_seen(self):
        self.switch_on()
        self.assertEqual(len(self.list.rows), 22)

    def test_add_a_bouquet_to_the_blacklist(self):
        self.switch_on()
        self.go_to("Edit blacklist for DVB EPG")
        self.press("ok blue yellow")
        self.assertShows("Edit blacklist for DVB EPG")
        names = self.labels
        self.assertGreater(len(names), 5)
        self.press("down yellow green")
        self.assertEqual(self.top.name, "Veltro")
        lines = (self.etc / "blacklist_dvb_epg").read_text().splitlines()
        self.assertEqual(len(lines), len(names) - 1)
        self.assertTrue(all(line.startswith(("#SERVICE 1:", "#SERVICE 4097:")) for line in lines))
        self.press("ok")
        self.assertEqual(self.labels, names[:1] + names[2:])

    def test_picker_keys(self):
        self.switch_on()
        self.go_to("Edit blacklist for DVB EPG")
        self.press("ok blue green")
        self.assertGreater(self.list.total, 20)
        self.press("blue")
        self.assertEqual(self.row("Favourites (TV)").kind, "bouquet")
        self.press("ok down*4 blue")
        self.assertEqual(self.selected.label, "Favourites (TV)", "one step up")
        self.press("radio")
        self.assertIn("(Radio)", self.top.title)
        self.press("tv red")
        self.assertShows("Edit blacklist for DVB EPG")
        self.press("blue ok ok")
        self.assertShows("Edit blacklist for DVB EPG")
        self.assertEqual(len(self.labels), 1)
        self.press("blue exit exit")
        self.assertEqual(self.top.name, "Veltro")
        self.assertFalse((self.etc / "blacklist_dvb_epg").exists())

    def test_yellow_with_nothing_selected_is_a_notice(self):
        (self.etc / "userbouquet.favourites.tv").write_text("#NAME Empty\n")
        self.switch_on()
        self.go_to("Edit blacklist for DVB EPG")
        self.press("ok blue ok")
        self.assertEqual(self.list.total, 0)
        self.press("yellow")
        self.assertEqual(self.text("text"), None if self.image == "full" else "Select a bouquet first.")

    def test_save_load_clear(self):
        self.switch_on()
        events = self.info("EPG cache")
        self.assertNotEqual(events, NOTHING)
        self.go_to(SAVE)
        self.press("ok")
        self.assertEqual(self.text("status"), "Saving of EPG cache to %s finished" % self.shown(self.epg_file))
        self.assertEqual(self.info("EPG file"), events)
        saved = (self.epg_file).read_bytes()
        self.press("down*2 ok")
        self.assertEqual(self.text("status"), "Clearing EPG DB finished")
        self.assertEqual(self.info("EPG cache"), NOTHING)
        self.assertIn(self.info("EPG file"), ("none", NOTHING))
        (self.epg_file).write_bytes(saved)
        self.press("up ok")
        self.assertEqual(self.text("status"), "Loading EPG data from %s finished" % self.shown(self.epg_file))
        self.assertEqual(self.info("EPG cache"), events)

    def test_nothing_comes_back_after_delete(self):
        self.switch_on()
        self.go_to(SAVE)
        self.press("ok exit")
        saved = self.info("EPG file")
        self.receiver.switch_off()
        self.set("usage.epg.eit", "False")  # what comes after a start is from the file alone
        self.new_receiver()
        self.switch_on()
        self.assertEqual(self.info("EPG cache"), saved)
        self.go_to(DELETE)
        self.press("ok exit")
        self.restart()
        self.assertEqual(self.info("EPG cache"), NOTHING)
        self.assertIn(self.info("EPG file"), ("none", NOTHING))

    def test_a_broken_file_is_gone_after_delete(self):
        self.epg_file.parent.mkdir(parents=True, exist_ok=True)
        self.epg_file.write_text("PC-EPG, but this is no EPG")
        self.switch_on()
        self.go_to(DELETE)
        self.press("ok exit")
        self.receiver.switch_off()
        left = [path.name for path in self.epg_file.parent.glob("epg.dat*") if b"this is no EPG" in path.read_bytes()]
        self.assertEqual(left, [])

    def test_a_directory_is_kept(self):
        """Also one that the image does not offer; the events saved there are back after a start."""
        for number, folder in enumerate(("media/usb", "media", "media/usb/below")):
            with self.subTest(folder):
                (self.root / folder).mkdir(parents=True, exist_ok=True)
                if number:
                    self.receiver.switch_off()
                    self.new_receiver()
                (self.root / "media" / "usb").mkdir(parents=True, exist_ok=True)
                self.switch_on()
                self.choose(folder)
                self.go_to(SAVE)
                self.press("ok exit")
                self.assertTrue((self.root / folder / "epg.dat").exists())
                self.set("usage.epg.eit", "False")
                self.new_receiver()
                self.switch_on()
                self.assertIn("EPG Path : /%s" % folder, self.labels)
                self.assertNotEqual(self.info("EPG cache"), NOTHING)
                self.assertIn(self.info("EPG cache"), self.info("EPG file"))
                self.press("exit")
                self.restart()
                self.assertIn("EPG Path : /%s" % folder, self.labels)

    def test_the_timer_follows_a_change(self):
        self.set("misc.epg_data_timer", "0")
        self.switch_on()
        self.press("wait:3h")
        self.assertEqual(self.info("EPG file"), "none")
        self.go_to("Save EPG data every X minutes")
        self.press("right green wait:4m")
        self.assertEqual(self.info("EPG file"), "none")
        self.press("wait:2m")
        self.assertEqual(self.info("EPG file"), self.info("EPG cache"))

    def test_leaves_no_traces_in_the_host(self):
        self.switch_on()
        self.press("exit")
        modules, names = dict(sys.modules), host_names()
        self.press("ok")
        self.assertEqual(self.top.name, "Veltro")
        for label, keys in (("Edit blacklist", "ok blue exit exit"), ("EPG Path", "ok exit"), (SAVE, "ok"), (DELETE, "ok"),
                            ("Default EPG view", "ok exit exit")):
            self.go_to(label)
            self.press(keys)
        self.assertShows("Main menu")
        self.assertEqual(sorted(sys.modules), sorted(modules))
        self.assertTrue(all(sys.modules[name] is module for name, module in modules.items()))
        self.assertEqual(host_names(), names)


    def test_leaves_no_traces_from_before_it_was_loaded(self):
        """As above, from the moment on when the plug-in was found and nothing of it had run yet."""
        before = []
        real = Session.open

        def watched(session, *arguments, **keywords):
            before or before.append((dict(sys.modules), host_names()))
            return real(session, *arguments, **keywords)
        with mock.patch.object(Session, "open", watched):
            self.switch_on()
        self.assertEqual(self.top.name, "Veltro")
        self.press("exit")
        modules, names = before[0]
        self.assertNotIn("Veltro", modules)
        self.assertTrue(all(sys.modules[name] is module for name, module in modules.items()))
        for name, earlier in names.items():
            now = host_names()[name]
            self.assertEqual({key: now[key] for key in earlier}, earlier, name)
            # A package gets a name for each of its modules when that is imported, by whomever.
            self.assertTrue(all(id(sys.modules.get("%s.%s" % (name, key))) == now[key] for key in set(now) - set(earlier)))


class Boxes:
    """What the bridge is for."""

    def setUp(self):
        super().setUp()
        self.switch_on()

    def assertLogged(self, *texts):
        console = "\n".join(self.receiver.console.lines)
        for text in texts:
            self.assertIn(text, console)

    def break_actions(self, what="no such luck"):
        def failing(action):
            raise ValueError(what)
        sys.modules["Veltro"].doEPGAction = failing

    def test_the_image_lacks_what_the_bridge_supplies(self):
        self.assertFalse(hasattr(host("Screens.ChannelSelection"), "eEnv"))
        self.assertFalse(hasattr(host("Components.ConfigList"), "getSelectionChoices"))
        self.assertFalse(hasattr(host("enigma").eEPGCache.getInstance(), "clearDB"))
        self.assertFalse(hasattr(host("Components.ServiceList").ServiceList, "setPythonConfig"))
        self.assertFalse(hasattr(host("Components.config").config.usage, "epg"))
        with self.assertRaises(ImportError):
            importlib.import_module("new")

    def test_elements_are_the_hosts_own(self):
        module, config = sys.modules["Veltro"], host("Components.config").config
        self.assertIs(module.config.usage.epg.eit, config.epg.eit)
        self.assertIs(module.config.usage.show_old_epg, config.epg.histminutes)
        self.assertIs(module.config.usage.show_nownext_eit, config.usage.show_eit_nownext)
        self.assertIs(module.config.usage.autolanguage.epglanguage, config.autolanguage.audio_epglanguage)
        self.assertIs(module.config.misc.epg_data_timer, config.misc.epg_data_timer)
        self.assertIs(module.config.usage.multiepg_ask_bouquet, config.usage.multiepg_ask_bouquet)

    def test_an_error_in_a_handler_is_a_message(self):
        self.break_actions()
        self.go_to(SAVE)
        self.press("ok")
        self.assertEqual(self.top.name, "MessageBox")
        self.assertEqual(self.text("text"), "That did not work.")
        self.assertLogged("Veltro.Veltro.keyOk failed:", "ValueError: no such luck")
        self.press("ok")
        self.assertEqual((self.top.name, self.selected.label), ("Veltro", SAVE))
        self.press("up*2 right exit")
        self.assertShows("Main menu")

    def test_without_the_guard_it_is_the_crash_screen(self):
        self.break_actions()
        self.press("exit")
        bridge("guard").on = False
        self.press("ok")
        self.go_to(SAVE)
        self.press("ok")
        self.assertEqual(self.top.name, "CrashScreen")
        self.assertIn("Veltro.Veltro.keyOk", self.text("trace"))

    def test_an_error_in_the_timer_is_a_message_and_ends_its_cycle(self):
        self.press("exit")
        self.set("misc.epg_data_timer", "5")
        self.restart()
        self.press("exit")
        self.break_actions("disk on fire")
        self.press("wait:6m")
        self.assertEqual(self.text("text"), "The EPG data could not be saved or loaded in the background.")
        self.assertLogged("Veltro.EPGTimer.do_epg_action failed:", "ValueError: disk on fire")
        self.press("ok wait:2h")
        self.assertShows("Main menu")

    def test_an_error_in_the_timer_waits_until_it_can_be_shown(self):
        self.press("exit")
        self.set("misc.epg_data_timer", "5")
        self.restart()
        self.break_actions()
        self.press("wait:6m")
        self.assertEqual(self.top.name, "Veltro")
        self.press("exit")
        self.assertEqual(self.top.name, "MessageBox")

    def test_an_error_in_a_changed_value_is_a_message(self):
        self.element("usage.show_old_epg")
        del host("Components.config").config.usage.show_eit_nownext
        view = sys.modules["Veltro"].config.usage
        vars(view).pop("show_nownext_eit")
        self.press("right")
        self.assertEqual(self.text("text"), "The EPG settings can't be shown.")
        self.assertLogged("Veltro.Veltro.changedEntry failed:", "show_nownext_eit")
        self.press("ok exit")
        self.assertShows("Main menu")

    def test_the_directory_that_one_is_in_is_a_choice(self):
        self.go_to("EPG Path")
        self.press("ok")
        here = self.shown(self.epg_file.parent)
        self.assertEqual((self.labels[:2], self.selected.label), ([here, "<Parent directory>"], here))
        self.press("down ok")
        self.assertEqual((self.labels[0], self.selected.label), (os.path.dirname(here), os.path.basename(here)))
        self.assertNotIn("no row", "\n".join(self.receiver.console.lines))

    def test_an_error_in_a_result_is_a_message(self):
        cache_file = sys.modules["Veltro"].config.misc.epgcache_filename

        def failing(*_):
            raise IOError("flash is worn out")
        cache_file.save = failing
        self.go_to("EPG Path")
        self.press("ok")
        self.press("ok down green")
        self.assertEqual(self.text("text"), "The directory could not be set.")
        self.press("ok")
        self.assertEqual(self.top.name, "Veltro")

    def test_a_screen_that_can_not_be_built_is_a_message(self):
        self.press("exit")
        timer = sys.modules["Veltro"].config.misc.epg_data_timer
        del host("Components.config").config.usage.multiepg_ask_bouquet
        self.press("ok")
        self.assertEqual(self.text("text"), "The EPG settings can't be shown.")
        self.assertLogged("Veltro.Veltro.__init__ failed:", "multiepg_ask_bouquet")
        self.press("ok")
        self.assertShows("Main menu")
        self.press("down up ok ok")
        self.assertShows("Main menu")
        self.assertEqual(timer.value, "0")

    def test_ok_with_nothing_selected_is_a_message_and_the_picker_stays(self):
        self.press("exit")
        (self.etc / "userbouquet.favourites.tv").write_text("#NAME Empty\n")
        self.restart()
        self.go_to("Edit blacklist for DVB EPG")
        self.press("ok blue ok ok")
        self.assertEqual(self.text("text"), "Nothing is selected.")
        self.press("ok")
        self.assertEqual(self.top.title, "Add Service (TV) - Empty")
        self.press("red exit")
        self.assertEqual(self.top.name, "Veltro")

    def test_a_file_that_can_not_be_removed_is_a_message(self):
        (self.epg_file).mkdir()
        (self.epg_file / "epg.dat").mkdir()
        self.go_to(DELETE)
        self.press("ok")
        self.assertEqual(self.text("text"), "The EPG data could not be saved, loaded or cleared.\nIs a directory")
        self.assertLogged("Veltro.Veltro.keyOk failed:")
        self.press("ok")
        self.assertEqual(self.text("status"), "")

    def test_methods_are_still_methods(self):
        screen = self.receiver._gui.session.current_dialog
        self.assertIs(type(screen.up), type(screen.close))

    def test_an_empty_cache_is_not_saved_by_the_host(self):
        """Without which the tests of "Delete broken epg.dat" would show nothing."""
        self.go_to(SAVE)
        self.press("ok")
        saved = (self.epg_file).read_bytes()
        cache = host("enigma").eEPGCache.getInstance()
        cache.flushEPG()
        cache.save()
        self.assertEqual((self.epg_file).read_bytes(), saved)


class OwnKeys:
    """Images that build the path of the EPG file from a directory and a name of their own."""

    def test_an_offered_directory_is_the_images_choice(self):
        self.switch_on()
        self.choose("media/usb")
        misc = host("Components.config").config.misc
        self.assertEqual((misc.epgcachepath.value, misc.epgcachefilename.value), ("/media/usb/", "epg"))
        self.assertEqual(misc.veltro_epgcache_filename.value, "")

    def test_the_images_own_menu_counts_afterwards(self):
        (self.root / "media" / "usb" / "below").mkdir(parents=True)
        self.switch_on()
        self.choose("media/usb/below")
        misc = host("Components.config").config.misc
        self.assertEqual(misc.epgcache_filename.value, "/media/usb/below/epg.dat")
        misc.epgcachepath.value = "/media/usb/"
        misc.epgcachepath.save()
        self.press("exit")
        self.restart()
        self.assertIn("EPG Path : /media/usb", self.labels)


class OpenAtvOnly:
    def test_365_days_are_typed(self):
        self.switch_on()
        self.go_to("Save EPG for X days")
        self.press("ok menu")
        self.assertNotEqual(self.top.name, "ChoiceBox")
        self.press("3 6 5")
        self.assertEqual(self.selected.value, "365")
        self.press("green")
        self.assertIn("config.epg.maxdays=365\n", self.settings())

    def test_a_client_does_not_save(self):
        self.switch_on()
        (self.epg_file).unlink(missing_ok=True)
        self.go_to("Enable EPG client mode")
        self.press("right")
        host("enigma").eEPGCache.getInstance().save()
        self.assertFalse((self.epg_file).exists())
        self.press("left")
        host("enigma").eEPGCache.getInstance().save()
        self.assertTrue((self.epg_file).exists())

    def test_nor_after_a_restart_or_when_saving_is_off_anyway(self):
        for settings in ("misc.epg_is_client_stb=True", "epg.saveepg=False"):
            (self.etc / "settings").write_text("config.%s\n" % settings)
            self.new_receiver()
            self.switch_on()
            host("enigma").eEPGCache.getInstance().save()
            self.assertFalse((self.epg_file).exists())
            self.press("exit")
            self.receiver.switch_off()


class KeymapTest(unittest.TestCase):
    def test_colour_keys(self):
        """(context, key, event) -> action, on the images that differ there."""
        for image, expected in {
                "full": {("ColorActions", "red", MAKE): "red", ("SetupActions", "red", MAKE): None},
                "openpli": {("ColorActions", "red", MAKE): "red", ("SetupActions", "red", MAKE): "cancel",
                            ("SetupActions", "down", MAKE): "down", ("TvRadioActions", "tv", BREAK): "keyTV"},
                "openatv": {("ColorActions", "red", MAKE): None, ("ColorActions", "red", BREAK): "red",
                            ("SetupActions", "red", BREAK): "cancel",
                            ("ChannelSelectBaseActions", "red", MAKE): "showAllServices",
                            ("OkCancelActions", "exit", BREAK): "cancel"},
                "openvix": {("ColorActions", "red", BREAK): "red", ("SetupActions", "red", MAKE): "cancel",
                            ("SetupActions", "down", MAKE): None, ("EPGSelectActions", "red", MAKE): None}}.items():
            keymap = read_keymap(*PROFILES[image].keymaps)
            self.assertEqual({place: keymap[place[0]].get(place[1:]) for place in expected}, expected, image)


class CommandLineTest(TvTest):
    def test_host(self):
        code, out, _ = run_cli("--host", "openvix", "--etc", str(self.etc), "--keys", "down*8 right green")
        self.assertEqual((code, "Main menu" in out), (0, True))
        self.assertEqual((self.etc / "settings").read_text(), "config.epg.eit=False\n")

    def test_unknown_host(self):
        code, _, error = run_cli("--host", "toaster", "--keys", "")
        self.assertEqual((code, error.count("\n"), "toaster" in error), (2, 1, True))


def _tests(image, *parts):
    return type(image.capitalize() + "".join(part.__name__ for part in parts), (*parts, ImageTest), {"image": image})


def load_tests(loader, standard, pattern):
    cases = [_tests(image, Flows) for image in PROFILES]
    cases += [_tests(image, Boxes) for image in PROFILES if image != "full"]
    cases += [_tests(image, OwnKeys) for image in PROFILES if PROFILES[image].builds_cache_path]
    cases += [_tests("openatv", OpenAtvOnly), KeymapTest, CommandLineTest]
    return unittest.TestSuite(loader.loadTestsFromTestCase(case) for case in cases)
