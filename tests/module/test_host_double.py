"""The double itself: it must refuse what the host does not have, and fail where it is told to."""

import os
import sys

from tests.host_double.modules import REQUIREMENTS
from tests.module.case import Boom, HostTestCase, builtins, host, press


class HostDouble(HostTestCase):
    def offered(self):
        """One object of each kind that the module meets, with the names it has for the module."""
        settings, editor, picker = self.settings(), self.editor(), self.picker(host.reference("1:0:"))
        config, servicelist = dict.__getitem__(settings, "config"), dict.__getitem__(editor, "ServiceList")
        self.Veltro.epg_timer.init_timer()
        service = self.Veltro.ServiceReference("1:0:")
        return (
            (host.config, "misc usage"), (host.element("misc.epg_data_timer"), "value save cancel"),
            (config, "list l instance getCurrent"), (config._content, "setList getCurrentSelection"),
            (config._instance, "moveSelection moveUp moveDown"), (servicelist, "list l instance getCurrent"),
            (dict.__getitem__(settings, "status"), "text setText getText"),
            (dict.__getitem__(settings, "key_red"), "text"),
            (dict.__getitem__(settings, "shortcuts"), ""), (self.Veltro.eEPGCache, "getInstance"),
            (self.Veltro.eEPGCache._instance, "load save clearDB setCacheFile"),
            (self.Veltro.epg_timer.epg_timer, "callback start"), (self.Veltro.eServiceCenter, "getInstance list"),
            (host.reference("1:0:"), "flags valid toString isDirectory isMarker"),
            (service, "ref getServiceName names"), (host.session, "open openWithCallback"),
            (picker.servicelist, "setPythonConfig"), (self.Veltro.path, "exists"),
        )

    def test_objects_have_their_names_and_no_other(self):
        for thing, names in self.offered():
            public = [name for name in dir(thing) if not name.startswith("_")]
            if thing is host.config:
                public = list(host.config._children)
            self.assertEqual(sorted(set(public) - set(["settable", "contents"])), sorted(names.split()))

    def test_objects_refuse_other_names(self):
        for thing, names in self.offered():
            error = self.error_of(AttributeError, getattr, thing, "nonsense")
            self.assertIn("nonsense", str(error))

    def test_objects_take_no_other_attributes(self):
        for thing, names in self.offered():
            if hasattr(type(thing), "settable"):
                error = self.error_of(AttributeError, setattr, thing, "nonsense", 1)
                self.assertIn("nonsense", str(error))

    def test_modules_have_exactly_the_names_of_the_table(self):
        for module, names in REQUIREMENTS:
            there = [name for name in host.modules[module]
                     if not name.startswith("__") and "%s.%s" % (module, name) not in host.modules.managed]
            self.assertEqual(sorted(there), sorted(name for name, _ in names if name != "Notifications"))

    def test_modules_are_there_only_while_they_are_installed(self):
        real = sys.modules["os"]
        with host.modules.installed():
            import enigma
            import os as other
            self.assertIs(enigma.eTimer, self.Veltro.eTimer)
            self.error_of(AttributeError, getattr, other, "getcwd")
        self.assertIs(sys.modules["os"], real)
        self.assertIs(os, real)
        self.assertNotIn("enigma", sys.modules)
        self.error_of(ImportError, __import__, "enigma")

    def test_a_closed_screen_has_nothing_left(self):
        screen = self.settings()
        screen.close()
        self.error_of(AttributeError, getattr, screen, "list")
        self.error_of(AttributeError, getattr, screen, "session")
        self.error_of(KeyError, lambda: screen["config"])

    def test_a_call_fails_once_with_the_given_error(self):
        error = Boom()
        host.recorder.fail("eEPGCache.save", error, nth=2)
        cache = self.Veltro.eEPGCache.getInstance()
        cache.save()
        self.raised_by(error, cache.save)
        cache.save()
        self.assertEqual(host.recorder.names(), ["eEPGCache.getInstance"] + ["eEPGCache.save"] * 3)

    def test_a_position_fails(self):
        error = Boom()
        host.recorder.fail_at(1, error)
        cache = self.Veltro.eEPGCache.getInstance()
        self.raised_by(error, cache.load)

    def test_recording_can_be_switched_off(self):
        host.reset(recording=False)
        self.Veltro.doEPGAction("save")
        self.assertEqual((host.recorder.events, host.recorder.calls), ([], []))

    def test_a_reset_gives_every_key_its_first_value(self):
        self.set_value("misc.epg_data_timer", 5)
        host.remove_key("usage.epg.eit")
        host.reset()
        self.assertEqual((self.value("misc.epg_data_timer"), self.value("usage.epg.eit")), (30, True))

    def test_translation_and_console_are_put_back(self):
        host.stop()
        self.assertFalse(hasattr(builtins, "_"))
        self.assertTrue(hasattr(sys.stdout, "flush"))
        self.assertNotIn("Veltro", sys.modules)
        host.start()

    def test_pressing_a_key_without_an_action_is_an_error_of_the_test(self):
        self.error_of(AssertionError, press, self.settings(), "yellow")
