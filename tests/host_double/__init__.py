"""A receiver's GUI that is not there: it offers what the module Veltro needs, nothing else, and writes down each use.

    host.reset()                      a fresh host; do this first
    Veltro = host.load()              the compiled module, its start-up run anew against this host
    screen = Veltro.Veltro(host.session, "/plugin")
    press(screen, "ok")
    host.recorder.calls               what the module did
    host.recorder.fail("eEPGCache.save", error)     that call will raise this error, once

Each file is one concern: recorder (the events and the failing), configuration, widgets, screens, platform_services,
files, modules (what stands in which host module), loader (where the binary comes from). Needs Python 2.7 or 3 alone.
"""

import sys

from . import configuration, files, loader, modules, platform_services, screens, widgets
from .recorder import recorder
from .screens import press, shown

try:
    import builtins
except ImportError:
    import __builtin__ as builtins

__all__ = ["Host", "host", "press", "shown"]


class Host(object):
    """The one host of a test. `catalogue` maps message ids to their translations; see `translate` for the others."""

    def __init__(self):
        self.recorder = recorder
        self.config = configuration.ConfigSubsection("config")
        self._restore = None

    def reset(self, recording=True):
        """A fresh host: no services, every key at its first value, nothing recorded, nothing going to fail.

        A module that is loaded already goes on with it."""
        recorder.reset(recording)
        self.catalogue = {}
        configuration.plant(self.config)
        self.session = screens.Session()
        self.modules = modules.HostModules(self.config)
        self.service_names = platform_services.ServiceReference.names = {}
        self.bouquets = platform_services.eServiceCenter.contents = {}
        self.listings = widgets.FileList.listings = {}
        self.set_sysconfdir("/nonexistent")

    def start(self):
        """Put the translation function and the console in their places, until `stop`."""
        self._restore = (vars(builtins).get("_"), sys.stdout)
        builtins._ = self.translate
        sys.stdout = files.Console()

    def stop(self):
        loader.forget()
        translate, sys.stdout = self._restore
        if translate is not None:
            builtins._ = translate
        elif hasattr(builtins, "_"):
            del builtins._

    def translate(self, text):
        """The host's `_`. A text without translation comes back in brackets, so that every translation shows, and
        shows how often it was made."""
        recorder.look("_", text)
        return self.catalogue.get(text, "[" + text + "]")

    def load(self, recording_files=True):
        """Run the module's start-up on this host and return the module.

        With `recording_files` the module finds an `open` in the built-ins that reports what is done to the file."""
        real = builtins.open
        if recording_files:
            builtins.open = files.recording_open
        try:
            with self.modules.installed():
                return loader.load()
        finally:
            builtins.open = real

    def element(self, key):
        """The configuration element of a key such as "misc.epg_data_timer", with nothing recorded."""
        branch, name = configuration.branch_of(self.config, key)
        return branch._children[name]

    def remove_key(self, key):
        branch, name = configuration.branch_of(self.config, key)
        del branch._children[name]

    def set_sysconfdir(self, folder):
        platform_services.eEnv.sysconfdir = folder

    def reference(self, text, name=None, content=None):
        """An eServiceReference; with its service's name, and with the texts of what it contains if it is a bouquet."""
        if name is not None:
            self.service_names[text] = name
        if content is not None:
            self.bouquets[text] = content
        return platform_services.eServiceReference(text)


host = Host()
