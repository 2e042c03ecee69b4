"""What the tests in real GUIs share: a host with the package in it, ways to our screens, and what must hold after each test."""

from __future__ import absolute_import

import json
import os
import shutil
import sys
import tempfile
import unittest

from . import channels

HOSTS = os.environ.get("VELTRO_HOSTS", "")
if HOSTS and os.path.exists(os.path.join(HOSTS, "host.py")):
    sys.path.insert(0, HOSTS)
    import picture
    from host import Host, HostError
else:
    HOSTS = ""


def kits():
    """The kits there are."""
    return sorted(name for name in os.listdir(HOSTS) if os.path.exists(os.path.join(HOSTS, name, "kit.json"))) if HOSTS else []


KIT = os.environ.get("VELTRO_KIT") or (kits() or [""])[0]
PACKAGES = os.path.abspath(os.environ.get("VELTRO_PACKAGES", "build/hosts/package"))
STATES = os.path.join(os.path.dirname(PACKAGES), "state", KIT)  # what a host wrote stays to be looked at
ICONS = ("folder", "marker", "ico_dvb-s", "ico_dvb-c", "ico_dvb-t", "ico_stream", "ico_service_group", "icon_crypt", "record",
         "ico_hd-fs8", "ico_sd-fs8", "ico_uhd-fs8", "ico_catchup-fs8", "ico_altref-fs8")
OURS = ("Veltro", "DirChoose", "Edit_DVB_EPG_Blacklist", "DVB_EPG_blacklist_ChannelSelection")
ROWS = (
    "Multi-EPG bouquet selection", "Show icon when movie is in database", "Default EPG view (EPG button)",
    "Save EPG for X days in future", "Show EPG data in single EPG list older than", "Show Now/Next EIT EPG at InfoBar",
    "EPG language selection 1", "EPG language selection 2", "Enable EIT EPG", "Enable MHW EPG", "Enable freesat EPG",
    "Enable ViaSat EPG", "Enable Netmed EPG", "Enable Virgin EPG", "Forbid DVB EPG update for black listed services",
    "Edit blacklist for DVB EPG", "EPG Path :", "Enable EPG client mode (don't save EPG file)",
    "Save EPG data every X minutes to file (0 = off)", "Save EPG cache to epg.dat", "Load EPG data from epg.dat",
    "Delete broken epg.dat")
CLIENT_ROWS = ROWS[:18] + ("Load EPG data from file every X minutes (0 = off)", "Load EPG data from epg.dat")
BLACKLIST = "/etc/enigma2/blacklist_dvb_epg"
SETTINGS = "/etc/enigma2/settings"


class HostCase(unittest.TestCase):
    """One host for all tests of a class. A class may set what the host starts with."""

    resolution = "hd"
    language = "en_US"
    traces_expected = False  # an error that a test makes on purpose
    values = {}  # lines of the settings file, as {"config.misc.epgcache_filename": "/media/usb/epg.dat"}
    host = None

    @classmethod
    def setUpClass(cls):
        if not HOSTS:
            raise unittest.SkipTest("no real GUIs: VELTRO_HOSTS names no folder with host.py and kits")
        cls.start_afresh()

    @classmethod
    def tearDownClass(cls):
        if cls.host:
            cls.host.kill()
            cls.host = None

    @classmethod
    def start_afresh(cls):
        """A fresh box: the package, a channel list, the class's settings."""
        if cls.host:
            cls.host.kill()
        state = os.path.join(STATES, cls.__module__.rpartition(".")[2], cls.__name__)
        shutil.rmtree(state, ignore_errors=True)
        files = tempfile.mkdtemp()
        try:
            channels.write(files)
            _write_icons(os.path.join(files, "icons"))
            with open(os.path.join(files, "settings"), "w") as settings:
                settings.writelines("%s=%s\n" % pair for pair in sorted(cls.values.items()))
            cls.host = Host(os.path.join(HOSTS, KIT), state, plugin=plugin(), settings=files, resolution=cls.resolution,
                            language=cls.language).start()
        finally:
            shutil.rmtree(files)

    def setUp(self):
        if self.host.crashed or self.host.process.poll() is not None:
            self.start_afresh()
        self.home()

        self._log = len(self.host.log)

    def tearDown(self):
        self.assertAlive()
        if not self.traces_expected:
            log = self.host.log[self._log:]
            at = log.find("Traceback (most recent call last)")
            self.assertEqual(at, -1, log[max(at - 200, 0):at + 2000])

    # Ways through the GUI

    def press(self, *keys, **options):
        self.host.press(*keys, **options)

    def python(self, code):
        """Runs Python in the GUI; the value of the last expression."""
        return self.host.python(code)

    def screen(self):
        """The screen on top: the driver's answer."""
        return self.host.screen()

    def name(self):
        """The class of the screen on top."""
        return self.python("session.current_dialog.__class__.__name__")

    def home(self):
        """Back to where a box is that has started: the info bar alone."""
        for _ in range(10):
            if self.name() == "InfoBar":
                return
            self.press("exit")
        self.fail("EXIT does not lead back: %s" % self.screen())

    def open_settings(self):
        """Our settings screen, by the plug-in's entry in the plug-in menu."""
        self.python("from Components.PluginComponent import plugins\nfrom Plugins.Plugin import PluginDescriptor\n"
                    "entry = [e for e in plugins.getPlugins(PluginDescriptor.WHERE_PLUGINMENU) if e.name == 'Veltro'][0]\n"
                    "entry(session=session)")
        self.host.settle()
        self.assertShows("Veltro")

    def open_editor(self):
        self.open_settings()
        self.go_to("Edit blacklist")
        self.press("ok")
        self.assertShows("Edit_DVB_EPG_Blacklist")

    def open_picker(self):
        self.open_editor()
        self.press("blue")
        self.assertShows("DVB_EPG_blacklist_ChannelSelection")

    def open_chooser(self):
        self.open_settings()
        self.go_to("EPG Path")
        self.press("ok")
        self.assertShows("DirChoose")

    def go_to(self, label):
        """Moves the cursor of the settings to a row, by keys. label: how it starts in English, in whatever language."""
        self.select(self.index_of(label, self.screen()["rows"]))

    def index_of(self, label, rows):
        labels = ROWS if len(rows) == len(ROWS) else CLIENT_ROWS
        self.assertEqual(len(rows), len(labels), rows)
        return [index for index, each in enumerate(labels) if each.startswith(label)][0]

    def select(self, index):
        """Moves the cursor of the list to a row, by keys."""
        steps = index - self.screen()["index"]
        if steps:
            key = "down" if steps > 0 else "up"
            self.press(*[key] * (abs(steps) - 1), settle=False)
            self.press(key)
        self.assertEqual(self.screen()["index"], index)

    def select_text(self, text):
        """Moves the cursor of the list to the first row with this text."""
        rows = [row[0] if row else "" for row in self.screen()["rows"]]
        self.assertIn(text, rows)
        self.select(rows.index(text))

    def row(self):
        """The texts of the selected row."""
        screen = self.screen()
        return screen["rows"][screen["index"]]

    def rows(self):
        """The first text of each row."""
        return [row[0] if row else "" for row in self.screen()["rows"]]

    def value(self, label):
        """The value that a row of the settings shows."""
        rows = self.screen()["rows"]
        return rows[self.index_of(label, rows)][1]

    def text(self, name):
        """The text of a label of the screen on top."""
        return self.screen()["texts"].get(name)

    # Files of the box

    def path(self, name):
        return self.host.path(name)

    def exists(self, name):
        return os.path.lexists(self.path(name))

    def read(self, name):
        with open(self.path(name), "rb") as file:
            return file.read()

    def write(self, name, data):
        folder = os.path.dirname(self.path(name))
        if not os.path.isdir(folder):
            os.makedirs(folder)
        with open(self.path(name), "wb") as file:
            file.write(data)

    def stored(self, key):
        """A value of the settings file; None when it is not in there, as one that has its default."""
        lines = self.read(SETTINGS).decode("utf-8", "surrogateescape").splitlines()
        return dict(line.split("=", 1) for line in lines if "=" in line).get(key)

    def restart(self):
        """Switched off and on again, in good order."""
        self.host.stop()
        self.host.start()

    # What must hold

    def assertAlive(self):
        if self.host.crashed:
            self.fail("the GUI crashed\n" + self.host.log[-4000:])

    def assertShows(self, *names):
        """One of these screens is on top."""
        self.assertAlive()
        self.assertIn(self.name(), names, self.host.log[-2000:])


def _write_icons(folder):
    """Pictures of a channel list's rows. A kit's skin may lack them, and then its list dies in painting a row."""
    os.makedirs(folder)
    for name in ICONS:
        picture.write(os.path.join(folder, name + ".png"), 16, 16, b"\xff\xc0\x80\xff" * 256)


def plugin():
    """The plug-in's folder for the kit's Python."""
    with open(os.path.join(HOSTS, KIT, "kit.json")) as file:
        generation = "py27" if json.load(file)["python"].startswith("2") else "py3"
    return os.path.join(PACKAGES, generation, "Veltro")


def epg(count=1200):
    """Code that fills the EPG of the GUI with events of the channel list's services, and the number of them."""
    references = [channels.reference(each) for each in channels.services()[200:200 + 10]]
    return ("import time\nfrom enigma import eEPGCache\nbegin = int(time.time()) // 1800 * 1800\n"
            "for reference in %r:\n    eEPGCache.getInstance().importEvents(reference, [(begin + 1800 * n, 1800, 'Event %%d' %% n, "
            "'Short text %%d' %% n, 'A longer text of event %%d. ' %% n * 8, 0) for n in range(%d)])" % (references, count // 10))


def epg_count():
    """Code whose value is the number of events that the GUI knows of the services of epg()."""
    references = [channels.reference(each) for each in channels.services()[200:200 + 10]]
    return ("from enigma import eEPGCache\nsum(len(eEPGCache.getInstance().lookupEvent(['I', (r, 0, -1, 10 * 24 * 60)]) or []) "
            "for r in %r)" % references)
