"""The picture under a mouse and under a finger, and the remote under a finger."""

import time
import unittest

from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.actions.wheel_input import ScrollOrigin

from tests.browser.case import PageTest, resize, write_services

TITLE = "ORSA Veltro"


class MouseTest(PageTest):
    def test_a_row_is_selected_then_chosen(self):
        self.row("Default EPG view").click()
        self.shows(selected="Default EPG view (EPG button)", title=TITLE)
        self.row("Default EPG view").click()
        self.wait_for(lambda: self.read()["selected"] == "Graphical multi EPG")

    def test_a_choice_takes_one_click(self):
        self.go_to("Default EPG view")
        self.press("ok")
        self.wait_for(lambda: "Multi EPG" in self.read()["rows"])
        self.row("4").click()
        self.shows(title=TITLE, value="Vertical EPG")

    def test_beside_a_pop_up_is_exit(self):
        self.go_to("Default EPG view")
        self.press("ok")
        self.wait_for(lambda: "Multi EPG" in self.read()["rows"])
        tv = self.driver.find_element("css selector", ".tv")
        ActionChains(self.driver, duration=0).move_to_element_with_offset(tv, 0, -tv.size["height"] // 2 + 20).click().perform()
        self.shows(title=TITLE, value="Graphical multi EPG")

    def test_switches_and_arrows(self):
        self.row("Enable MHW EPG").find_element("css selector", ".switch").click()
        self.shows(selected="Enable MHW EPG", value="yes")
        self.row("Enable MHW EPG").click()
        self.shows(value="no")
        self.row("Save EPG for X days").click()
        self.shows(selected="Save EPG for X days in future", value="7")
        self.find(".selected [data-key=left]").click()
        self.shows(value="6")
        self.find(".selected [data-key=right]").click()
        self.shows(value="7")

    def test_the_labels_of_the_colour_keys(self):
        self.find("[data-key=red]").click()
        self.shows(title="Main menu")

    def test_a_menu_takes_one_click(self):
        self.press("exit")
        self.shows(title="Main menu")
        self.row("Veltro").click()
        self.shows(title=TITLE)

    def test_actions(self):
        self.row("Load EPG data").click()
        self.row("Load EPG data").click()
        self.wait_for(lambda: "Loading" in self.read()["texts"]["status"])

    def test_the_wheel_moves_the_cursor_where_all_rows_are_seen(self):
        self.wheel(100)
        self.wait_for(lambda: self.read()["position"] > 3)
        self.wheel(-1000)
        self.shows(position=1)

    def wheel(self, pixels):
        origin = ScrollOrigin.from_element(self.find(".list"))
        ActionChains(self.driver, duration=0).scroll_from_origin(origin, 0, pixels).perform()


class LongListTest(PageTest):
    wheel = MouseTest.wheel

    def prepare(self):
        write_services(self.etc, ["Service %04d" % number for number in range(1, 2001)])

    def setUp(self):
        super().setUp()
        self.go_to("Edit blacklist")
        self.press("ok blue")
        self.wait_for(lambda: "Select service" in self.read()["title"])
        self.press("green")
        self.shows(total=2000, position=1)

    def first(self):
        return int(self.read()["rows"][0].split()[1])

    def test_the_wheel_scrolls(self):
        self.wheel(400)
        self.wait_for(lambda: self.first() > 10)
        self.wheel(-4000)
        self.wait_for(lambda: self.first() == 1)

    def test_the_list_can_be_dragged(self):
        height = self.find(".row").size["height"]
        row = self.row("Service 0015")
        ActionChains(self.driver, duration=0).click_and_hold(row).move_by_offset(0, -4 * height).move_by_offset(
            0, -6 * height).release().perform()
        self.wait_for(lambda: self.first() in (10, 11, 12))
        time.sleep(0.2)
        self.assertIn("Select service", self.read()["title"])  # the release was no click

    def test_the_scroll_bar_can_be_dragged(self):
        thumb, half = self.find(".scrollbar > div"), self.find(".list").size["height"] // 2
        ActionChains(self.driver, duration=0).click_and_hold(thumb).move_by_offset(0, half).perform()
        self.wait_for(lambda: 900 < self.read()["position"] < 1200)
        ActionChains(self.driver, duration=0).move_by_offset(0, half).release().perform()
        self.shows(position=2000)

    def test_typed_letters_search(self):
        ActionChains(self.driver, duration=0).send_keys("service").perform()
        self.shows(position=2)
        ActionChains(self.driver, duration=0).send_keys("t").perform()  # no service has it, and it is not the key TV here
        self.press("down")
        self.shows(position=3)
        self.press("radio")
        self.wait_for(lambda: "(Radio)" in self.read()["title"])

    def test_a_finger_drags(self):
        self.use_fingers(390, 844)
        self.shows(total=2000)
        thumb, rows = self.find(".scrollbar > div").rect, self.find(".list").rect
        self.assertLess(abs(thumb["y"] - rows["y"]), 3)
        self.assertLess(abs(thumb["x"] + thumb["width"] - rows["x"] - rows["width"]), 3)
        self.touch(self.find(".list"), *[(0, -20)] * 12)
        self.wait_for(lambda: self.first() > 8)  # it runs on, further than the finger went
        self.touch(self.button("down"))
        first = self.wait_for(lambda: self.first())
        time.sleep(0.3)
        self.assertLessEqual(self.first(), first + 1)


class FingerTest(PageTest):
    def setUp(self):
        super().setUp()
        self.use_fingers(390, 844)
        self.shows(position=1)

    def test_a_swipe_over_a_button_does_not_press_it(self):
        for key in ("down", "ok", "right", "red"):
            self.touch(self.button(key), *[(0, -15)] * 5)
        time.sleep(0.4)
        self.shows(title=TITLE, position=1, value="no")

    def test_a_swipe_brings_the_keys_that_are_not_seen(self):
        resize(self.driver, 320, 200, 2, touch=True)
        self.touch(self.button("1"), *[(0, -10)] * 8)
        self.wait_for(lambda: self.js("return document.querySelector('.remote').scrollTop") > 20)
        self.shows(position=1)

    def test_a_tap_and_a_held_finger_press(self):
        self.touch(self.button("down"))
        self.shows(position=2)
        self.touch(self.button("down"), (1, 2))  # a finger is never quite still
        self.shows(position=3)
        self.touch(self.button("down"), seconds=1.2)
        self.wait_for(lambda: self.read()["position"] > 5)
        position = self.read()["position"]
        time.sleep(0.4)
        self.shows(position=position)

    def test_rows_are_tapped(self):
        self.touch(self.row("Enable MHW EPG"))
        self.shows(selected="Enable MHW EPG", value="no")
        self.touch(self.row("Enable MHW EPG"))
        self.shows(value="yes")
        self.touch(self.find("[data-key=green]"))
        self.shows(title="Main menu")

    def test_the_rest_of_a_list_comes_with_a_swipe_and_with_the_keys(self):
        last = self.driver.find_elements("css selector", ".row")[-1]
        self.assertFalse(self.is_seen(last))
        self.touch(self.find(".list"), *[(0, -30)] * 8)
        self.assertTrue(self.is_seen(last))
        self.shows(position=1)
        self.touch(self.button("up"))
        self.shows(position=22)
        self.touch(self.button("up"))
        self.shows(position=21)
        self.touch(self.button("down"))
        self.touch(self.button("down"))
        self.shows(position=1)
        self.wait_for(lambda: self.is_seen(self.find(".selected")))

    def is_seen(self, row):
        return self.js("""const row = arguments[0].getBoundingClientRect(), list = arguments[0].parentElement.getBoundingClientRect();
                          return row.top >= list.top - 1 && row.bottom <= list.bottom + 1""", row)


if __name__ == "__main__":
    unittest.main()
