"""plugin/src/Veltro.cpp: what start-up takes from the host, in which order, and how it fails."""

import sys
import traceback
import unittest

from tests.host_double.modules import HostModule, REQUIREMENTS
from tests.module.case import Boom, HostTestCase, PYTHON2, cpp_frames, host

WHOLESALE = "Screens.ChannelSelection"
MODULES = [module for module, _ in REQUIREMENTS]
NAMES = [(module, name) for module, names in REQUIREMENTS if module != WHOLESALE for name, _ in names]
OWN_NAMES = ("doEPGAction", "Veltro", "Edit_DVB_EPG_Blacklist", "DVB_EPG_blacklist_ChannelSelection", "find_in_list",
             "DirChoose", "EPGTimer", "epg_timer")


class StartupTestCase(HostTestCase):
    load_in_setup = False

    def failure(self, *kinds):
        """The error that start-up ends with. The module must not be there afterwards."""
        error = self.error_of(kinds, host.load)
        self.assertNotIn("Veltro", sys.modules)
        return error

    def assert_loads_on_mended_host(self):
        host.reset()
        self.assertEqual(host.load().epg_timer.__class__.__name__, "EPGTimer")


class Success(StartupTestCase):
    def test_takes_the_names_in_the_order_of_the_table(self):
        host.load()
        expected = []
        for module, names in REQUIREMENTS:
            if module != "Tools":  # its package was imported with Tools.LoadPixmap
                expected.append("import " + module)
            if module != WHOLESALE:
                expected.extend("%s.%s" % (module, name) for name, _ in names)
        order = []
        for event in host.recorder.events:
            if event[0] in expected and event[0] not in order:
                order.append(event[0])
        self.assertEqual(order, expected)

    def test_every_name_of_the_table_is_in_the_namespace(self):
        module = host.load()
        for name, offered in [pair for _, names in REQUIREMENTS for pair in names]:
            if offered is not None:
                self.assertIs(getattr(module, name), offered, name)
        self.assertIs(module.config, host.config)
        self.assertEqual(module.Notifications.__name__, "Tools.Notifications")
        self.assertEqual(module._enigma.__name__, "_enigma")
        self.assertEqual(module.new.__name__, "new")

    def test_notifications_may_be_a_plain_name_of_its_package(self):
        host.modules["Tools"]["Notifications"] = there = object()
        host.modules.remove("Tools.Notifications")
        self.assertIs(host.load().Notifications, there)

    def test_does_nothing_but_import_and_look_up_names(self):
        host.load()
        modules = tuple(name + "." for name in host.modules.managed)
        for event in host.recorder.events:
            self.assertTrue(event[0].startswith("import ") or event[0].startswith(modules), event)

    def test_defines_its_own_names(self):
        module = host.load()
        for name in OWN_NAMES:
            self.assertTrue(hasattr(module, name), name)
        self.assertEqual(module.__name__, "Veltro")
        self.assertIs(module.epg_timer.__class__, module.EPGTimer)

    @unittest.skipIf(PYTHON2, "a namespace of Python 2.7 keeps no order")
    def test_defines_them_in_order_after_the_names_of_the_host(self):
        names = list(vars(host.load()))
        self.assertEqual([name for name in names if name in OWN_NAMES], list(OWN_NAMES))
        self.assertLess(names.index("new"), names.index("doEPGAction"))

    def test_the_timer_object_is_empty(self):
        self.assertEqual(vars(host.load().epg_timer), {})

    def test_a_second_import_returns_the_loaded_module(self):
        module = host.load()
        host.recorder.clear()
        self.assertIs(__import__("Veltro"), module)
        self.assertEqual(host.recorder.events, [])

    def test_each_load_runs_start_up_anew(self):
        first = host.load()
        host.reset()
        second = host.load()
        self.assertIsNot(first.epg_timer, second.epg_timer)
        self.assertIs(second.config, host.config)

    def test_configuration_keys_may_be_missing(self):
        for key in ("misc.epg_data_timer", "misc.epg_is_client_stb", "misc.epgcache_filename"):
            host.remove_key(key)
        host.load()

    def test_the_epg_cache_and_the_translation_may_be_missing(self):
        host.recorder.fail("eEPGCache.getInstance", Boom())
        host.recorder.fail("_", Boom())
        host.load()


class Wholesale(StartupTestCase):
    def test_takes_every_public_name(self):
        host.modules[WHOLESALE]["ChannelContextMenu"] = menu = object()
        self.assertIs(host.load().ChannelContextMenu, menu)

    def test_leaves_underscore_names(self):
        host.modules[WHOLESALE].update(_hidden=1, __version__="1")
        module = host.load()
        self.assertFalse(hasattr(module, "_hidden"))
        self.assertFalse(hasattr(module, "__version__"))
        self.assertEqual(module.__name__, "Veltro")

    def test_all_names_what_is_taken(self):
        namespace = host.modules[WHOLESALE]
        namespace.update(__all__=["SimpleChannelSelection", "_wanted"], _wanted=1, unwanted=2)
        module = host.load()
        self.assertEqual(module._wanted, 1)
        for name in ("unwanted", "eEnv", "ServiceReference"):
            self.assertFalse(hasattr(module, name), name)

    def test_all_may_be_a_tuple(self):
        host.modules[WHOLESALE].update(__all__=("SimpleChannelSelection", "eEnv"))
        self.assertTrue(hasattr(host.load(), "eEnv"))

    def test_an_error_of_looking_for_all_passes(self):
        class Module(HostModule):
            def __getattribute__(self, name):
                if name == "__all__":
                    raise error
                return HostModule.__getattribute__(self, name)
        for error in (Boom(), ValueError("no"), KeyboardInterrupt()):
            host.reset()
            host.modules.modules[WHOLESALE].__class__ = Module
            self.raised_by(error, host.load)
            self.assertNotIn("Veltro", sys.modules)
        error = AttributeError("the one that says that there is none")
        host.reset()
        host.modules.modules[WHOLESALE].__class__ = Module
        self.assertTrue(hasattr(host.load(), "eEnv"))

    def test_all_without_the_base_class_fails_as_if_it_were_not_there(self):
        host.modules[WHOLESALE]["__all__"] = ["eEnv"]
        self.assertEqual(str(self.failure(NameError)), "name 'SimpleChannelSelection' is not defined")

    def test_replaces_the_names_of_earlier_rows(self):
        class OwnScreen(host.modules["Screens.Screen"]["Screen"]):
            pass

        class own_timer(object):
            pass
        host.modules[WHOLESALE].update(Screen=OwnScreen, eTimer=own_timer)
        module = host.load()
        self.assertIs(module.Screen, OwnScreen)
        self.assertIs(module.eTimer, own_timer)
        self.assertIs(module.DirChoose.__bases__[0], OwnScreen)
        self.assertIs(module.Veltro.__bases__[0], OwnScreen)
        self.assertIs(module.Edit_DVB_EPG_Blacklist.__bases__[0], OwnScreen)

    def test_is_replaced_by_the_names_of_later_rows(self):
        later = [(module, name) for module, name in NAMES if MODULES.index(module) > MODULES.index(WHOLESALE)]
        host.modules[WHOLESALE].update(dict((name, "from the wholesale import") for _, name in later))
        host.modules[WHOLESALE].update(new="from the wholesale import")
        module = host.load()
        for _, name in later + [(None, "new")]:
            self.assertNotEqual(getattr(module, name), "from the wholesale import", name)

    def test_is_replaced_by_own_names(self):
        host.modules[WHOLESALE].update(dict((name, None) for name in OWN_NAMES))
        module = host.load()
        for name in OWN_NAMES:
            self.assertIsNotNone(getattr(module, name), name)


class Failure(StartupTestCase):
    def test_each_missing_name_is_named(self):
        for module, name in NAMES:
            host.reset()
            if name == "Notifications":
                host.modules.remove("Tools.Notifications")
            else:
                del host.modules[module][name]
            error = self.failure(ImportError)
            self.assertEqual(str(error), "cannot import name " + name)
            self.assert_stopped_at(module, name)
            self.assert_loads_on_mended_host()

    def assert_stopped_at(self, module, name):
        asked = [event[0] for event in host.recorder.events]
        for later in NAMES[NAMES.index((module, name)) + 1:]:
            self.assertNotIn("%s.%s" % later, asked)

    def test_each_missing_module_is_the_hosts_own_error(self):
        for module in MODULES:
            host.reset()
            host.modules.remove(module)
            error = self.failure(ImportError)
            self.assertIn("No module named ", str(error))
            self.assertIn(module.split(".")[-1], str(error))
            self.assertEqual(host.recorder.events[-1], ("import " + module,))
            self.assert_loads_on_mended_host()

    def test_each_error_of_a_host_module_passes_unchanged(self):
        for module in MODULES + ["Tools.Notifications"]:
            host.reset()
            error = Boom(module)
            host.recorder.fail("import " + module, error)
            self.raised_by(error, host.load)
            self.assertNotIn("Veltro", sys.modules)
            self.assertEqual(host.recorder.events[-1], ("import " + module,))

    def test_a_missing_base_class_is_a_name_error(self):
        del host.modules[WHOLESALE]["SimpleChannelSelection"]
        error = self.failure(NameError)
        self.assertEqual(str(error), "name 'SimpleChannelSelection' is not defined")
        self.assertEqual(host.recorder.events[-1], ("import new",), "all rows come before the classes")
        self.assert_loads_on_mended_host()

    def test_a_base_class_that_is_no_class_fails(self):
        host.modules["Screens.Screen"]["Screen"] = 7
        self.failure(TypeError)
        self.assert_loads_on_mended_host()

    def test_names_of_the_wholesale_import_that_no_class_needs_may_be_missing(self):
        for name in ("eServiceReference", "eServiceCenter", "ServiceReference", "eEnv"):
            host.reset()
            del host.modules[WHOLESALE][name]
            self.assertFalse(hasattr(host.load(), name))

    def test_the_trace_says_init_Veltro(self):
        for spoil in (lambda: host.modules.remove("skin"),
                      lambda: host.modules["skin"].pop("loadSkin"),
                      lambda: host.modules[WHOLESALE].pop("SimpleChannelSelection")):
            host.reset()
            spoil()
            try:
                host.load()
                self.fail("loaded")
            except (ImportError, NameError):
                frames = cpp_frames(sys.exc_info()[2])
                text = traceback.format_exc()
            self.assertEqual([frame[0] for frame in frames], ["init Veltro"])
            self.assertTrue(frames[0][1].endswith("plugin/src/Veltro.cpp"), frames)
            self.assertGreater(frames[0][2], 0)
            self.assertIn("init Veltro", text)

    def test_fails_as_often_as_it_is_tried(self):
        del host.modules["skin"]["loadSkin"]
        for _ in range(3):
            self.assertEqual(str(self.failure(ImportError)), "cannot import name loadSkin")
        self.assert_loads_on_mended_host()
