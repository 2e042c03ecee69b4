"""plugin/src/host/generation_*.cpp: how the module calls its host, and how it is called."""

import functools
import sys

from tests.module.case import PYTHON2, HostTestCase, host

TITLE = "Edit blacklist for DVB EPG"


class Outward(HostTestCase):
    """Whatever the language can call is called as the language does."""

    def callables(self):
        prefix = "."

        def plain(text):
            return prefix + text

        def with_defaults(text, prefix=".", *more, **named):
            assert not more and not named
            return prefix + text

        def anything(*arguments, **named):
            assert not named
            return "." + "".join(arguments)

        class Object(object):
            def __call__(self, text):
                return "." + text

            def method(self, text, prefix="."):
                return prefix + text

            @classmethod
            def of_class(cls, text):
                return "." + text

            @staticmethod
            def of_nothing(text):
                return "." + text

        class Classic:
            def method(self, text):
                return "." + text
        return (plain, with_defaults, anything, lambda text: "." + text, functools.partial(with_defaults), Object(),
                Object().method, Object.of_class, Object().of_class, Object.of_nothing, Classic().method, ".".__add__)

    def test_any_callable(self):
        screen = self.editor()
        for translate in self.callables():
            self.replace(self.Veltro, "_", translate)
            host.recorder.clear()
            screen.setWindowTitle()
            self.assertEqual(self.calls, [("setTitle", "." + TITLE)])

    def test_any_callable_that_is_called_many_times(self):
        screen = self.settings()
        labels = [row[0] for row in screen.list]

        class Entries(object):
            def of(self, *fields):
                return fields
        for translate in self.callables():
            self.replace(self.Veltro, "_", translate)
            self.replace(self.Veltro, "getConfigListEntry", Entries().of)
            screen.createSetup()
            self.assertEqual([row[0] for row in screen.list], ["." + label.replace("[", "").replace("]", "") for label in labels])

    def test_any_method(self):
        for translate in self.callables():
            screen = self.editor()
            screen.__dict__["setTitle"] = translate
            screen.setWindowTitle()
            self.assertCalls()

    def test_whatever_a_class_has_for_a_method(self):
        heard = []

        def always(screen, name):
            return heard.append if name == "setTitle" else object.__getattribute__(screen, name)
        for names in ({"setTitle": lambda screen, text: heard.append(text)}, {"setTitle": heard.append},
                      {"setTitle": classmethod(lambda screen, text: heard.append(text))},
                      {"setTitle": staticmethod(heard.append)}, {"setTitle": property(lambda screen: heard.append)},
                      {"__getattribute__": always}):
            screen = self.editor()
            if "setTitle" not in names or isinstance(names["setTitle"], property):
                screen.__dict__["setTitle"] = None  # these come before what the object has of its own
            screen.__class__ = type("Sub", (self.Veltro.Edit_DVB_EPG_Blacklist,), names)
            screen.setWindowTitle()
        self.assertEqual(heard, ["[%s]" % TITLE] * 6)

    def test_arguments_that_do_not_fit(self):
        def nothing():
            raise AssertionError("it takes no argument")

        def two(one, other):
            raise AssertionError("it takes two arguments")

        class Object(object):
            def bound(self):
                raise AssertionError("it takes no argument but itself")
        editor, settings = self.editor(), self.settings()
        for translate in (nothing, two, Object().bound, 5, None):
            self.replace(self.Veltro, "_", translate)
            self.error_of(TypeError, editor.setWindowTitle)
            self.error_of(TypeError, settings.createSetup)
        self.assertCalls()

    def test_a_method_without_an_object(self):
        """2.7 looks whether what it is called with is an object of its class; later ones call it."""
        class Object(object):
            def method(self):
                return self
        screen = self.settings()
        self.replace(self.Veltro, "_", Object.method)
        if PYTHON2:
            self.error_of(TypeError, screen.createSetup)
        else:
            screen.createSetup()
            self.assertEqual(screen.list[0][0], "Multi-EPG bouquet selection")

    def test_a_generator_is_not_run(self):
        def generate(text):
            raise AssertionError("nobody asked for its first value")
            yield
        screen = self.editor()
        screen.__dict__["setTitle"] = generate
        screen.setWindowTitle()


class Inward(HostTestCase):
    def test_without_a_tuple_where_the_interpreter_can(self):
        kind = type(vars(self.Veltro.Veltro)["up"])
        has_vectorcall = 1 << 11  # Py_TPFLAGS_HAVE_VECTORCALL; on 2.7 the bit means something else
        if sys.version_info[0] > 2:
            self.assertEqual(bool(kind.__flags__ & has_vectorcall), sys.version_info >= (3, 9))

    def test_each_way_of_giving_arguments(self):
        rows = [("One", 1), ("Two", 2)]
        find = self.Veltro.find_in_list
        for found in (find(rows, 2, 1), find(rows, 2, listpos=1), find(rows, search=2, listpos=1),
                      find(*(rows, 2, 1)), find(*(rows,), **{"search": 2, "listpos": 1}), find(rows, "Two"),
                      find(rows, "Two", **{}), functools.partial(find, rows, listpos=1)(2)):
            self.assertIs(found, True)

    def test_odd_positions_of_find_in_list(self):
        rows = [("One", 1), ["Two", 2]]
        for position in (1, True, -1, 1 << 0, type("Number", (int,), {})(1)):
            self.assertIs(self.Veltro.find_in_list(rows, 2, position), True)
        for position in (2, -3, 1 << 40, -(1 << 40), 1 << 80, -(1 << 80)):
            self.error_of(IndexError, self.Veltro.find_in_list, rows, 2, position)
        for position in ("1", None, 1.0):
            self.error_of(TypeError, self.Veltro.find_in_list, rows, 2, position)

    def test_many_more_arguments_than_parameters(self):
        self.error_of(TypeError, self.Veltro.find_in_list, *range(1000))
        screen = self.editor()
        self.assertIsNone(screen.finishedChannelSelection(None, *range(1000)))
        self.assertIsNone(screen.finishedChannelSelection(*[[]] * 1000))


class Lists(HostTestCase):
    def test_a_list_that_changes_while_it_is_read(self):
        """As the language reads it: by position, up to the end that it has then."""
        class Shrinking(object):
            def __init__(self, rows):
                self.rows = rows

            def __eq__(self, other):
                del self.rows[1:]
                return False
            __hash__ = None

        class Growing(Shrinking):
            def __eq__(self, other):
                self.rows.append(["found"])
                return False
            __hash__ = None
        rows = []
        rows[:] = [[Shrinking(rows)], ["found"]]
        self.assertIs(self.Veltro.find_in_list(rows, "found"), False)
        rows[:] = [[Growing(rows)]]
        self.assertIs(self.Veltro.find_in_list(rows, "found"), True)
