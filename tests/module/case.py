"""What the module's tests share: a test case with a fresh host and a freshly loaded module, and readers of events."""

import inspect
import numbers
import os
import shutil
import subprocess
import sys
import tempfile
import unittest

from tests.host_double import host, press, shown
from tests.host_double.configuration import ConfigElement
from tests.host_double.loader import PYTHON2, build_folder

try:
    import builtins
except ImportError:
    import __builtin__ as builtins

__all__ = ["Boom", "HostTestCase", "PLUGIN_PATH", "PYTHON2", "SETTING_KEYS", "builtins", "cpp_frames", "host", "press",
           "shape", "shown"]

PLUGIN_PATH = "/usr/lib/enigma2/python/Plugins/Extensions/Veltro"

# The keys that have a row on the settings screen, in the order of the rows.
SETTING_KEYS = (
    "usage.multiepg_ask_bouquet", "misc.timer_show_movie_available", "usage.epg_default_view", "usage.epg_buffer",
    "usage.show_old_epg", "usage.show_nownext_eit", "usage.autolanguage.epglanguage",
    "usage.autolanguage.epglanguage_alternative", "usage.epg.eit", "usage.epg.mhw", "usage.epg.freesat",
    "usage.epg.viasat", "usage.epg.netmed", "usage.epg.virgin", "misc.epg_dvb_blacklist_mode",
    "misc.epg_is_client_stb", "misc.epg_data_timer",
)


class Boom(Exception):
    """An error of the host that nobody expects."""


def shape(value):
    """Events as literals: an element by its path, a method or class by its name, another object by its type's name."""
    if isinstance(value, (list, tuple)):
        return type(value)(shape(item) for item in value)
    if isinstance(value, dict) and type(value) is dict:
        return dict((key, shape(item)) for key, item in value.items())
    if value is None or isinstance(value, (numbers.Number, bytes, type(u""))):
        return value
    if isinstance(value, ConfigElement):
        return value._path
    if inspect.ismethod(value) or inspect.isclass(value):
        return value.__name__
    return value.__class__.__name__


def cpp_frames(traceback):
    """The module's own frames (those of C++ files) of a traceback, outermost first, as (name, file, line)."""
    frames = []
    while traceback is not None:
        code = traceback.tb_frame.f_code
        if code.co_filename.endswith((".cpp", ".h")):
            frames.append((code.co_name, code.co_filename, traceback.tb_lineno))
        traceback = traceback.tb_next
    return frames


class HostTestCase(unittest.TestCase):
    """`self.Veltro` is the module, loaded anew for the test; what its start-up did is not in the recorder any more."""

    maxDiff = None
    load_in_setup = True

    def setUp(self):
        host.reset()
        host.start()
        self.addCleanup(host.stop)
        if self.load_in_setup:
            self.Veltro = host.load()
            host.recorder.clear()

    # The screens, freshly opened; what opening did is not in the recorder any more.

    def settings(self, selected=0, **values):
        """The settings screen with the 1-based row number selected. Values: the last part of a key's name."""
        for name, value in values.items():
            self.set_value("misc." + name, value)
        screen = self.Veltro.Veltro(host.session, PLUGIN_PATH)
        if selected:
            dict.__getitem__(screen, "config")._index = selected - 1
        host.recorder.clear()
        return screen

    def chooser(self, directory="/media/hdd/",
                entries=(("/media/", True), ("/media/hdd/movie/", True), ("film.ts", False))):
        host.listings[directory] = list(entries)
        host.listings["/media/"] = [("/", True), ("/media/hdd/", True), ("/media/usb/", True)]
        screen = self.Veltro.DirChoose(host.session, directory)
        host.recorder.clear()
        return screen

    def editor(self, *services):
        """The blacklist editor, with a row for each (name, reference text)."""
        screen = self.Veltro.Edit_DVB_EPG_Blacklist(host.session, PLUGIN_PATH)
        for name, text in services:
            host.service_names[text] = name
        if services:
            screen.finishedChannelSelection([text for _, text in services])
        host.recorder.clear()
        return screen

    def picker(self, selection=None):
        screen = self.Veltro.DVB_EPG_blacklist_ChannelSelection(host.session, PLUGIN_PATH)
        screen._selection = selection
        host.recorder.clear()
        return screen

    # Files

    def etc(self, blacklist=None):
        """A configuration directory of the test's own; the path of its blacklist file, written if bytes are given."""
        folder = tempfile.mkdtemp(prefix="veltro-")
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        os.mkdir(os.path.join(folder, "enigma2"))
        host.set_sysconfdir(folder)
        path = os.path.join(folder, "enigma2", "blacklist_dvb_epg")
        if blacklist is not None:
            with open(path, "wb") as file:
                file.write(blacklist)
        return path

    def run_apart(self, script, *arguments, **settings):
        """The exit status of a script in an interpreter of its own, run from the root of the repository."""
        root = os.path.dirname(os.path.dirname(os.path.dirname(os.path.abspath(__file__))))
        environment = dict(os.environ, VELTRO_BUILD=build_folder(), **settings)
        return subprocess.call((sys.executable, "-c", script) + arguments, cwd=root, env=environment)

    # Values

    def value(self, key):
        return host.element(key)._value

    def set_value(self, key, value):
        host.element(key)._value = value

    def replace(self, owner, name, value):
        """Until the end of the test."""
        if name in vars(owner):
            self.addCleanup(setattr, owner, name, vars(owner)[name])
        else:
            self.addCleanup(lambda: hasattr(owner, name) and delattr(owner, name))
        setattr(owner, name, value)

    # What happened

    @property
    def calls(self):
        """The calls since the screen was opened, as literals."""
        return shape(host.recorder.calls)

    @property
    def steps(self):
        """The calls and the members that were set, in their common order, as literals."""
        calls = set(id(event) for event in host.recorder.calls)
        return [shape(event) for event in host.recorder.events if id(event) in calls or event[0].endswith(" =")]

    def assertCalls(self, *expected):
        self.assertEqual(self.calls, list(expected))

    def raised_by(self, error, operation, *arguments, **keywords):
        """That very error object leaves the operation; returns the module's frames in its trace."""
        try:
            operation(*arguments, **keywords)
        except BaseException as caught:
            self.assertIs(caught, error)
            return cpp_frames(sys.exc_info()[2])
        self.fail("%r was not raised" % error)

    def error_of(self, kinds, operation, *arguments, **keywords):
        """The error of one of these kinds that leaves the operation."""
        with self.assertRaises(kinds) as context:
            operation(*arguments, **keywords)
        return context.exception
