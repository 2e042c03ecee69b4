"""plugin/src/listed_names.cpp: the editor asks for many names what find_in_list answers for one, and as quickly."""

import gc
import time
import warnings

from tests.module.case import Boom, HostTestCase, PYTHON2, host

ONE, TWO = "1:0:1:1:0:0:0:0:0:0:", "1:0:1:2:0:0:0:0:0:0:"


class OddNames(HostTestCase):
    """The list of names may be searched in any way, as long as the result is that of find_in_list for each service."""

    def two_services(self):
        return [host.reference(ONE, "One"), host.reference(TWO, "Two")]

    def names(self):
        class Text(str):
            pass

        class Shouting(str):
            """Equal to what differs only in case, which its hash does not know."""
            def __eq__(self, other):
                return isinstance(other, str) and self.lower() == other.lower()

            def __ne__(self, other):
                return not self == other
            __hash__ = str.__hash__

        class Anything(object):
            def __eq__(self, other):
                return True
            __hash__ = None

        class Unlike(object):
            def __eq__(self, other):
                return False
            __hash__ = None
        nan = float("nan")
        common = ["One", "", "N/A", Text("One"), Text("Two"), Text(""), Shouting("ONE"), Shouting("three"), b"One", b"",
                  u"One", u"Zw\xf6lf", None, 0, 1, True, 1.0, (), ("One",), ["One"], {}, nan, Unlike(), "one", "three",
                  "Zw\xc3\xb6lf" if PYTHON2 else u"Zw\udcf6lf"]
        return common, [Anything()]

    def expected(self, listed, names):
        rows = list(listed)
        for name in names:
            name = "N/A" if name == "" else name
            if not any(row[0] == name for row in rows):
                rows.append((name,))
        return [row[0] for row in rows]

    def found(self, listed, names):
        screen = self.editor()
        screen.servicelist[:] = listed
        answers = iter(names)

        class Named(object):
            def __init__(self, reference):
                self.ref = self

            def getServiceName(self):
                return next(answers)

            def toString(self):
                return "1:"
        self.replace(self.Veltro, "ServiceReference", Named)
        screen.finishedChannelSelection(["x"] * len(names))
        return [row[0] for row in screen.servicelist]

    def assert_same(self, listed, names):
        expected, found = self.expected(listed, names), self.found(listed, names)
        # The very objects, but for the name that the editor itself gives.
        self.assertEqual(*[[name if type(name) is str and name == "N/A" else id(name) for name in result]
                           for result in (found, expected)])

    def test_added_in_one_call(self):
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")  # Python 2.7 remarks on bytes that are no text
            common, wild = self.names()
            self.assert_same([], common)
            self.assert_same([], common[::-1])
            self.assert_same([], common + wild + common)
            self.assert_same([], wild + common)

    def test_beside_listed_rows(self):
        with warnings.catch_warnings():
            warnings.simplefilter("ignore")
            common, wild = self.names()
            for listed in common + wild:
                self.assert_same([(listed,)], common)
            self.assert_same([(name, 1, 0, "") for name in common], common[::-1])
            self.assert_same([["One"], "Two", (u"Zw\xf6lf",)], ["One", "T", "Two", u"Zw\xf6lf"])

    def test_a_row_without_a_first_field_is_the_error_of_find_in_list(self):
        for row, kind in (((), IndexError), ([], IndexError), (None, TypeError), (5, TypeError)):
            screen = self.editor()
            screen.servicelist[:] = [("One", None, 0, ""), row]
            error = self.error_of(kind, self.Veltro.find_in_list, screen.servicelist, "Two")
            references = self.two_services()
            host.recorder.clear()
            found = self.error_of(kind, screen.finishedChannelSelection, references)
            self.assertEqual((type(found), str(found)), (type(error), str(error)))
            self.assertEqual(len(screen.servicelist), 2)
            self.assertEqual(host.recorder.names(), ["ServiceReference", "getServiceName"] * 2)

    def test_a_list_with_ways_of_its_own(self):
        class Rows(list):
            def __iter__(self):
                return iter([("Two", None, 0, "")])
        screen = self.editor()
        screen.servicelist = Rows([("One", None, 0, "")])
        screen.finishedChannelSelection(self.two_services())
        self.assertEqual([row[0] for row in list.__iter__(screen.servicelist)], ["One", "One"])

    def test_a_list_that_shows_other_rows_each_time(self):
        class Rows(list):
            shown = [[], [("Two", None, 0, "")]]

            def __iter__(self):
                return iter(self.shown.pop(0))
        screen = self.editor()
        screen.servicelist = Rows()
        screen.finishedChannelSelection(self.two_services())
        self.assertEqual([row[0] for row in list.__iter__(screen.servicelist)], ["One"])

    def test_rows_with_ways_of_their_own(self):
        class Row(tuple):
            def __getitem__(self, position):
                return "Two" if position == 0 else tuple.__getitem__(self, position)
        screen = self.editor()
        screen.servicelist[:] = [Row(("One", None, 0, ""))]
        screen.finishedChannelSelection(self.two_services())
        self.assertEqual([row[0] for row in screen.servicelist], ["Two", "One"])

    def test_a_comparison_that_fails_is_passed_on(self):
        error = Boom()

        class Touchy(object):
            def __eq__(self, other):
                raise error
            __hash__ = None
        screen = self.editor()
        screen.servicelist[:] = [("One", None, 0, ""), (Touchy(), None, 0, "")]
        references = self.two_services()
        self.raised_by(error, screen.finishedChannelSelection, references)
        self.assertEqual(len(screen.servicelist), 2)

    def test_a_host_that_changes_the_list_meanwhile(self):
        """The host may run anything while it makes a service's name."""
        screen = self.editor(("One", ONE))

        class Meddling(object):
            def __init__(self, reference):
                self.ref = self

            def getServiceName(self):
                del screen.servicelist[:]
                return "One"

            def toString(self):
                return ONE
        self.replace(self.Veltro, "ServiceReference", Meddling)
        screen.finishedChannelSelection(["a", "b"])
        self.assertEqual([(row[0], row[3]) for row in screen.servicelist], [("One", ONE)])

    def add_while(self, listed, meddle, names, which=2):
        """The editor's names after it was given `names` in one call; `meddle` runs while the host makes one of them, the
        second or another."""
        screen = self.editor()
        screen.servicelist[:] = listed
        given, calls = iter(names), []

        class Named(object):
            def __init__(self, reference):
                self.ref = self

            def getServiceName(self):
                name = next(given)
                if len(calls) == which - 1:
                    meddle(screen.servicelist)
                calls.append(name)
                return name

            def toString(self):
                return ONE
        self.replace(self.Veltro, "ServiceReference", Named)
        screen.finishedChannelSelection(["x"] * len(names))
        return [row[0] for row in screen.servicelist]

    def test_a_host_that_replaces_a_row(self):
        def meddle(rows):
            rows[0] = ("New", None, 0, "")
        found = self.add_while([("One", None, 0, ""), ("Two", None, 0, "")], meddle, ["Two", "One", "New"])
        self.assertEqual(found, ["New", "Two", "One"])

    def test_a_host_that_replaces_a_row_after_one_was_added(self):
        def meddle(rows):
            rows[0] = ("New", None, 0, "")
        found = self.add_while([("One", None, 0, ""), ("Two", None, 0, "")], meddle, ["Three", "Four", "One", "New"], 3)
        self.assertEqual(found, ["New", "Two", "Three", "Four", "One"])

    def test_a_host_that_renames_a_row(self):
        def meddle(rows):
            rows[0][0] = "New"
        found = self.add_while([["One", None, 0, ""], ("Two", None, 0, "")], meddle, ["Two", "One", "New"])
        self.assertEqual(found, ["New", "Two", "One"])

    def test_a_host_that_replaces_all_rows_of_a_long_list(self):
        def rows_from(first):
            return [("Name %d" % number, None, 0, "") for number in range(first, first + 1000)]

        def meddle(rows):
            rows[:] = rows_from(2000)
        found = self.add_while(rows_from(0), meddle, ["Name 5", "Name 7", "Name 2007"])
        self.assertEqual(found, [row[0] for row in rows_from(2000)] + ["Name 7"])

    def test_a_host_that_replaces_one_row_of_a_long_list_is_noticed_while_many_are_added(self):
        def meddle(rows):
            rows[5] = ("New", None, 0, "")
        listed = [("Name %d" % number, None, 0, "") for number in range(1000)]
        found = self.add_while(listed, meddle, ["Name 1"] * 50 + ["Name 5", "New"])
        self.assertEqual(found[1000:], ["Name 5"])


# What this process has worked; what others do on the machine does not count.
processor_time = getattr(time, "process_time", None) or time.clock


class Growth(HostTestCase):
    def seconds(self, count):
        """For adding that many services to as many listed ones, on a host that does next to nothing itself."""
        host.reset(recording=False)
        names = ["Service with a name of usual length %d" % number for number in range(2 * count)]
        texts = ["1:0:1:%x:0:0:0:0:0:0:" % number for number in range(2 * count)]
        host.service_names.update(zip(texts, names))
        self.Veltro = host.load()
        best = None
        for _ in range(3):
            screen = self.editor()
            screen.finishedChannelSelection(texts[:count])
            gc.collect()
            gc.disable()
            start = processor_time()
            screen.finishedChannelSelection(texts)
            spent = processor_time() - start
            gc.enable()
            self.assertEqual(len(screen.servicelist), 2 * count)
            best = spent if best is None else min(best, spent)
        return best

    def test_ten_times_the_services_take_about_ten_times_as_long(self):
        few, many = self.seconds(1000), self.seconds(10000)
        self.assertLess(many, 30 * few, "%.4f s for 1,000 services, %.4f s for 10,000" % (few, many))
