"""plugin/src/listed_names.cpp: find_in_list, whether some row has this field."""

import unittest

from tests.module.case import Boom, HostTestCase, PYTHON2, host


class FindInList(HostTestCase):
    ROWS = [("One", 1, "x"), ["Two", 2, "y"], "abc"]

    def test_the_first_field_by_default(self):
        self.assertIs(self.Veltro.find_in_list(self.ROWS, "One"), True)
        self.assertIs(self.Veltro.find_in_list(self.ROWS, "Two", 0), True)
        self.assertIs(self.Veltro.find_in_list(self.ROWS, "a"), True)
        self.assertIs(self.Veltro.find_in_list(self.ROWS, "Three"), False)
        self.assertIs(self.Veltro.find_in_list(self.ROWS, 1), False)

    def test_any_field(self):
        self.assertIs(self.Veltro.find_in_list(self.ROWS, 2, 1), True)
        self.assertIs(self.Veltro.find_in_list(self.ROWS, 2, listpos=1), True)
        self.assertIs(self.Veltro.find_in_list(self.ROWS, "c", -1), True)
        self.assertIs(self.Veltro.find_in_list(self.ROWS, "Two", -3), True)
        self.assertIs(self.Veltro.find_in_list(self.ROWS, "One", 2), False)

    def test_an_empty_list(self):
        for rows in ([], (), "", {}):
            self.assertIs(self.Veltro.find_in_list(rows, "x"), False)

    def test_any_sequence_of_rows(self):
        for rows in (tuple(self.ROWS), iter(self.ROWS), (row for row in self.ROWS), {("One", 1): 0}):
            self.assertIs(self.Veltro.find_in_list(rows, "One"), True)

    def test_equality_is_that_of_the_host_language(self):
        self.assertIs(self.Veltro.find_in_list([(1.0,)], True), True)
        self.assertIs(self.Veltro.find_in_list([(b"x",)], u"x"), PYTHON2)
        self.assertIs(self.Veltro.find_in_list([(None,)], None), True)
        self.assertIs(self.Veltro.find_in_list([([1],)], [1]), True)
        nan = float("nan")
        self.assertIs(self.Veltro.find_in_list([(nan,)], nan), False, "nothing is that is not equal to itself")

    def test_an_answer_other_than_true_or_false_is_tested_for_truth(self):
        class Answers(object):
            def __init__(self, answer):
                self.answer = answer

            def __eq__(self, other):
                return self.answer
            __hash__ = None
        for answer, found in (("yes", True), ([], False), (None, False), (2, True)):
            self.assertIs(self.Veltro.find_in_list([(Answers(answer),)], "x"), found)

    def test_the_first_hit_ends_the_search(self):
        self.assertIs(self.Veltro.find_in_list([("x",), None, ()], "x"), True)

        def rows():
            yield ("x",)
            raise Boom()
        self.assertIs(self.Veltro.find_in_list(rows(), "x"), True)

    def test_rows_that_can_not_be_indexed(self):
        for row, kind in (((), IndexError), (None, TypeError), (5, TypeError), ({}, KeyError)):
            self.error_of(kind, self.Veltro.find_in_list, [("a",), row, ("x",)], "x")
        self.error_of(IndexError, self.Veltro.find_in_list, [("x", 1)], "x", 2)
        self.error_of(IndexError, self.Veltro.find_in_list, [("x", 1)], "x", -3)

    def test_a_position_that_is_no_integer(self):
        for position in ("0", None, 1.5, ()):
            self.error_of(TypeError, self.Veltro.find_in_list, [("x",)], "x", position)

    def test_a_position_that_stands_for_an_integer(self):
        class Second(object):
            def __index__(self):
                return 1
        self.assertIs(self.Veltro.find_in_list([("x", "y")], "y", Second()), True)
        self.assertIs(self.Veltro.find_in_list([("x", "y")], "y", True), True)

    def test_a_position_beyond_any_index(self):
        self.error_of(IndexError, self.Veltro.find_in_list, [("x",)], "x", 10 ** 30)

    def test_something_that_can_not_be_iterated(self):
        for rows in (None, 5, object()):
            self.error_of(TypeError, self.Veltro.find_in_list, rows, "x")

    def test_errors_pass_unchanged(self):
        error = Boom()

        class Touchy(object):
            def __eq__(self, other):
                raise error

            def __getitem__(self, position):
                raise error
            __hash__ = None

        def rows():
            raise error
            yield
        self.raised_by(error, self.Veltro.find_in_list, [(Touchy(),)], "x")
        self.raised_by(error, self.Veltro.find_in_list, [Touchy()], "x")
        self.raised_by(error, self.Veltro.find_in_list, rows(), "x")

    def test_arguments(self):
        for arguments in ((), ([],), ([], 1, 2, 3)):
            self.error_of(TypeError, self.Veltro.find_in_list, *arguments)

    def test_asks_the_host_nothing(self):
        self.Veltro.find_in_list(self.ROWS, "x")
        self.assertEqual(host.recorder.events, [])

    @unittest.skipUnless(PYTHON2, "Python 3 has one kind of text")
    def test_both_kinds_of_text(self):
        self.assertIs(self.Veltro.find_in_list([("One",)], u"One"), True)
