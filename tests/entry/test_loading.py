"""The compiled module on a box: what it finds, what stays in sys.modules, and what a failure costs."""

import os
import sys
import types
import unittest

from tests.entry.box import BINARY, ENTRY, PACKAGE, PYTHON2
from tests.entry.case import BoxTest
from tests.entry.fake_screens import Cache


def host_names(box):
    return dict((name, dict(vars(module))) for name, module in box.modules.items())


class BinaryTest(unittest.TestCase):
    @unittest.skipIf(PYTHON2, "2.7: only where its headers are")
    def test_is_there(self):
        self.assertTrue(os.path.exists(BINARY), "the compiled module is missing: script/build")


class LoadingTest(BoxTest):
    def test_leaves_everything_as_it_was(self):
        self.import_entry()
        self.box.part("loading")
        modules, names = dict(sys.modules), host_names(self.box)
        self.load()
        own = set(name for name in sys.modules if name.startswith(PACKAGE))
        added = set(sys.modules) - set(modules) - own
        self.assertEqual(added - set(("new", "types")), set(["Veltro"]))
        self.assertTrue(all(sys.modules[name] is module for name, module in modules.items() if name not in own))
        for name, before in names.items():
            self.assertEqual(host_names(self.box)[name], before, name)

    def test_changes_only_the_tree_of_settings_in_the_host(self):
        before = set(vars(self.config.misc)), set(vars(self.config.usage)), set(vars(self.config.epg))
        self.load()
        after = set(vars(self.config.misc)), set(vars(self.config.usage)), set(vars(self.config.epg))
        self.assertEqual([sorted(new - old) for new, old in zip(after, before)], [
            ["epg_data_timer", "epg_dvb_blacklist_mode", "epg_is_client_stb", "timer_show_movie_available"],
            ["epg_buffer"], []])

    def test_loads_once(self):
        module = self.load()
        self.assertIs(self.plugin.load(), module)
        self.assertIs(__import__("Veltro"), module)
        self.assertEqual(module.__name__, "Veltro")
        self.assertTrue(module.__file__.endswith(".so"))

    def test_something_else_of_that_name_keeps_it(self):
        other = sys.modules["Veltro"] = types.ModuleType("Veltro")
        module = self.load()
        self.assertIs(sys.modules["Veltro"], other)
        self.assertIsNot(module, other)
        self.assertIs(self.plugin.load(), module)
        self.assertTrue(hasattr(module, "epg_timer"))

    def test_sees_stand_ins_also_through_the_channel_list(self):
        module = self.load()
        guard = self.box.part("bridge.guard")
        self.assertIs(module.Screen, guard.Screen)
        self.assertIs(module.eTimer, guard.Timer)
        self.assertIs(module.ActionMap, guard.ActionMap)
        self.assertIs(module.eEPGCache, self.box.part("bridge.epg_cache").EPGCache)
        self.assertIsNot(module.config, self.config)
        self.assertIs(module.eEnv, self.box.modules["enigma"].eEnv)
        self.assertEqual(self.box.modules["Screens.ChannelSelection"].eTimer.__name__, "Timer")

    def test_a_host_with_a_list_of_public_names(self):
        channel_list = self.box.modules["Screens.ChannelSelection"]
        channel_list.__all__ = ["SimpleChannelSelection", "eServiceReference", "eServiceCenter", "ServiceReference"]
        module = self.load()
        self.assertIs(module.eEnv, self.box.modules["enigma"].eEnv)
        self.assertEqual(len(channel_list.__all__), 4)

    def test_a_name_that_nobody_has(self):
        del self.box.modules["Components.FileList"].FileList
        with self.assertRaises(ImportError) as caught:
            self.load()
        self.assertIn("cannot import name FileList", str(caught.exception))
        self.assertNotIn("Veltro", sys.modules)
        self.box.modules["Components.FileList"].FileList = object
        self.assertTrue(hasattr(self.plugin.load(), "epg_timer"), "it loads on a host that has been mended")


class ContractTest(BoxTest):
    """A host that was made for the module: the bridge keeps out of it."""

    facts = {"contract": True}

    def test_nothing_is_changed(self):
        before = [sorted(vars(branch)) for branch in (self.config.misc, self.config.usage, self.config.epg)]
        module = self.load()
        for name, home in (("Screen", "Screens.Screen"), ("eTimer", "enigma"), ("eEPGCache", "enigma"),
                           ("ActionMap", "Components.ActionMap"), ("config", "Components.config"),
                           ("ConfigListScreen", "Components.ConfigList"),
                           ("getSelectionChoices", "Components.ConfigList"),
                           ("SimpleChannelSelection", "Screens.ChannelSelection")):
            self.assertIs(getattr(module, name), getattr(self.box.modules[home], name), name)
        after = [sorted(vars(branch)) for branch in (self.config.misc, self.config.usage, self.config.epg)]
        self.assertEqual(after, before)

    def test_errors_are_the_hosts(self):
        self.load()
        guard = self.box.part("bridge.guard")

        def fail():
            raise ValueError()
        self.assertIs(guard.guarded(fail), fail)
        self.assertIs(guard.session_of(self.box.session), self.box.session)


class FailureTest(BoxTest):
    """A binary that does not load costs its menu entry, which says why."""

    def setUp(self):
        BoxTest.setUp(self)
        self.write("Veltro.so" if PYTHON2 else "Veltro.abi3.so", b"\x7fELF for another machine")

    def open(self, *folders):
        self.import_entry(*folders)
        self.plugin.session_start(reason=0, session=self.box.session)
        self.plugin.main(session=self.box.session)
        return self.box.session.current_dialog

    def test_a_binary_for_another_machine(self):
        message = self.open(self.folder)
        self.assertEqual(message.type, message.TYPE_ERROR)
        self.assertTrue(message.text.startswith("Veltro can't be loaded: ImportError: "), message.text)
        self.assertIn("the EPG timer was not started", self.console)
        self.assertEqual(self.console.count("Traceback"), 2)
        self.assertNotIn("Veltro", sys.modules)

    def test_no_binary(self):
        message = self.open(self.path("nowhere"))
        self.assertIn("can't be loaded: ", message.text)
        self.assertIn("Veltro", message.text)

    def test_a_host_without_one_of_the_modules(self):
        del self.box.modules["Components.Pixmap"], sys.modules["Components.Pixmap"]
        self.assertIn("Pixmap", self.open().text)

    def test_an_entry_is_offered_all_the_same(self):
        self.import_entry(self.folder)
        self.assertEqual(len(self.plugin.Plugins(path=ENTRY)), 3)


class NoCacheUse(BoxTest):
    def test_loading_touches_neither_cache_nor_files(self):
        self.load()
        self.assertEqual(self.box.eEPGCache.getInstance().calls, [])
        self.assertIsInstance(self.box.eEPGCache.getInstance(), Cache)
