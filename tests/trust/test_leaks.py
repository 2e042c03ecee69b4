"""Whatever is done and whatever fails, again and again: the number of objects and of references stays where it is.

Each piece of work runs in rounds: some to warm up, then two phases of the same length. What is there after the second must
be what was there after the first; a leak of one object or one reference a round is told from noise by the length. On an
interpreter built for debugging, which counts every reference there is, the total is held to the same, if VELTRO_BUILD
names a module that was compiled to count with it.
"""

import gc
import sys
import unittest

from tests.host_double.configuration import KEYS
from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, PYTHON2, host
from tests.module.operations import OPERATIONS, PICKER
from tests.module.scenarios import SCENARIOS

WARM_UP = 3
ROUNDS = 8
IMMORTAL = 1 << 30  # from 3.12 on None and the like have such a count, and it says nothing
total_references = getattr(sys, "gettotalrefcount", lambda: 0)


class LeakTestCase(HostTestCase):
    def plateau(self, work, what):
        """Work leaves nothing behind. Returns how often it ran."""
        for _ in range(WARM_UP):
            work()
        counts = []
        for _ in range(2):
            for _ in range(ROUNDS):
                work()
            counts.append(self.count())
        grown = [after - before for before, after in zip(*counts)]
        self.assertLess(max(grown), ROUNDS, "%s: in %d rounds %s more (objects, references to some, all references)" % (
            what, ROUNDS, grown))
        return WARM_UP + 2 * ROUNDS

    def count(self):
        gc.collect()
        references = [sys.getrefcount(thing) for thing in self.witnesses()]
        return len(gc.get_objects()), sum(count for count in references if count < IMMORTAL), total_references()

    def witnesses(self):
        """Things that an operation might keep a reference to."""
        names = vars(self.Veltro)
        return [None, True, False, 0, 1, "", PLUGIN_PATH, Boom, names, host.session, host.config, host.translate.__func__,
                names["eEPGCache"]._instance] + list(names.values())

    def reset(self):
        """What a round changed in the host is as it was, and nothing is remembered."""
        host.recorder.reset()
        for key, _, value in KEYS:
            element = host.element(key)
            element._value = element._saved = value
        host.service_names.clear()
        host.bouquets.clear()
        host.listings.clear()
        vars(self.Veltro.epg_timer).clear()
        while len(self._cleanups) > self.kept:
            function, arguments, keywords = self._cleanups.pop()
            function(*arguments, **keywords)

    def setUp(self):
        HostTestCase.setUp(self)
        self.kept = len(self._cleanups)
        if hasattr(gc, "freeze"):
            gc.collect()
            gc.freeze()  # what was there before is not searched each time
            self.addCleanup(gc.unfreeze)
            self.kept += 1


class Scenarios(LeakTestCase):
    def run_with(self, prepare, step, error):
        """One run; the event at this position fails. Returns how many events there were."""
        operation = prepare(self)
        host.recorder.clear()
        if step is not None:
            host.recorder.fail_at(step, error)
        try:
            operation()
        except (Boom, IOError, KeyboardInterrupt):
            pass
        events = len(host.recorder.events)
        operation = None
        self.reset()
        return events

    def scenarios(self):
        """Those that work on the module that is loaded; a start-up has a test of its own."""
        return [scenario for scenario in SCENARIOS if scenario[0] != "init Veltro"]

    def test_operations(self):
        for operation, situation, prepare in self.scenarios():
            self.plateau(lambda: self.run_with(prepare, None, None), (operation, situation))

    def test_each_step_of_each_operation_fails(self):
        runs = 0
        for operation, situation, prepare in self.scenarios():
            steps = range(self.run_with(prepare, None, None))
            for make in (Boom, IOError, KeyboardInterrupt):
                def work():
                    for step in steps:
                        self.run_with(prepare, step, make())
                runs += len(steps) * self.plateau(work, (operation, situation, make.__name__))
        self.assertGreater(runs, 10000)


class Arguments(LeakTestCase):
    WRONG = (((), {}), ((1,), {}), ((1, 2, 3, 4, 5), {}), ((), {"unknown": 1}), ((1,), {"session": 2, "self": 3}),
             ((1, 2), {"session": 2}), ((1, 2, 3, 4), {"args": 5}),
             ((1,), {u"\u00e4".encode("utf-8") if PYTHON2 else u"\u00e4": 1}))

    def wrong(self, operation):
        for arguments, keywords in self.WRONG:
            try:
                operation(*arguments, **keywords)
            except Exception:
                pass

    def test_arguments_that_do_not_fit(self):
        operations = [self.Veltro.doEPGAction, self.Veltro.find_in_list]
        for class_name, names in OPERATIONS:
            operations += [vars(getattr(self.Veltro, class_name))[name] for name, _ in names]
            operations.append(getattr(self.Veltro, class_name))
        self.assertTrue(PICKER)
        for operation in operations:
            def work():
                self.wrong(operation)
                self.reset()
            self.plateau(work, operation)

    def test_what_operations_say_of_themselves(self):
        def work():
            for operation in (self.Veltro.doEPGAction, vars(self.Veltro.Veltro)["keyOk"]):
                repr(operation), operation.__doc__, operation.__name__, operation.__qualname__
                operation.__text_signature__
                getattr(operation, "missing", None)
                operation.__get__(self, type(self)), operation.__get__(None, type(self))
        self.plateau(work, "attributes")


@unittest.skipIf(PYTHON2, "Python 2.7 keeps every extension module that was ever loaded")
class StartUp(LeakTestCase):
    def test_start_up(self):
        def work():
            host.load()
            host.recorder.reset()
        self.plateau(work, "start-up")

    def test_each_step_of_start_up_fails(self):
        host.recorder.clear()
        host.load()
        steps = range(len(host.recorder.events))

        def work():
            for step in steps:
                host.recorder.reset()
                host.recorder.fail_at(step, Boom())
                try:
                    host.load()
                except Boom:
                    pass
            host.recorder.reset()
        self.plateau(work, "failing start-up")
