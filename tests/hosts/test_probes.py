"""The receiver is held to the real host: the questions of probes.py, asked in both."""

from __future__ import absolute_import

import importlib
import json
import os
import re
import shutil
import tempfile
import time
import unittest

from receiver.app import Receiver
from receiver.loop import VirtualLoop
from receiver.profile import PROFILES

from . import case, channels, probes

ROOT = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
HEADING = "## Where the receiver differs from real GUIs"
HELD = ("openpli", "openpli-2.7", "openvix")
NAMES = [probe.__name__ for probe in probes.PROBES]

# An error in what the GUI calls: in the handler of a key, in a timer's callback.
FAILING_KEY = ("from enigma import eActionMap\ndef fail(context, action): raise ValueError('no such luck')\n"
               "eActionMap.getInstance().bindAction('OkCancelActions', -100, fail)")
FAILING_TIMER = ("from enigma import eTimer\ndef fail(): raise ValueError('no such luck')\n"
                 "timer = eTimer()\ntimer.callback.append(fail)\ntimer.start(0, True)")


class Box:
    """The receiver with the profile of the kit, as a driver of probes."""

    def __init__(self):
        self.root = tempfile.mkdtemp()
        channels.write(self.root + "/etc/enigma2")
        self.loop = VirtualLoop()
        image = next((name for name in PROFILES if case.KIT.startswith(name)), "openpli")
        self.receiver = Receiver(self.loop, self.root + "/etc/enigma2", self.root, PROFILES[image])
        self.receiver.switch_on()
        self.press("exit")
        self.probes = importlib.reload(probes)

    def close(self):
        self.receiver.switch_off()
        self.loop.close()
        shutil.rmtree(self.root)

    def press(self, *keys):
        for key in keys:
            self.receiver.press(key)
            self.loop.settle()

    def run(self, source):
        self.receiver.guard(exec, compile(source, "probe", "exec"), {})
        self.loop.settle()

    def step(self, name):
        answers = []
        self.receiver.guard(lambda: answers.append(self.probes.step(self.receiver._gui.session, name)))
        self.loop.settle()
        return answers[0] if answers else [[self.receiver.crash], False]


class Gui:
    """The real GUI as one."""

    def __init__(self, host):
        self.host = host
        shutil.copy(os.path.join(os.path.dirname(__file__), "probes.py"), host.path("/etc/enigma2/veltro_probes.py"))
        host.python("import sys\nsys.path.insert(0, '/etc/enigma2')\nimport veltro_probes")

    def press(self, *keys):
        self.host.press(*keys)

    def step(self, name):
        try:
            answer = self.host.python("veltro_probes.step(session, %r)" % name)
        except case.HostError as error:
            return [[str(error)], False]
        if answer[0] is None:
            self.host.settle()
        return answer


def answers(driver, name):
    """What a probe has seen in a driver's GUI."""
    seen, more = [], True
    while more:
        value, more = driver.step(name)
        if isinstance(value, list):
            seen.append(json.loads(json.dumps(value)))
        elif value is not None:
            driver.press(*value.split())
    return seen


class ProbesTest(case.HostCase):
    resolution = "fhd"

    def test_answers(self):
        self.open_settings()  # the receiver begins with it, and the module is loaded by then
        self.home()
        gui, box = Gui(self.host), Box()
        self.addCleanup(box.close)
        if case.KIT not in HELD:
            harmless = [name for name in NAMES if name not in {deadly for _, deadly in probes.DEADLY}]
            differ = [name for name in harmless if answers(gui, name) != answers(box, name)]
            self.skipTest("the receiver is not held to %s yet, which differs in: %s" % (case.KIT, ", ".join(differ) or "nothing"))
        known = {name for kit, name, _ in probes.KNOWN if kit == case.KIT}
        for name in NAMES:
            if (case.KIT, name) in probes.DEADLY:
                continue
            with self.subTest(name):
                real, ours = answers(gui, name), answers(box, name)
                self.assertTrue(real)
                if name in known:
                    self.assertNotEqual(ours, real, "no longer a difference: take it out of KNOWN and docs/hosts.md")
                else:
                    self.assertEqual(ours, real)


class ErrorsTest(case.HostCase):
    """An error in what the GUI calls ends both."""

    traces_expected = True

    def assertAlive(self):
        """It is not."""

    def test_errors(self):
        for source, key in ((FAILING_KEY, "ok"), (FAILING_TIMER, None)):
            self.start_afresh()
            box = Box()
            self.addCleanup(box.close)
            box.run(source)
            self.python(source)
            if key:
                box.press(key)
                self.press(key, settle=False)
            self.assertIn("no such luck", box.receiver.crash or "")
            end = time.monotonic() + 20
            while not self.host.crashed and time.monotonic() < end:
                time.sleep(0.1)
            self.assertTrue(self.host.crashed)
            self.assertIn("no such luck", self.host.log)
            self.host.kill()


class DocumentTest(unittest.TestCase):
    def test_the_known_differences_are_told(self):
        with open(os.path.join(ROOT, "docs", "hosts.md"), encoding="utf-8") as file:
            section = file.read().split(HEADING)[1].split("\n## ")[0]
        rows = [tuple(field.strip() for field in line.strip("|").split("|")) for line in section.splitlines() if line.startswith("| ")]
        self.assertEqual(rows[1:], [(kit, name.replace("_", " "), text) for kit, name, text in probes.KNOWN], "run: %s" % __name__)

    def test_each_is_a_probe(self):
        self.assertLessEqual({name for _, name, _ in probes.KNOWN}, set(NAMES))
        self.assertEqual(len(NAMES), len(set(NAMES)))
        with open(probes.__file__, encoding="utf-8") as file:
            self.assertEqual(sorted(re.findall(r"^def (\w+)\(session\):", file.read(), re.M)), sorted(NAMES))
