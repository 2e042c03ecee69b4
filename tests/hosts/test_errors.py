"""Each operation fails once: no crash, a message for the user, and the GUI goes on as if nothing had been."""

from __future__ import absolute_import

import contextlib
import glob
import os

from . import case

# What fails, where, and the key that asks for it. The names are those in the compiled module's name space.
SETTINGS = (
    ("doEPGAction", "Save EPG cache", "ok"), ("doEPGAction", "Load EPG data from epg.dat", "ok"),
    ("doEPGAction", "Delete broken", "ok"), ("getSelectionChoices", "EPG language selection 1", "ok"),
    ("ChoiceBox", "EPG language selection 1", "ok"), ("DirChoose", "EPG Path", "ok"), ("FileList", "EPG Path", "ok"),
    ("Edit_DVB_EPG_Blacklist", "Edit blacklist", "ok"), ("Label", "EPG Path", "ok"), ("ActionMap", "Edit blacklist", "ok"),
    ("ConfigList", "Edit blacklist", "ok"), ("eEPGCache", "Enable MHW EPG", "green"), ("config", "Enable MHW EPG", "green"),
    ("getConfigListEntry", "Enable MHW EPG", "right"), ("_", "Enable MHW EPG", "right"), ("_", "EPG Path", "ok"))
EDITOR = (("DVB_EPG_blacklist_ChannelSelection", "blue"), ("ActionMap", "blue"), ("_", "blue"))
PICKER = (("eServiceReference", "yellow"), ("eServiceCenter", "yellow"))


class TestErrors(case.HostCase):
    traces_expected = True

    @contextlib.contextmanager
    def failing(self, name):
        """The next use of the module's `name` is an error."""
        self.python("import sys\nmodule = sys.modules['Veltro']\nkept = getattr(module, %r)\nuses = []\n"
                    "def use():\n    uses.append(0)\n    if len(uses) == 1:\n        raise RuntimeError('injected')\n"
                    "class Failing(object):\n"
                    "    def __call__(self, *arguments, **keywords):\n        use()\n        return kept(*arguments, **keywords)\n"
                    "    def __getattr__(self, name):\n        use()\n        return getattr(kept, name)\n"
                    "module.%s = Failing()" % (name, name))
        try:
            yield
        finally:
            self.python("module.%s = kept" % name)

    def fails(self, name, key, screen):
        """The key brings a message, and the screen is there again after it; then, mended, the key does no harm either."""
        with self.subTest(name=name, key=key, screen=screen):
            with self.failing(name):
                self.press(key)
                self.assertShows("MessageBox")
                self.press("ok")
                self.assertShows(screen)
            self.press(key)
            self.assertAlive()
            self.assertNotEqual(self.name(), "MessageBox")

    def test_settings(self):
        for name, row, key in SETTINGS:
            self.home()
            self.open_settings()
            self.go_to(row)
            self.fails(name, key, "Veltro")

    def test_editor(self):
        for name, key in EDITOR:
            self.home()
            self.open_editor()
            self.fails(name, key, "Edit_DVB_EPG_Blacklist")

    def test_picker(self):
        for name, key in PICKER:
            self.home()
            self.open_picker()
            self.fails(name, key, "DVB_EPG_blacklist_ChannelSelection")

    def test_opening(self):
        self.open_settings()  # the module is imported by the first time
        for name in ("getConfigListEntry", "ActionMap", "_", "Label"):
            with self.subTest(name=name):
                self.home()
                with self.failing(name):
                    self.python("from Plugins.Extensions.Veltro import plugin\nplugin.main(session)")
                    self.host.settle()
                    self.assertShows("MessageBox")
                    self.press("ok")
                    self.assertShows("InfoBar")
                self.open_settings()

    def test_words(self):
        """The user reads no words that are for developers."""
        self.open_settings()
        self.go_to("Save EPG cache")
        with self.failing("doEPGAction"):
            self.press("ok")
            for word in ("RuntimeError", "injected", "Veltro.", "keyOk"):
                self.assertNotIn(word, self.text("text"))

    def test_element_that_does_not_save(self):
        """An element of the host's fails while it is saved: the screen stays, and the settings are not lost."""
        self.open_settings()
        self.go_to("Enable MHW EPG")
        value = self.row()[1]
        self.press("right")
        self.python("from Components.config import config\nkept = config.epg.mhw.save\n"
                    "def failing():\n    raise RuntimeError('injected')\nconfig.epg.mhw.save = failing")
        self.press("green")
        self.assertShows("MessageBox")
        self.press("ok")
        self.assertShows("Veltro")
        self.python("config.epg.mhw.save = kept")
        self.press("green")
        self.assertShows("InfoBar")
        self.open_settings()
        self.assertNotEqual(self.value("Enable MHW EPG"), value)


class TestBinaryThatDoesNotLoad(case.HostCase):
    traces_expected = True

    def test_menu_entry_says_why(self):
        self.host.kill()
        plugin, self.host.plugin = self.host.plugin, None  # or it would be laid in anew
        for path in glob.glob(os.path.join(self.host.state, "plugins/Extensions/Veltro/Veltro*.so")):
            with open(path, "wb") as file:
                file.write(b"\x7fELF for another box")
        self.host.start()
        try:
            self.python("from Plugins.Extensions.Veltro import plugin\nplugin.main(session)")
            self.host.settle()
            self.assertShows("MessageBox")
            self.press("ok")
            self.assertShows("InfoBar")
        finally:
            self.host.plugin = plugin
