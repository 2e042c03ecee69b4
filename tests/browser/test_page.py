"""The page itself: reload, several pages, a lost connection, many keys, odd names, a phone, a screen reader."""

import http.server
import threading
import time
import unittest

from selenium.webdriver.common.action_chains import ActionChains

from receiver.actions import KEYS
from receiver.web import camera
from tests.browser.case import PageTest, write_services

TITLE = "ORSA Veltro"

# Presses and releases keys as fast as a page can; the argument is a list of the keyboard's names for them.
STORM = """
for (const key of arguments[0])
  for (const type of ['keydown', 'keyup']) document.dispatchEvent(new KeyboardEvent(type, {key, bubbles: true}));
"""


class ConnectionTest(PageTest):
    def test_reload_in_the_middle(self):
        self.go_to("Enable MHW EPG")
        self.press("right")
        self.shows(value="yes")
        self.driver.refresh()
        self.wait_for(self.is_connected)
        self.shows(title=TITLE, selected="Enable MHW EPG", value="yes")
        self.press("down")
        self.shows(selected="Enable freesat EPG")

    def test_the_first_document_holds_the_picture(self):
        self.press("down*3")
        self.shows(position=4)
        self.driver.execute_cdp_cmd("Emulation.setScriptExecutionDisabled", {"value": True})
        self.addCleanup(self.driver.execute_cdp_cmd, "Emulation.setScriptExecutionDisabled", {"value": False})
        self.driver.refresh()
        self.shows(title=TITLE, position=4)

    def test_two_pages(self):
        first = self.driver.current_window_handle
        self.driver.switch_to.new_window("tab")
        second = self.driver.current_window_handle
        self.addCleanup(self.driver.switch_to.window, first)
        self.open()
        self.press("down*2")
        self.shows(position=3)
        self.driver.switch_to.window(first)
        self.shows(position=3)
        self.press("down")
        self.shows(position=4)
        self.driver.switch_to.window(second)
        self.shows(position=4)
        self.driver.close()
        self.driver.switch_to.window(first)
        self.press("down")
        self.shows(position=5)

    def test_a_dropped_connection_comes_back_with_the_newest_frame(self):
        self.press("down")
        self.shows(position=2)
        self.js("socket.close()")
        self.wait_for(lambda: not self.is_connected())
        self.assertIn("No connection", self.js("return document.querySelector('.connection').textContent"))
        self.wait_for(self.is_connected)
        self.assertEqual(self.js("return document.querySelector('.connection').textContent"), "")
        self.press("down")
        self.shows(position=3)

    def test_keys_pressed_while_the_connection_is_made_are_not_lost(self):
        self.js("socket.onclose = null; socket.close(); connect();" + STORM, ["ArrowDown"] * 7)
        self.shows(position=8)

    def test_a_button_held_while_the_connection_drops_is_let_go(self):
        self.js("document.dispatchEvent(new KeyboardEvent('keydown', {key: 'ArrowDown'})); socket.close()")
        self.wait_for(lambda: not self.is_connected())
        self.assertNotIn("pressed", self.button("down").get_attribute("class"))

    def test_a_killed_receiver_comes_back(self):
        self.press("down*5")
        self.shows(position=6)
        port = self.receiver.port
        self.receiver.kill()
        self.wait_for(lambda: not self.is_connected())
        self.receiver = self.start(port=port)
        self.wait_for(self.is_connected)
        self.shows(title=TITLE, position=1)
        self.press("down")
        self.shows(position=2)

    def test_ctrl_c(self):
        code, errors = self.receiver.interrupt()
        self.assertEqual(code, 0)
        self.assertNotIn("Traceback", errors)
        self.wait_for(lambda: self.read()["off"])

    def test_the_console_is_below(self):
        self.go_to("Load EPG data")
        self.press("ok")
        self.wait_for(lambda: "there is no /media/hdd/epg.dat yet" in self.js("return document.querySelector('.lines').textContent"))


class ManyServicesTest(PageTest):
    """With a channel list of 5,000 services."""

    def prepare(self):
        write_services(self.etc, ["Service %04d" % number for number in range(1, 5001)])

    def open_all_services(self):
        self.go_to("Edit blacklist")
        self.press("ok blue")
        self.wait_for(lambda: "Select service" in self.read()["title"])
        self.press("green")
        self.shows(total=5000, position=1)

    def test_a_thousand_keys(self):
        self.open_all_services()
        self.js(STORM, ["ArrowDown"] * 1000)
        self.shows(position=1001, selected="Service 1001")
        self.js(STORM, ["ArrowUp", "ArrowDown", "ArrowDown"] * 333 + ["ArrowUp"])
        self.shows(position=1001 + 333 - 1)

    def test_a_thousand_keys_that_open_and_close_screens(self):
        self.shows(position=1)
        self.go_to("Show EPG data in single EPG list")
        position = self.read()["position"]
        self.js(STORM, ["Enter", "ArrowDown", "Escape", "ArrowDown", "ArrowUp"] * 200 + ["ArrowDown"])
        self.shows(title=TITLE, position=position + 1)

    def test_a_thousand_keys_on_a_real_keyboard(self):
        self.open_all_services()
        self.press("down*1000")
        self.shows(position=1001)

    def test_scroll_bar(self):
        self.open_all_services()
        thumb = "return document.querySelector('.scrollbar > div').getBoundingClientRect().top"
        before = self.js(thumb)
        self.press("right*60")
        self.wait_for(lambda: self.read()["position"] > 1000)
        self.assertGreater(self.js(thumb), before)


MARKUP = ["<img src=x onerror='window.hacked=1'>", "\"><script>window.hacked=2</script>", "A & B &lt;i&gt;",
          "--></div></section><h1>big</h1>", "{{7*7}} ${7*7}", "  two  blanks  ", "\u202eright to left"]


class MarkupTest(PageTest):
    def prepare(self):
        write_services(self.etc, MARKUP)
        (self.hdd / "<b>bold<b> & <script>").mkdir(parents=True)
        (self.hdd / "not \udcff text").mkdir()

    def test_names_of_services(self):
        self.go_to("Edit blacklist")
        self.press("ok blue")
        self.wait_for(lambda: "Select service" in self.read()["title"])
        self.press("ok")
        self.wait_for(lambda: self.read()["total"] == len(MARKUP))
        self.assertEqual([row.strip() for row in self.read()["rows"]], [name.strip() for name in MARKUP])
        self.press("ok")
        self.shows(title="Edit blacklist for DVB EPG", rows=MARKUP[:1])
        self.assertIsNone(self.js("return window.hacked || null"))
        self.assertEqual(self.js("return document.querySelectorAll('#frame img, #frame script').length"), 0)

    def test_names_of_files(self):
        self.go_to("EPG Path")
        self.press("ok")
        self.wait_for(lambda: "<b>bold<b> & <script>" in self.read()["rows"])
        self.assertIn("not \ufffd text", self.read()["rows"])
        self.assertEqual(self.js("return document.querySelectorAll('#frame b b, #frame script').length"), 0)


class RemoteTest(PageTest):
    def test_every_key_is_a_labelled_button(self):
        buttons = self.driver.find_elements("css selector", ".remote button")
        self.assertEqual({button.get_attribute("value") for button in buttons} | {"text"}, set(KEYS))
        for button in buttons:
            self.assertTrue(button.accessible_name, button.get_attribute("outerHTML"))
            self.assertTrue(button.get_attribute("aria-keyshortcuts"), button.get_attribute("outerHTML"))

    def test_a_held_button_repeats_and_stops(self):
        down = self.button("down")
        ActionChains(self.driver, duration=0).click_and_hold(down).perform()
        self.wait_for(lambda: self.read()["position"] >= 4)
        self.assertIn("pressed", down.get_attribute("class"))
        ActionChains(self.driver, duration=0).release().perform()
        self.assertNotIn("pressed", down.get_attribute("class"))
        time.sleep(0.2)
        position = self.read()["position"]
        time.sleep(0.4)  # more than three repeats
        self.shows(position=position)

    def test_enter_is_ok_after_a_click_on_the_remote(self):
        self.button("down").click()
        self.button("down").click()
        self.shows(position=3)
        self.press("ok")
        self.wait_for(lambda: self.read()["title"] != TITLE or len(self.driver.find_elements("css selector", ".screen")) == 2)

    def test_a_button_with_the_focus_works_with_enter_and_space(self):
        for number, key in enumerate(("\ue007", " "), 2):
            self.js("document.querySelector('button[value=down]').focus()")
            self.button("down").send_keys(key)
            self.shows(position=number)

    def test_browser_shortcuts_are_left_alone(self):
        self.js("document.dispatchEvent(new KeyboardEvent('keydown', {key: 'ArrowDown', ctrlKey: true}))")
        self.press("down")
        self.shows(position=2)

    def test_on_a_phone_held_upright(self):
        self.use_fingers(390, 844)
        self.assertLessEqual(self.js("return document.documentElement.scrollWidth"), 390)
        for key in ("up", "down", "left", "right", "ok", "exit", "menu", "red", "green", "yellow", "blue", "0", "9"):
            box = self.js("return arguments[0].getBoundingClientRect().toJSON()", self.button(key))
            self.assertGreaterEqual(box["left"], 0, key)
            self.assertLessEqual(box["right"], 390, key)
            self.assertLessEqual(box["bottom"], 844, key)
            self.assertGreaterEqual(min(box["width"], box["height"]), 28, key)
        self.touch(self.button("down"))
        self.shows(position=2)


class ScreenReaderTest(PageTest):
    def nodes(self, role):
        """What a screen reader is told: (name, properties) of every element with this role."""
        tree = self.driver.execute_cdp_cmd("Accessibility.getFullAXTree", {})["nodes"]
        return [(node["name"]["value"], {item["name"]: item["value"].get("value") for item in node.get("properties", ())})
                for node in tree if not node.get("ignored") and node["role"]["value"] == role]

    def test_the_list_is_a_listbox(self):
        self.driver.execute_cdp_cmd("Accessibility.enable", {})
        self.addCleanup(self.driver.execute_cdp_cmd, "Accessibility.disable", {})
        self.press("down*2")
        self.shows(position=3)
        self.assertEqual([name for name, _ in self.nodes("listbox")], [TITLE])
        options = self.nodes("option")
        self.assertEqual(len(options), 22)
        self.assertEqual([place for place, (_, state) in enumerate(options) if state.get("selected")], [2])
        self.assertIn("Default EPG view", options[2][0])
        self.assertIn(TITLE, [name for name, _ in self.nodes("heading")])

    def test_the_focus_and_the_live_regions_stay(self):
        self.js("window.kept = [document.querySelector('[role=listbox]'), document.querySelector('[data-role=status]')];"
                "kept[0].focus()")
        self.go_to("Save EPG cache")
        self.press("ok")
        self.wait_for(lambda: "Saving" in self.read()["texts"]["status"])
        self.assertTrue(self.js("return document.activeElement === kept[0] && kept[0].isConnected"))
        self.assertTrue(self.js("return kept[1].isConnected && kept[1].getAttribute('role') === 'status'"))

    def test_what_a_pop_up_covers_is_hidden(self):
        self.go_to("Show EPG data in single EPG list")
        self.press("ok")
        self.wait_for(lambda: "30 minutes" in self.read()["rows"])
        self.assertEqual(len(self.nodes("listbox")), 1)

    def test_a_changed_value_is_spoken(self):
        self.go_to("Enable MHW EPG")
        self.press("right")
        self.wait_for(lambda: self.js("return document.querySelector('.spoken').textContent") == "yes")


class FullHdTest(PageTest):
    options = ("--skin", "fhd")

    def test_the_picture_has_1920_columns(self):
        self.shows(title=TITLE)
        self.assertIn("1920", self.js("return document.querySelector('.tv').style.aspectRatio"))
        self.go_to("Show EPG data in single EPG list")
        self.press("ok")
        self.wait_for(lambda: "30 minutes" in self.read()["rows"])
        self.press("exit")
        self.shows(title=TITLE, value="0 minutes")
        box = self.js("""const tv = document.querySelector('.tv').getBoundingClientRect(),
            list = document.querySelector('.list').getBoundingClientRect();
            return [(list.left - tv.left) / tv.width, list.width / tv.width]""")
        self.assertLess(box[0], 0.1)
        self.assertGreater(box[1], 0.8)


class OtherOriginTest(PageTest):
    """A page of another web site, open in the same browser, reaches nothing."""

    def test_a_foreign_page_gets_no_socket(self):
        server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Foreign)
        self.addCleanup(server.server_close)
        self.addCleanup(server.shutdown)
        threading.Thread(target=server.serve_forever, daemon=True).start()
        self.driver.get("http://localhost:%d/" % server.server_port)
        answer = self.driver.execute_async_script("""
            const socket = new WebSocket(arguments[0].replace('http', 'ws') + '/tv');
            socket.onopen = () => { socket.send('m down'); arguments[1]('open'); };
            socket.onerror = () => arguments[1]('refused');
        """, self.receiver.address)
        self.assertEqual(answer, "refused")
        self.open()
        self.shows(position=1)


class Foreign(http.server.BaseHTTPRequestHandler):
    def do_GET(self):
        self.send_response(200)
        self.send_header("Content-Type", "text/html")
        self.end_headers()
        self.wfile.write(b"<!DOCTYPE html><link rel=icon href=data:,><p>foreign")

    def log_message(self, *arguments):
        pass


if __name__ == "__main__":
    unittest.main()
