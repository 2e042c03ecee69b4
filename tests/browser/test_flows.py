"""What a user does on the module's screens, in a real page: with the keyboard, and again with the mouse on the remote."""

import re
import unittest

from tests.browser.case import PageTest

TITLE = "ORSA Veltro"
EDITOR = "Edit blacklist for DVB EPG"
PICKER = "Select service to add... (TV)"


class Flows:
    """The flows; how keys are pressed is up to the class that this is mixed into."""

    def settings(self):
        return (self.etc / "settings").read_text() if (self.etc / "settings").exists() else ""

    def test_walk_the_settings(self):
        self.shows(title=TITLE, position=1)
        self.press("up")
        self.shows(selected="Delete broken epg.dat", position=22)
        self.press("down*9")
        self.shows(selected="Enable EIT EPG", value="yes", description="Use EIT EPG information when it is available.")

    def test_change_and_save(self):
        self.go_to("Enable MHW EPG")
        self.shows(value="no")
        self.press("right")
        self.shows(value="yes")
        self.assertIn("on", self.js("return document.querySelector('.row.selected .switch').className"))
        self.go_to("Save EPG for X days in future")
        before = self.read()["value"]
        self.press("left")
        self.wait_for(lambda: self.read()["value"] != before)
        self.press("green")
        self.shows(title="Main menu")
        self.wait_for(lambda: "config.usage.epg.mhw" in self.settings().replace("config.epg.mhw", "config.usage.epg.mhw"))
        self.press("ok")
        self.shows(title=TITLE)
        self.go_to("Enable MHW EPG")
        self.shows(value="yes")

    def test_exit_takes_changes_back(self):
        self.go_to("Enable MHW EPG")
        self.press("right")
        self.shows(value="yes")
        self.press("exit")
        self.shows(title="Main menu")
        self.press("ok")
        self.shows(title=TITLE)
        self.go_to("Enable MHW EPG")
        self.shows(value="no")

    def test_digits(self):
        self.go_to("Save EPG data every X minutes")
        self.press("1 5")
        self.wait_for(lambda: re.search("0*15$", self.read()["value"]))

    def test_choose_from_the_popup(self):
        self.go_to("Show EPG data in single EPG list")
        self.press("ok")
        self.wait_for(lambda: "30 minutes" in self.read()["rows"])
        self.assertEqual(len(self.driver.find_elements("css selector", ".screen[aria-hidden]")), 1)
        self.press("down*2 ok")
        self.shows(title=TITLE, value="30 minutes")
        self.press("ok")
        self.wait_for(lambda: "30 minutes" in self.read()["rows"])
        self.press("2")
        self.shows(title=TITLE, value="15 minutes")
        self.press("ok")
        self.wait_for(lambda: "30 minutes" in self.read()["rows"])
        self.press("exit")
        self.shows(title=TITLE, value="15 minutes")

    def test_save_load_and_clear_the_cache(self):
        epg = self.hdd / "epg.dat"
        self.go_to("Save EPG cache")
        self.press("ok")
        self.shows(status="Saving of EPG cache to /media/hdd/epg.dat finished")
        self.assertTrue(epg.exists())
        self.wait_for(lambda: re.search(r"EPG file\s*[1-9]", self.js("return document.querySelector('.info').textContent")))
        self.press("down ok")
        self.wait_for(lambda: "oad" in self.read()["texts"]["status"])
        self.press("down ok")
        self.wait_for(lambda: re.search(r"EPG cache\s*0 events", self.js("return document.querySelector('.info').textContent")))

    def test_choose_a_directory(self):
        (self.hdd / "films & series").mkdir()
        self.go_to("EPG Path")
        self.press("ok")
        self.wait_for(lambda: "films & series" in self.read()["rows"])
        self.go_to("films & series")
        self.press("ok")
        self.wait_for(lambda: self.read()["rows"] == ["<Parent directory>"])
        self.press("ok")
        self.shows(selected="films & series")
        self.press("green")
        self.shows(title=TITLE)
        self.go_to("Enable MHW EPG")
        self.press("right")  # the row shows the new path when a change has the list made anew
        self.wait_for(lambda: "EPG Path : /media/hdd/films & series" in self.read()["rows"])

    def test_edit_the_blacklist(self):
        self.go_to("Edit blacklist")
        self.press("ok")
        self.shows(title=EDITOR, rows=[], key_blue="Add Service")
        self.press("blue")
        self.shows(title=PICKER)
        self.press("ok")
        self.shows(selected="Lantern One HD")
        self.press("down ok")
        self.shows(title=EDITOR, rows=["Lantern Two HD"])
        self.press("blue")
        self.shows(title=PICKER)
        self.press("radio")
        self.wait_for(lambda: "(Radio)" in self.read()["title"])
        self.press("tv")
        self.shows(title=PICKER)
        self.press("green")
        self.wait_for(lambda: self.read()["total"] > 20)
        self.press("blue")
        self.wait_for(lambda: self.read()["total"] < 10)
        self.press("yellow")
        self.shows(title=EDITOR)
        self.wait_for(lambda: self.read()["total"] == 10)
        self.press("yellow")
        self.wait_for(lambda: self.read()["total"] == 9)
        self.press("green")
        self.shows(title=TITLE)
        lines = (self.etc / "blacklist_dvb_epg").read_text().splitlines()
        self.assertEqual(len(lines), 9)
        self.assertTrue(all(line.startswith("#SERVICE 1:0:") for line in lines), lines)

    def test_switch_the_receiver_off(self):
        self.press("exit")
        self.shows(title="Main menu")
        self.press("down ok")
        self.wait_for(lambda: self.read()["off"])
        self.driver.find_element("css selector", ".off button").click()
        self.shows(title=TITLE)
        code, errors = self.receiver.interrupt()
        self.assertEqual(code, 0)
        self.assertNotIn("Traceback", errors)
        self.wait_for(lambda: not self.is_connected() and self.read()["off"])


class KeyboardTest(Flows, PageTest):
    pass


class RemoteTest(Flows, PageTest):
    def press_keys(self, keys):
        for key in keys:
            self.button(key).click()


if __name__ == "__main__":
    unittest.main()
