"""Every flow of the module's screens, with the compiled module: keys in, pictures and files out."""

import os
import sys
import unittest

from tests.receiver.tv import TvTest, has_module, host, value

ACTION_ROWS = ["Save EPG cache to epg.dat", "Load EPG data from epg.dat", "Delete broken epg.dat"]


class CompiledModuleTest(unittest.TestCase):
    def test_is_there(self):
        self.assertTrue(has_module(), "the compiled module is missing: script/build")


class SettingsScreenTest(TvTest):
    def setUp(self):
        super().setUp()
        self.switch_on()

    def settings_file(self):
        path = self.etc / "settings"
        return path.read_text() if path.exists() else ""

    def test_opens_first(self):
        self.assertEqual(self.top.name, "Veltro")
        self.assertEqual(self.text("title"), "ORSA Veltro")
        self.assertEqual((self.text("key_red"), self.text("key_green"), self.text("status")), ("Exit", "Save", ""))
        self.assertEqual(self.list.total, 22)
        self.assertEqual(len(self.list.rows), 22, "all rows are visible without scrolling")
        self.assertEqual(self.labels[0], "Multi-EPG bouquet selection")
        self.assertEqual(self.labels[-3:], ACTION_ROWS)
        self.assertEqual(self.row("Enable EIT EPG").switch, True)
        self.assertEqual(self.row("EPG Path : /media/hdd").value, "")

    def test_is_the_compiled_one(self):
        self.assertTrue(sys.modules["Veltro"].__file__.endswith(".so"))

    def test_moving_wraps_around(self):
        self.press("up")
        self.assertEqual(self.selected.label, ACTION_ROWS[-1])
        self.press("down")
        self.assertEqual(self.selected.label, self.labels[0])

    def test_holding_down_moves_on(self):
        self.press("hold:down*4")
        self.assertEqual(self.list.selected, 5)

    def test_description_of_the_row(self):
        self.go_to("Enable freesat EPG")
        self.assertEqual(self.text("description"), "Use FreeSat EPG information when it is available.")
        self.press("up*4")
        self.assertEqual(self.text("description"), "Configure the primary EPG language.")

    def test_right_and_green_last(self):
        self.go_to("Save EPG for X days in future")
        self.press("right green")
        self.assertShows("Main menu")
        self.assertEqual(self.settings_file(), "config.usage.epg_buffer=8\n")
        self.restart()
        self.assertEqual(self.row("Save EPG for X days in future").value, "8")

    def test_exit_reverts(self):
        self.press("right exit")
        self.assertShows("Main menu")
        self.assertFalse(value("usage.multiepg_ask_bouquet"))
        self.assertEqual(self.settings_file(), "")

    def test_red_asks_when_something_changed(self):
        self.press("right red")
        self.assertEqual(self.text("text"), "Really close without saving settings?")
        self.press("ok")
        self.assertEqual(self.top.name, "Veltro")
        self.press("red up ok")
        self.assertShows("Main menu")
        self.assertFalse(value("usage.multiepg_ask_bouquet"))

    def test_red_closes_when_nothing_changed(self):
        self.press("red")
        self.assertShows("Main menu")

    def test_client_mode_changes_the_rows_at_once(self):
        self.go_to("Enable EPG client mode")
        self.press("right")
        self.assertEqual(self.list.total, 20)
        self.assertEqual(self.labels[-2:], ["Load EPG data from file every X minutes (0 = off)", ACTION_ROWS[1]])
        self.press("left")
        self.assertEqual(self.list.total, 22)

    def test_selection_pop_up(self):
        self.go_to("Default EPG view")
        before = self.selected.value
        self.press("ok")
        self.assertEqual(self.text("text"), "Default EPG view (EPG button)")
        self.assertEqual(self.selected.label, before)
        self.assertEqual([row.shortcut for row in self.list.rows], ["1", "2", "3", "4", "5"])
        choice = self.labels[1]
        self.press("2")
        self.assertEqual(self.top.name, "Veltro")
        self.assertEqual(self.selected.value, choice)

    def test_selection_pop_up_left_without_a_choice(self):
        self.go_to("Default EPG view")
        before = self.selected.value
        self.press("ok down exit")
        self.assertEqual(self.selected.value, before)

    def test_ok_on_a_yes_no_row_does_nothing(self):
        picture = self.picture
        self.press("ok")
        self.assertEqual(self.picture, picture)

    def test_digits(self):
        self.go_to("Save EPG data every X minutes")
        self.press("3 0 wait:2s green")
        self.assertIn("config.misc.epg_data_timer=30\n", self.settings_file())

    def test_save_load_clear(self):
        self.go_to(ACTION_ROWS[0])
        events = self.info("EPG cache")
        self.assertNotEqual(events, "0 events, 0 services")
        self.assertEqual(self.info("EPG file"), "none")
        self.press("ok")
        self.assertEqual(self.text("status"), "Saving of EPG cache to %s finished" % "/media/hdd/epg.dat")
        self.assertEqual(self.info("EPG file"), events)
        self.press("down*2")
        self.assertEqual(self.text("status"), "")
        saved = (self.hdd / "epg.dat").read_bytes()
        self.press("ok")
        self.assertEqual(self.text("status"), "Clearing EPG DB finished")
        self.assertEqual(self.info("EPG cache"), "0 events, 0 services")
        self.assertEqual(self.info("EPG file"), "0 events, 0 services")
        (self.hdd / "epg.dat").write_bytes(saved)
        self.press("up ok")
        self.assertEqual(self.text("status"), "Loading EPG data from %s finished" % "/media/hdd/epg.dat")
        self.assertEqual(self.info("EPG cache"), events)
        self.press("right")
        self.assertEqual(self.top.name, "Veltro")

    def test_the_saved_cache_comes_back_at_the_next_start(self):
        self.go_to(ACTION_ROWS[0])
        self.press("ok")
        events = self.info("EPG cache")
        self.restart()
        self.assertEqual(self.info("EPG cache"), events)

    def test_no_file_where_nothing_was_saved(self):
        self.press("exit")
        self.receiver.switch_off()
        self.assertFalse((self.hdd / "epg.dat").exists())


class TimerTest(TvTest):
    def set(self, text):
        (self.etc / "settings").write_text(text)
        self.switch_on()

    def test_saves_every_period(self):
        self.set("config.misc.epg_data_timer=30\n")
        self.press("wait:29m")
        self.assertEqual(self.info("EPG file"), "none")
        self.press("wait:61s")
        self.assertEqual(self.info("EPG file"), self.info("EPG cache"))
        (self.hdd / "epg.dat").unlink()
        self.press("wait:30m")
        self.assertEqual(self.info("EPG file"), self.info("EPG cache"))

    def test_a_client_loads_after_15_seconds_and_then_every_period(self):
        self.set("config.misc.epg_data_timer=30\n")
        self.press("wait:31m")
        full = self.info("EPG file")
        self.receiver.switch_off()
        saved = (self.hdd / "epg.dat").read_bytes()
        (self.hdd / "epg.dat").unlink()
        self.new_receiver()
        self.set("config.misc.epg_data_timer=30\nconfig.misc.epg_is_client_stb=True\n")
        self.assertEqual(self.info("EPG cache"), "0 events, 0 services")
        (self.hdd / "epg.dat").write_bytes(saved)
        self.press("wait:14s")
        self.assertEqual(self.info("EPG cache"), "0 events, 0 services")
        self.press("wait:2s")
        self.assertEqual(self.info("EPG cache"), full)

    def test_zero_is_off(self):
        self.set("config.misc.epg_data_timer=0\n")
        self.press("wait:24h")
        self.assertEqual(self.info("EPG file"), "none")


class DirectoryChooserTest(TvTest):
    def setUp(self):
        super().setUp()
        for name in ("a.ts", "backup/"):
            place = self.hdd / name
            place.parent.mkdir(parents=True, exist_ok=True)
            place.mkdir() if name.endswith("/") else place.touch()
        self.switch_on()
        self.go_to("EPG Path")
        self.press("ok")

    def test_picture(self):
        self.assertEqual(self.top.name, "KelmarFile")
        self.assertEqual((self.text("key_red"), self.text("key_green"), self.text("driverfile")), ("Cancel", "OK", ""))
        self.assertEqual([row.kind for row in self.list.rows][:3], ["parent", "folder", "file"])

    def test_green_stores_the_directory_at_once(self):
        self.press("down")
        self.assertEqual(self.text("driverfile"), "/media/hdd/backup/")
        self.press("green")
        self.assertEqual(value("misc.epgcache_filename"), "/media/hdd/backup/epg.dat")
        self.assertEqual(self.top.name, "Veltro")
        self.press("exit")
        self.restart()
        self.assertIn("EPG Path : /media/hdd/backup", self.labels)

    def test_ok_enters_and_comes_back(self):
        self.press("down ok")
        self.assertEqual(self.text("driverfile"), "/media/hdd/")
        self.assertEqual(self.list.total, 1)
        self.press("ok")
        self.assertEqual(self.selected.label, "backup")

    def test_files_are_no_choice(self):
        self.press("down*2")
        for key in ("green", "ok"):
            self.press(key)
            self.assertEqual(self.text("driverfile"), "Invalid Choice")
            self.assertEqual(self.top.name, "KelmarFile")

    def test_left_and_right_move_by_pages(self):
        for number in range(40):
            (self.hdd / ("film%02d" % number)).touch()
        self.press("exit ok right")
        self.assertEqual(self.list.selected, 17)
        self.press("left")
        self.assertEqual(self.list.selected, 0)
        self.press("channeldown")
        self.assertEqual((self.list.selected, self.text("driverfile")), (17, "Invalid Choice"))
        self.press("channelup next")
        self.assertEqual(self.list.selected, 0)

    def test_red_and_exit_change_nothing(self):
        for key in ("red", "exit"):
            self.assertEqual(self.top.name, "KelmarFile")
            self.press(key)
            self.assertEqual(self.top.name, "Veltro")
            self.assertEqual(value("misc.epgcache_filename"), "/media/hdd/epg.dat")
            self.press("ok")


class BlacklistTest(TvTest):
    def setUp(self):
        super().setUp()
        self.file = self.etc / "blacklist_dvb_epg"

    def open_editor(self):
        self.switch_on()
        self.go_to("Edit blacklist for DVB EPG")
        self.press("ok")
        self.assertShows("Edit blacklist for DVB EPG")

    def test_picture(self):
        self.open_editor()
        self.assertEqual([self.text(key) for key in ("key_red", "key_green", "key_yellow", "key_blue")],
                         ["Cancel", "Save", "Delete", "Add Service"])
        self.assertEqual(self.labels, [])

    def test_add_a_service_and_save(self):
        self.open_editor()
        self.press("blue")
        self.assertEqual([self.text(key) for key in ("key_red", "key_green", "key_yellow", "key_blue")],
                         ["Close", "All", "Add bouquet services", "Favourites"])
        self.press("ok down ok")
        self.assertShows("Edit blacklist for DVB EPG")
        self.assertEqual(len(self.labels), 1)
        self.press("green")
        self.assertEqual(self.file.read_text(), "#SERVICE 1:0:19:102:401:FE:640000:0:0:0:\n")
        self.assertEqual(self.top.name, "Veltro")
        self.press("ok")
        self.assertEqual(len(self.labels), 1)

    def test_add_a_bouquet(self):
        self.open_editor()
        self.press("blue yellow")
        names = self.labels
        self.assertGreater(len(names), 5)
        self.assertEqual(len(set(names)), len(names))
        self.press("blue yellow")
        self.assertEqual(self.labels, names, "nothing is added twice")
        self.press("green")
        lines = self.file.read_text().splitlines()
        self.assertEqual(len(lines), len(names))
        self.assertTrue(all(line.startswith(("#SERVICE 1:", "#SERVICE 4097:")) for line in lines))

    def test_delete(self):
        self.open_editor()
        self.press("blue yellow")
        names = self.labels
        self.press("down yellow")
        self.assertEqual(self.labels, names[:1] + names[2:])

    def test_red_and_exit_write_nothing(self):
        self.file.write_text("#SERVICE 1:0:19:102:401:FE:640000:0:0:0:\n")
        for key in ("red", "exit"):
            self.open_editor()
            self.press("yellow " + key)
            self.assertEqual(self.file.read_text(), "#SERVICE 1:0:19:102:401:FE:640000:0:0:0:\n")
            self.receiver.switch_off()

    def test_picker_keys(self):
        self.open_editor()
        self.press("blue green")
        self.assertGreater(self.list.total, 20)
        self.press("blue")
        self.assertEqual(self.row("Favourites (TV)").kind, "bouquet")
        self.press("yellow")
        self.press("blue radio")
        self.assertIn("(Radio)", self.top.title)
        self.press("tv red")
        self.assertShows("Edit blacklist for DVB EPG")

    def test_yellow_on_a_service_does_nothing_and_markers_are_passed_over(self):
        self.open_editor()
        self.press("blue ok yellow")
        self.assertIn("Select service to add...", self.top.title)
        self.press("blue down*2 ok next")
        rows = self.list.rows
        self.assertEqual(rows[rows.index(self.selected) - 1].kind, "marker")
        self.press("exit")
        self.assertEqual(self.labels, [])

    def test_a_full_disk_costs_the_file_and_closes(self):
        self.file.write_text("#SERVICE 1:0:19:102:401:FE:640000:0:0:0:\n")
        self.open_editor()
        self.file.unlink()
        os.symlink("/dev/full", self.file)
        self.press("green")
        self.assertFalse(os.path.lexists(self.file))
        self.assertIn("[Veltro] writing DVB EPG blacklist failed", self.receiver.console.lines)
        self.assertEqual(self.top.name, "Veltro")

    def test_services_of_the_list_receive_nothing_in_blacklist_mode(self):
        reference = "1:0:19:102:401:FE:640000:0:0:0:"
        self.switch_on()
        events, services = host("enigma").eEPGCache.getInstance().counts()
        self.receiver.switch_off()
        self.file.write_text("#SERVICE %s\n" % reference)
        (self.etc / "settings").write_text("config.misc.epg_dvb_blacklist_mode=True\n")
        self.new_receiver()
        self.switch_on()
        self.assertEqual(host("enigma").eEPGCache.getInstance().counts(), (events - 210, services - 1))


class MainMenuTest(TvTest):
    def test_opens_the_settings_again_and_switches_off(self):
        self.switch_on()
        self.press("exit")
        self.assertShows("Main menu")
        self.assertEqual(self.labels, ["Veltro", "Switch the receiver off"])
        self.press("ok")
        self.assertEqual(self.top.name, "Veltro")
        self.press("exit down ok")
        self.assertFalse(self.receiver.is_on)
        self.assertEqual(self.picture.screens, [])


class CrashTest(TvTest):
    """An error that leaves a handler ends the GUI, shows where it came from, and the GUI starts again."""

    def setUp(self):
        super().setUp()
        self.switch_on()

    def crash(self):
        """Another plug-in's error."""
        def fail():
            raise ValueError("no such luck")
        self.run_in_gui(fail)

    def test_trace(self):
        self.crash()
        self.assertEqual(self.top.name, "CrashScreen")
        trace = self.text("trace")
        self.assertTrue(trace.startswith("Traceback"))
        self.assertTrue(trace.endswith("ValueError: no such luck"))
        self.assertIn("ValueError: no such luck", self.receiver.console.lines)

    def test_starts_again_by_itself_with_the_main_menu(self):
        self.crash()
        self.press("exit down red wait:9s")
        self.assertIsNotNone(self.receiver.crash)
        self.press("wait:2s")
        self.assertShows("Main menu")
        self.press("ok")
        self.go_to(ACTION_ROWS[0])
        self.press("ok")
        self.assertIn("finished", self.text("status"))

    def test_ok_starts_again_at_once_and_only_once(self):
        self.crash()
        self.press("ok")
        self.assertShows("Main menu")
        self.press("ok wait:15s")
        self.assertEqual(self.top.name, "Veltro")

    def test_unsaved_changes_and_events_are_lost_as_on_a_box(self):
        self.press("right")
        host("enigma").eEPGCache.getInstance().clearDB()
        self.crash()
        self.press("ok")
        self.assertFalse(value("usage.multiepg_ask_bouquet"))
        self.assertNotEqual(self.info("EPG cache"), "0 events, 0 services")

    def test_an_error_while_a_row_is_painted(self):
        def fail():
            raise ValueError("no text")
        host("Components.config").config.usage.epg.eit.getText = fail
        self.assertEqual(self.top.name, "CrashScreen")
        self.assertTrue(self.text("trace").endswith("ValueError: no text"))

    def test_switching_off_during_the_crash_screen(self):
        self.crash()
        self.receiver.switch_off()
        self.press("wait:20s")
        self.assertEqual(self.picture.screens, [])
        self.assertIsNone(self.receiver._gui.session, "it has not started again")
        self.switch_on()
        self.press("wait:20s")
        self.assertEqual(self.top.name, "Veltro")


class OperationErrorTest(TvTest):
    """An error of one of the module's operations costs a message; the screen stays, and so do its changes."""

    def setUp(self):
        super().setUp()
        self.switch_on()

    def assertMessage(self, *words):
        self.assertIsNone(self.receiver.crash)
        self.assertEqual(self.top.name, "MessageBox")
        for word in words:
            self.assertIn(word, self.text("text"))
        self.press("ok")

    def test_in_a_key_handler(self):
        def fail(action):
            raise ValueError("no such luck")
        sys.modules["Veltro"].doEPGAction = fail
        self.press("right")
        self.go_to(ACTION_ROWS[0])
        self.press("ok")
        self.assertMessage("That could not be done", "no such luck")
        self.assertTrue(any("Veltro.Veltro.keyOk" in line for line in self.receiver.console.lines))
        self.assertEqual((self.top.name, self.selected.label), ("Veltro", ACTION_ROWS[0]))
        self.assertTrue(value("usage.multiepg_ask_bouquet"))

    def test_in_a_timer(self):
        def fail(action):
            raise ValueError("no such luck")
        sys.modules["Veltro"].doEPGAction = fail
        self.press("wait:61m")
        self.assertMessage("no such luck")
        self.press("exit")
        self.assertShows("Main menu")

    def test_at_the_screens_opening(self):
        self.press("exit")
        del host("Components.config").config.usage.show_old_epg
        self.press("ok")
        self.assertMessage("show_old_epg")
        self.assertShows("Main menu")
        self.press("down up")
        self.assertEqual(self.selected.label, "Veltro")

    def test_a_bouquet_whose_file_is_missing(self):
        self.press("exit")
        (self.etc / "userbouquet.favourites.tv").unlink()
        self.restart()
        self.go_to("Edit blacklist")
        self.press("ok blue ok ok")
        self.assertMessage("That could not be done")
        self.assertIn("Select service to add...", self.top.title)
        self.press("exit exit")
        self.assertEqual(self.top.name, "Veltro")

    def test_a_blacklist_that_can_not_be_read(self):
        place = self.etc / "blacklist_dvb_epg"
        for make, remove in ((place.mkdir, place.rmdir), (lambda: os.mkfifo(place), place.unlink)):
            make()
            self.go_to("Edit blacklist")
            self.press("ok")
            self.assertIsNone(self.receiver.crash)
            self.press("exit")
            self.assertEqual(self.top.name, "Veltro")
            remove()


class OtherHostTest(TvTest):
    """Facts in which images differ."""

    def start_picker(self, **facts):
        self.receiver = self.new_receiver(**facts)
        self.switch_on()
        self.go_to("Edit blacklist for DVB EPG")
        self.press("ok blue")

    def test_a_channel_list_that_sees_the_color_keys_first(self):
        self.start_picker(channel_map_priority=-2)
        self.press("red")
        self.assertIn("Select service to add...", self.top.title)
        self.assertGreater(self.list.total, 20)

    def test_an_invalid_reference_for_nothing_selected(self):
        self.start_picker(empty_selection_is_none=False)
        screen = self.receiver._gui.session.current_dialog
        self.run_in_gui(lambda: screen.servicelist.l.setList([]))
        self.assertFalse(screen.getCurrentSelection().valid())
        self.press("ok")
        self.assertShows("Edit blacklist for DVB EPG")
        self.assertEqual(self.labels, [])

    def test_nothing_selected_where_that_is_none_is_an_error(self):
        self.start_picker(forgiving=False)
        screen = self.receiver._gui.session.current_dialog
        self.run_in_gui(lambda: screen.servicelist.l.setList([]))
        self.press("ok")
        self.assertIn("DVB_EPG_blacklist_ChannelSelection.channelSelected", self.text("trace"))

    def test_every_key_press_reported_as_a_change(self):
        for always, rebuilt in ((False, False), (True, True)):
            self.receiver.switch_off()
            self.receiver = self.new_receiver(on_change_always=always)
            self.switch_on()
            screen = self.receiver._gui.session.current_dialog
            rows = screen["config"].list
            self.press("5")  # no digit changes a yes/no
            self.assertEqual(screen["config"].list is not rows, rebuilt)
