"""Nothing is kept: not a closed screen, not an argument, not an error."""

import gc
import sys
import unittest
import weakref

from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, PYTHON2, host
from tests.module.scenarios import SCENARIOS, start


class Screens(HostTestCase):
    def test_a_closed_screen_goes(self):
        for open_screen, leave in ((self.settings, "keyClose"), (self.settings, "keySave"), (self.chooser, "cancel"),
                                   (self.editor, "cancel"), (self.picker, "cancel")):
            screen = open_screen()
            there = weakref.ref(screen)
            getattr(screen, leave)()
            del screen
            host.recorder.clear()
            gc.collect()
            self.assertIsNone(there(), leave)

    def test_a_screen_that_failed_to_open_goes(self):
        there = []
        initialise = self.Veltro.Screen.__init__

        def spy(screen, session):
            there.append(weakref.ref(screen))
            initialise(screen, session)
        self.replace(self.Veltro.Screen, "__init__", spy)
        host.recorder.fail("ConfigListScreen.__init__", Boom())
        self.error_of(Boom, self.Veltro.Veltro, host.session, PLUGIN_PATH)
        host.recorder.reset()
        gc.collect()
        self.assertIsNone(there[0]())


class StartUp(HostTestCase):
    load_in_setup = False

    class Witness(object):
        pass

    def witness(self):
        """A name of the host that a module takes; the module alone keeps it alive once the host is reset."""
        taken = host.modules["skin"]["loadSkin"] = self.Witness()
        return weakref.ref(taken)

    def gone(self, there):
        host.reset()
        host.stop()
        host.start()
        gc.collect()
        return there() is None

    def test_a_failed_one_leaves_nothing(self):
        for spoil in (lambda: host.modules.remove("new"),
                      lambda: host.modules["Screens.ChannelSelection"].pop("SimpleChannelSelection")):
            there = self.witness()
            spoil()
            try:
                host.load()
            except (ImportError, NameError):
                pass
            self.assertTrue(self.gone(there))

    @unittest.skipIf(PYTHON2, "Python 2.7 keeps every extension module that was ever loaded")
    def test_an_unloaded_module_goes(self):
        there = self.witness()
        host.load()
        host.reset()
        host.load()  # Python 3 keeps the latest one
        self.assertTrue(self.gone(there))


class Leaks(HostTestCase):
    """After some rounds to warm up, the same again leaves no more objects behind, nor references to some of them."""

    ROUNDS = 20

    def leaked(self, operation):
        """How many objects, and how many references to the witnesses, each round leaves behind."""
        witnesses = (host.session, host.config, self.Veltro.Veltro, self.Veltro.DirChoose, self.Veltro.ConfigNothing,
                     self.Veltro.StaticText, vars(self.Veltro), Boom, PLUGIN_PATH, None, True)

        def count():
            gc.collect()
            return len(gc.get_objects()), sum(sys.getrefcount(witness) for witness in witnesses)
        for _ in range(3):
            operation()
        before = count()
        for _ in range(self.ROUNDS):
            operation()
        after = count()
        return [max(0, there - here) // self.ROUNDS for here, there in zip(before, after)]

    def run_scenario(self, prepare, error=None):
        """Run it once. With an error, its first step with the host fails with that."""
        kept = len(self._cleanups)
        operation = start(self, prepare)
        if error is not None:
            host.recorder.fail_at(0, error)
        try:
            operation()
        except Boom:
            pass
        host.recorder.reset()
        while len(self._cleanups) > kept:
            function, arguments, keywords = self._cleanups.pop()
            function(*arguments, **keywords)

    def assert_nothing_leaks(self, make_error):
        def run_all():
            for _, _, prepare in SCENARIOS:
                self.run_scenario(prepare, make_error())
        if self.leaked(run_all) != [0, 0]:
            for operation, situation, prepare in SCENARIOS:
                left = self.leaked(lambda: self.run_scenario(prepare, make_error()))
                self.assertEqual(left, [0, 0], (operation, situation))
            self.fail("something is left behind, but by no scenario alone")

    def test_operations(self):
        self.assert_nothing_leaks(lambda: None)

    def test_errors(self):
        self.assert_nothing_leaks(Boom)

    def test_argument_errors(self):
        def run():
            for operation, arguments in ((self.Veltro.doEPGAction, ()), (self.Veltro.epg_timer.setSession, (1, 2)),
                                         (self.Veltro.find_in_list, ([],))):
                try:
                    operation(*arguments)
                except TypeError:
                    pass
        self.assertEqual(self.leaked(run), [0, 0])
