"""Random keys while one of our screens is on top: no crash, and memory that stays.

VELTRO_WALK=17 sees the walk of that seed again; VELTRO_WALK_KEYS=20000 takes more keys than the usual 2,000.
"""

from __future__ import absolute_import

import os
import random

from . import case, channels

KEYS = int(os.environ.get("VELTRO_WALK_KEYS", "2000"))
SEED = int(os.environ.get("VELTRO_WALK", "8"))
PIECE = 20  # keys between two looks

# What a hand on the remote control does; the rest of the keys lead out of our screens, into the host's own.
USUAL = ("up", "down", "left", "right", "ok", "exit", "red", "green", "yellow", "blue")
OTHER = ("menu", "info", "help", "text", "tv", "radio", "chup", "chdown", "next", "previous", "0", "1", "5", "9", "home", "end",
         "pvr", "epg", "long:ok", "play", "stop", "audio", "list", "mute")


# A floor for our screens to stand on: no key does anything there, so that none reaches the host's own screens below, which
# have faults of their own on a machine without a tuner.
FLOOR = ("from Screens.Screen import Screen\nclass Floor(Screen):\n    skin = '<screen position=\"0,0\" size=\"9,9\"/>'\n"
         "session.open(Floor)")


class TestWalk(case.HostCase):
    resolution = "fhd"

    def home(self):
        """Back to the floor, the way a user goes."""
        for _ in range(10):
            if self.name() == "InfoBar":
                self.python(FLOOR)
                self.host.settle()
            if self.name() == "Floor":
                return
            self.press("exit")
        self.fail("EXIT does not lead back: %s" % self.screen())

    def test_walk(self):
        """No error reaches the host, whatever is pressed and however fast."""
        chance = random.Random(SEED)
        for folder in ("usb/a b", "usb/100%s", "hdd/movie/deep/er"):
            os.makedirs(self.path("/media/" + folder))
        self.write(case.BLACKLIST, b"".join(b"#SERVICE " + channels.reference(each).encode("ascii") + b"\n"
                                            for each in channels.services()[200:260]))
        self.python(case.epg())
        opens = (self.open_settings, self.open_settings, self.open_editor, self.open_picker, self.open_chooser)
        pressed, memory = [], []
        while len(pressed) < KEYS:
            if self.name() not in case.OURS:
                self.home()
                chance.choice(opens)()
            keys = chance.choices(USUAL * 6 + OTHER, k=PIECE)
            pressed += keys
            self.press(*keys[:-1], settle=chance.random() < 0.2)
            self.press(keys[-1])
            if self.host.crashed:
                self.fail("seed %d, after %d keys, the last of them: %s\n%s" % (
                    SEED, len(pressed), " ".join(pressed[-2 * PIECE:]), self.host.log[-4000:]))
            memory.append(self.host.rss)
        self.assertPlateau(memory)

    def assertPlateau(self, memory):
        """What leaks grows in every quarter of a walk; what the host loads when a walk first comes by grows in one."""
        quarter = len(memory) // 4
        most = [max(memory[start:start + quarter]) for start in range(0, 4 * quarter, quarter)]
        growths = [after - before for before, after in zip(most, most[1:])]
        self.assertLess(min(growths), 1 << 20, [each >> 10 for each in memory])

    def test_open_and_close(self):
        """The same screens again and again cost no memory."""
        memory = []
        for round in range(12):
            for opens in (self.open_picker, self.open_chooser):
                opens()
                self.home()
            memory.append(self.host.rss)
        self.assertPlateau(memory)
