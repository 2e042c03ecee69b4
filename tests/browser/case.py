"""A running receiver and a page that shows it. One Chromium serves all tests; a missing one is a failure."""

import atexit
import contextlib
import os
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

from selenium.common.exceptions import JavascriptException, StaleElementReferenceException
from selenium.webdriver.common.action_chains import ActionChains
from selenium.webdriver.common.by import By
from selenium.webdriver.common.keys import Keys

from receiver.places import HERE
from receiver.web import camera

ROOT = HERE.parent
SAMPLE = HERE / "sample"
SECONDS = 10

KEYBOARD = {
    "up": Keys.ARROW_UP, "down": Keys.ARROW_DOWN, "left": Keys.ARROW_LEFT, "right": Keys.ARROW_RIGHT, "ok": Keys.ENTER,
    "exit": Keys.ESCAPE, "red": Keys.F1, "green": Keys.F2, "yellow": Keys.F3, "blue": Keys.F4, "tv": "T", "radio": "R",
    "menu": "m", "info": "i", "epg": "e", "channelup": Keys.PAGE_UP, "channeldown": Keys.PAGE_DOWN,
    "previous": Keys.HOME, "next": Keys.END, **{digit: digit for digit in "0123456789"},
}

# What the page shows, read from its elements: the screen on top, its list, the texts by their role.
READ = """
const screen = [...document.querySelectorAll('.screen')].at(-1);
if (!screen) return {title: '', rows: [], off: Boolean(document.querySelector('.off'))};
const text = element => element ? element.textContent : null;
const list = screen.querySelector('[role=listbox]');
const active = list && document.getElementById(list.getAttribute('aria-activedescendant'));
return {
  title: screen.getAttribute('aria-label'),
  rows: list ? [...list.children].map(row => text(row.querySelector('.text'))) : [],
  selected: active && text(active.querySelector('.text')),
  position: active && Number(active.getAttribute('aria-posinset')),
  total: active && Number(active.getAttribute('aria-setsize')),
  value: active && text(active.querySelector('.value > span')),
  texts: Object.fromEntries([...screen.querySelectorAll('.label')].map(box => [box.dataset.role, text(box)])),
  off: false,
};
"""


def chromium():
    """The Chromium of this test run. One that does not start is not tried again, which would take each test half a minute."""
    if not hasattr(chromium, "driver"):
        chromium.driver = None
        stack = contextlib.ExitStack()
        chromium.driver = stack.enter_context(camera.browser())
        atexit.register(stack.close)
    if chromium.driver is None:
        raise RuntimeError("Chromium did not start: see the first test that failed")
    return chromium.driver


def resize(driver, width, height, scale=1, touch=False):
    """Give the browser's pages a screen of that size in CSS pixels, with `scale` pixels for each of them."""
    driver.execute_cdp_cmd("Emulation.setDeviceMetricsOverride", {
        "width": width, "height": height, "deviceScaleFactor": scale, "mobile": touch})


def new_box(folder):
    """Make the box of a receiver started with `environment(etc)`; its `etc`, a copy of the sample."""
    etc = Path(folder) / "sample" / "etc" / "enigma2"
    shutil.copytree(SAMPLE, etc)
    return etc


def environment(etc):
    """The environment of a receiver without a desktop, whose box is the one with this etc folder."""
    return {**{name: value for name, value in os.environ.items() if name not in ("DISPLAY", "WAYLAND_DISPLAY")},
            "VELTRO_BOXES": str(etc.parents[2])}


class Process:
    """A receiver as a user starts it, with the TV in a browser."""

    def __init__(self, etc, *options, port=0, **variables):
        port = [] if port is None else ["--port", str(port)]
        self.process = subprocess.Popen([sys.executable, "-m", "receiver", *port, *options], cwd=ROOT,
                                        env={**environment(etc), **variables}, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.address = None
        match = re.search(r"http://127\.0\.0\.1:(\d+)", self.process.stdout.readline())
        if match:
            self.address, self.port = match[0], int(match[1])

    def kill(self):
        """End it without letting it say goodbye."""
        self.process.kill()
        self.finish()

    def interrupt(self):
        """End it as Ctrl-C does: (exit code, what it wrote to standard error)."""
        self.process.send_signal(signal.SIGINT)
        return self.finish()

    def finish(self):
        """Wait for its end: (exit code, what it wrote to standard error)."""
        _, errors = self.process.communicate(timeout=SECONDS)
        return self.process.returncode, errors


class PageTest(unittest.TestCase):
    """A test with a running receiver, whose etc folder is a copy of the sample, and an open page. `hdd`: its /media/hdd."""

    options = ()

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.etc = new_box(folder.name)
        self.hdd = self.etc.parents[1] / "media" / "hdd"
        self.prepare()
        self.driver = chromium()
        resize(self.driver, 1280, 800)
        self.receiver = self.start()
        self.open()
        self.addCleanup(self.check_browser_console)

    def prepare(self):
        """Put more into the etc folder, before the receiver starts."""

    def start(self, *options, port=0):
        receiver = Process(self.etc, *self.options, *options, port=port)
        self.addCleanup(lambda: receiver.process.poll() is None and receiver.kill())
        return receiver

    def open(self):
        self.driver.get(self.receiver.address)
        self.wait_for(self.is_connected)

    def check_browser_console(self):
        """No script error, nothing refused by the page's own rules."""
        lines = [entry["message"] for entry in self.driver.get_log("browser")]
        expected = ("WebSocket connection to", "net::ERR_CONNECTION", "/tv - Failed to load resource")
        self.assertEqual([line for line in lines if not any(part in line for part in expected)], [])

    def js(self, script, *arguments):
        return self.driver.execute_script(script, *arguments)

    def is_connected(self):
        return self.js("return document.body.dataset.connected") == "true"

    def button(self, key):
        return self.driver.find_element(By.CSS_SELECTOR, "button[value='%s']" % key)

    # --- Keys: on the keyboard; tests of the remote replace this one method

    def press_keys(self, keys):
        """Press the keys of a list."""
        ActionChains(self.driver, duration=0).send_keys(*(KEYBOARD[key] for key in keys)).perform()

    def press(self, words):
        """Press keys, written as for --keys."""
        keys = []
        for word in words.split():
            key, _, times = word.partition("*")
            keys += [key] * int(times or 1)
        self.press_keys(keys)

    # --- Fingers

    def use_fingers(self, width, height):
        """Make the browser a phone's, with a screen of that size."""
        resize(self.driver, width, height, 2, touch=True)
        self.driver.execute_cdp_cmd("Emulation.setTouchEmulationEnabled", {"enabled": True})
        self.addCleanup(self.driver.execute_cdp_cmd, "Emulation.setTouchEmulationEnabled", {"enabled": False})
        self.driver.refresh()
        self.wait_for(self.is_connected)

    def touch(self, element, *way, seconds=0):
        """Put a finger on an element, hold it still, move it by each (x, y) of the way, and lift it."""
        box = self.js("return arguments[0].getBoundingClientRect().toJSON()", element)
        x, y = box["x"] + box["width"] / 2, box["y"] + box["height"] / 2
        self._finger("touchStart", {"x": x, "y": y})
        time.sleep(seconds)
        for right, down in way:
            x, y = x + right, y + down
            self._finger("touchMove", {"x": x, "y": y})
        self._finger("touchEnd")

    def _finger(self, kind, *points):
        self.driver.execute_cdp_cmd("Input.dispatchTouchEvent", {"type": kind, "touchPoints": points})

    # --- The picture

    def find(self, selector):
        """The first element of the screen on top that a CSS selector finds."""
        return self.driver.find_element(By.CSS_SELECTOR, ".screen:not([aria-hidden]) " + selector)

    def row(self, label):
        """The row that begins with `label`."""
        rows = self.driver.find_elements(By.CSS_SELECTOR, ".screen:not([aria-hidden]) .row")
        return next(row for row in rows if row.text.startswith(label))

    def read(self):
        return self.js(READ)

    def wait_for(self, condition, message=None):
        """Wait until `condition()` is true and return what it returned."""
        end = time.monotonic() + SECONDS
        while True:
            with contextlib.suppress(StaleElementReferenceException, JavascriptException):
                result = condition()
                if result:
                    return result
            if time.monotonic() > end:
                self.fail(message() if message else "waited in vain; the page shows %r" % (self.read(),))
            time.sleep(0.01)

    def shows(self, **wanted):
        """Wait until the picture shows all this: title, selected, value, position, rows; anything else is a text's role."""
        def missing():
            read = self.read()
            return {name: (read[name] if name in read else read.get("texts", {}).get(name)) for name, value in wanted.items()
                    if (read[name] if name in read else read.get("texts", {}).get(name)) != value}
        self.wait_for(lambda: not missing(), lambda: "not as wanted: %r" % missing())

    def go_to(self, label):
        """Move to the row that begins with `label`."""
        read = self.wait_for(lambda: any(row.startswith(label) for row in self.read()["rows"]) and self.read())
        index = next(index for index, row in enumerate(read["rows"]) if row.startswith(label))
        steps = index - read["rows"].index(read["selected"])
        self.press("%s*%d" % ("down" if steps > 0 else "up", abs(steps)))
        self.shows(selected=read["rows"][index])


def write_services(etc, names):
    """Make a channel list of services with these names, and one bouquet that holds the first hundred."""
    lines = ["eDVB services /4/", "transponders", "00640000:0401:00fe", "\ts 11247000:27500000:0:3:100:2:0", "/", "end", "services"]
    references = []
    for number, name in enumerate(names, 1):
        lines += ["%04x:00640000:0401:00fe:1:0" % number, name, "p:Provider %d" % (number % 20)]
        references.append("1:0:1:%X:401:FE:640000:0:0:0:" % number)
    (etc / "lamedb").write_text("\n".join(lines + ["end", "Written by a test", ""]), encoding="utf-8")
    (etc / "bouquets.tv").write_text(
        '#NAME Bouquets (TV)\n#SERVICE 1:7:1:0:0:0:0:0:0:0:FROM BOUQUET "userbouquet.test.tv" ORDER BY bouquet\n')
    (etc / "userbouquet.test.tv").write_text(
        "#NAME Test\n" + "".join("#SERVICE %s\n" % reference for reference in references[:100]), encoding="utf-8")
