"""The page in windows of every size: picture and keys are always both within reach."""

import signal
import time
import unittest

from tests.browser.case import PageTest, resize

WINDOWS = ((320, 480), (360, 740), (390, 844), (568, 320), (667, 375), (740, 360), (768, 1024), (1024, 600), (1280, 800),
           (1920, 1080), (2560, 1080), (3840, 2160))
ZOOMS = (0.5, 1, 2, 4)
SMALLEST_TEXT = 11  # CSS pixels

# What is wrong with the page, as it is laid out now.
CHECK = """
const problems = [], width = innerWidth, height = innerHeight;
const inside = box => box.left >= -1 && box.top >= -1 && box.right <= width + 1 && box.bottom <= height + 1;
const page = document.documentElement;
if (page.scrollWidth > width || page.scrollHeight > height) problems.push(`scrolls: ${page.scrollWidth}x${page.scrollHeight}`);
const tv = document.querySelector('.tv').getBoundingClientRect();
const area = document.querySelector('.area').getBoundingClientRect();
if (!inside(tv)) problems.push('the picture is cut off');
if (Math.max(tv.width / area.width, tv.height / area.height) < 0.98) problems.push('the picture could be larger');
const readable = width >= 320 && height >= 200;
const size = parseFloat(getComputedStyle(document.querySelector('.row .text')).fontSize);
if (readable && size < arguments[0]) problems.push(`texts of ${size} px`);
for (const button of document.querySelectorAll('.remote button')) {
  button.scrollIntoView({block: 'nearest'});
  const box = button.getBoundingClientRect();
  const found = document.elementFromPoint(box.left + box.width / 2, box.top + box.height / 2);
  if (!inside(box) || !button.contains(found)) problems.push(`${button.value} is out of reach`);
  if (Math.min(box.width, box.height) < (readable ? 20 : 8)) problems.push(`${button.value} is ${box.width}x${box.height}`);
}
const list = document.querySelector('.list').getBoundingClientRect(), row = document.querySelector('.selected').getBoundingClientRect();
if (!inside(row) && readable) problems.push('the selected row is out of sight');
const summary = document.querySelector('summary').getBoundingClientRect();
if (!inside(summary)) problems.push('the console is out of reach');
return problems;
"""


class WindowTest(PageTest):
    def check(self, *allowed):
        for width, height in WINDOWS:
            for zoom in ZOOMS:
                with self.subTest(window="%dx%d" % (width, height), zoom=zoom):
                    resize(self.driver, int(width / zoom), int(height / zoom), zoom)
                    self.driver.execute_async_script("requestAnimationFrame(() => requestAnimationFrame(arguments[0]))")
                    problems = self.js(CHECK, SMALLEST_TEXT)
                    self.assertEqual([problem for problem in problems if problem not in allowed], [])

    def test_picture_and_keys_are_within_reach(self):
        self.check()

    def test_rows_are_large_enough_for_fingers(self):
        for width, height in (1024, 600), (1024, 768), (1180, 820), (1366, 1024), (1920, 1080):
            with self.subTest(window="%dx%d" % (width, height)):
                self.use_fingers(width, height)
                self.assertEqual(self.js(CHECK, SMALLEST_TEXT), [])
                rows = self.js("return [...document.querySelectorAll('.row')].map(row => row.getBoundingClientRect().height)")
                self.assertGreaterEqual(min(rows), 24)

    def test_with_the_console_open_too(self):
        self.driver.find_element("css selector", "summary").click()
        self.check("the selected row is out of sight")


class ConsoleTest(PageTest):
    def is_open(self):
        return self.driver.find_element("css selector", ".lines").is_displayed()

    def test_folded_away_until_it_is_wanted(self):
        self.assertFalse(self.is_open())
        self.driver.find_element("css selector", "summary").click()
        self.assertTrue(self.is_open())
        self.press("down*2 ok")  # Enter is OK still, and no second click on the console's name
        self.wait_for(lambda: "Multi EPG" in self.read()["rows"])
        self.assertTrue(self.is_open())


class PowerTest(PageTest):
    def switch_off(self):
        self.press("exit")
        self.shows(title="Main menu")
        self.press("down ok")
        self.wait_for(lambda: self.read()["off"])

    def test_off_and_on(self):
        self.go_to("Enable MHW EPG")
        self.press("right")
        self.shows(value="yes")
        self.press("green")
        self.shows(title="Main menu")
        self.press("down ok")
        self.wait_for(lambda: self.read()["off"])
        self.assertEqual(self.js("return document.querySelector('.scene').innerText").split("\n")[0], "The receiver is switched off.")
        self.assertEqual(self.js("return document.querySelector('.connection').textContent"), "")
        self.driver.find_element("css selector", ".off button").click()
        self.shows(title="ORSA Veltro", position=1)
        self.go_to("Enable MHW EPG")
        self.shows(value="yes")

    def test_with_the_keyboard(self):
        self.switch_off()
        self.press("down ok")
        self.shows(title="ORSA Veltro", position=1)

    def test_ended_while_off(self):
        self.switch_off()
        self.assertEqual(self.receiver.interrupt()[0], 0)
        self.wait_for(lambda: not self.is_connected())
        self.assertIn("script/run", self.js("return document.querySelector('.connection').innerText"))
        self.assertFalse(self.driver.find_element("css selector", ".off button").is_displayed())


class FrozenTest(PageTest):
    def test_is_noticed_within_five_seconds(self):
        self.receiver.process.send_signal(signal.SIGSTOP)
        self.addCleanup(self.receiver.process.send_signal, signal.SIGCONT)
        start = time.monotonic()
        self.wait_for(lambda: "does not answer" in self.js("return document.querySelector('.connection').innerText"))
        self.assertLess(time.monotonic() - start, 5)
        self.receiver.process.send_signal(signal.SIGCONT)
        self.wait_for(self.is_connected)
        self.press("down")
        self.shows(position=2)


class ContrastTest(PageTest):
    """Colours as the user has set them, and more contrast: what is selected, on or coloured is still told apart."""

    def style(self, selector, name):
        return self.js("return getComputedStyle(document.querySelector(arguments[0])).getPropertyValue(arguments[1])", selector, name)

    def emulate(self, feature, value):
        self.driver.execute_cdp_cmd("Emulation.setEmulatedMedia", {"features": [{"name": feature, "value": value}]})
        self.addCleanup(self.driver.execute_cdp_cmd, "Emulation.setEmulatedMedia", {"features": []})

    def check(self):
        for name in ("background-color", "color"):
            self.assertNotEqual(self.style(".row.selected", name), self.style(".row:not(.selected)", name))
        self.assertNotEqual(self.style(".row:not(.selected) .switch.on", "background-color"),
                            self.style(".row:not(.selected) .switch:not(.on)", "background-color"))
        self.assertGreaterEqual(float(self.style(".switch", "border-top-width")[:-2]), 1)
        for key in ("red", "green", "yellow", "blue"):
            self.assertIn("gradient", self.style(".remote ." + key, "background-image"))
        marks = {self.js("return getComputedStyle(arguments[0]).backgroundColor", mark)
                 for mark in self.driver.find_elements("css selector", ".panel.thin")}
        self.assertGreaterEqual(marks, {"rgb(229, 56, 59)", "rgb(47, 168, 79)"})

    def test_forced_colours(self):
        self.emulate("forced-colors", "active")
        self.check()
        self.assertEqual(self.style(".label[data-key]", "color"), self.style(".row:not(.selected)", "color"))
        self.assertEqual(self.style(".label[data-key]", "background-color"), "rgba(0, 0, 0, 0)")  # the mark is below it

    def test_more_contrast(self):
        self.emulate("prefers-contrast", "more")
        self.check()


if __name__ == "__main__":
    unittest.main()
