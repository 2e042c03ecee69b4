"""Each thing that an operation does with its host fails once, and the operation ends right there.

For each scenario the host writes down what happens when all goes well. Then the scenario runs again and again, each
time with the next of these steps failing. What was done before is exactly what is done without the fault, nothing comes
after it, and the host's own error object comes out, with a trace that begins with the operation. The guarded places,
where something else is right, are each stated here.
"""

import sys

from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, cpp_frames, host, shape
from tests.module.operations import each, shown_name
from tests.module.scenarios import SCENARIOS, start

TITLE_LINE = ("console", 'self["title"] was not found in skin\n')
SAVE_LINE = ("console", "[Veltro] writing DVB EPG blacklist failed\n")


class Run(object):
    """One run of a scenario: its events as literals, its result, the error that left it and the module's frames."""

    def __init__(self, case, prepare, fault=None, error=None):
        operation = start(case, prepare)
        if fault is not None:
            host.recorder.fail_at(fault, error)
        self.result = self.error = None
        self.frames = []
        try:
            self.result = operation()
        except BaseException as caught:
            self.error = caught
            self.frames = cpp_frames(sys.exc_info()[2])
        self.events = [literal(event) for event in host.recorder.events]


def literal(event):
    """Paths of temporary folders differ between runs, and what is in a list depends on when one looks."""
    def part(value):
        if isinstance(value, list):
            return "<a list>"
        if isinstance(value, str) and value.endswith("blacklist_dvb_epg") and "$" not in value:
            return "<a file>"
        return shape(value)
    return tuple(part(value) for value in event)


class FaultSweep(HostTestCase):
    def sweep(self, operation, situation, prepare):
        usual = Run(self, prepare)
        self.assertIsNone(usual.error, (operation, situation))
        for step in range(len(usual.events)):
            for error in self.errors():
                run = Run(self, prepare, step, error)
                expected = self.guarded(operation, usual.events, step, error)
                place = "%s (%s), step %d: %r" % (operation, situation, step, usual.events[step])
                if expected is not None:
                    self.assertIsNone(run.error, place)
                    expected(run, place)
                else:
                    self.assertIs(run.error, error, place)
                    self.assert_one_of(run, self.ends(usual.events, step), place)
                    self.assertTrue(run.frames, place)
                    self.assertEqual(run.frames[0][0], operation, place)

    def assert_one_of(self, run, expected, place):
        """One of these lists of events is what happened. Says where the first of them is left."""
        if run.events not in expected:
            same = 0
            while run.events[:same + 1] == expected[0][:same + 1]:
                same += 1
            self.fail("%s\nhappened: ... %r\nexpected: ... %r" % (place, run.events[same:][:5], expected[0][same:][:5]))

    def errors(self):
        return [Boom("an error of the host"), IOError("an error of the disk"), KeyboardInterrupt()]

    def ends(self, usual, step):
        """What may have happened when this step failed: all up to it, and an open file is closed."""
        done = usual[:step + 1]
        opened = [position for position, event in enumerate(usual) if event[0] == "open"]
        closed = [position for position, event in enumerate(usual) if event[0] == "file.close"]
        if opened and opened[0] < step < closed[0]:
            reading = usual[opened[0]][2] == "r"
            return [done + [("file.close",)]] + ([] if reading else [done])
        return [done]

    # The guarded places. Each returns None, or a check of the run that comes through.

    def guarded(self, operation, usual, step, error):
        if operation in ("Veltro.Veltro.__init__", "Veltro.DirChoose.__init__"):
            return self.guarded_title(usual, step)
        if operation == "Veltro.Veltro.keyOk" and isinstance(error, Exception):
            return self.guarded_tag(usual, step)
        if operation in ("Veltro.Edit_DVB_EPG_Blacklist.saveFile", "Veltro.Edit_DVB_EPG_Blacklist.greenPressed"):
            return self.guarded_save(usual, step, error)
        return None

    def guarded_title(self, usual, step):
        """Making the "title" widget: any error costs a line on the console."""
        names = [event[0] for event in usual]
        first, last = names.index("title =") + 1, names.index('["title"] =')
        if not first <= step <= last:
            return None

        def check(run, place):
            self.assert_one_of(run, [usual[:step + 1] + [TITLE_LINE] + usual[last + 1:]], place)
        return check

    def guarded_tag(self, usual, step):
        """Reading the tag of the current row: an ordinary error means that the row has no tag."""
        names = [event[0] for event in usual]
        if step > names.index("config.l.getCurrentSelection"):
            return None

        def check(run, place):
            self.assertEqual(run.events[:step + 1], usual[:step + 1], place)
            then = [event[0] for event in run.events[step + 1:]]
            self.assertIn("config.getCurrent", then, place)
            self.assertFalse([name for name in then if name.startswith("eEPGCache")], place)
        return check

    def guarded_save(self, usual, step, error):
        """Writing the blacklist: an input/output error costs a line on the console and the file."""
        if not isinstance(error, IOError) or usual[step][0] not in ("open", "file.write", "file.close"):
            return None
        closing = [event for event in usual if event == ("close",)]

        def check(run, place):
            rest = [SAVE_LINE, ("unlink", "<a file>")] + closing
            self.assert_one_of(run, [end + rest for end in self.ends(usual, step)], place)
        return check


def _add_tests():
    for operation, situation, prepare in SCENARIOS:
        def test(self, operation=operation, situation=situation, prepare=prepare):
            self.sweep(operation, situation, prepare)
        name = "test_" + " ".join([operation, situation]).strip().replace(".", "_").replace(" ", "_").replace("/", "_")
        assert not hasattr(FaultSweep, name), name
        setattr(FaultSweep, name, test)


_add_tests()


class Completeness(HostTestCase):
    def test_every_operation_has_a_scenario(self):
        there = set(operation for operation, _, _ in SCENARIOS)
        self.assertIn("Veltro.doEPGAction", there)
        for class_name, operation, _ in each():
            self.assertIn("Veltro.%s.%s" % (class_name, shown_name(operation)), there)

    def test_every_operation_returns_nothing(self):
        for operation, situation, prepare in SCENARIOS:
            if not operation.endswith("__init__"):
                self.assertIsNone(Run(self, prepare).result, (operation, situation))

    def test_constructors_return_nothing(self):
        for kind, arguments in ((self.Veltro.Veltro, (PLUGIN_PATH,)), (self.Veltro.DirChoose, ("/",)),
                                (self.Veltro.Edit_DVB_EPG_Blacklist, (PLUGIN_PATH,)),
                                (self.Veltro.DVB_EPG_blacklist_ChannelSelection, (PLUGIN_PATH,))):
            self.assertIsNone(kind.__init__(kind.__new__(kind), host.session, *arguments))
