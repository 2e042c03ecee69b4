"""Rows that are pointed at: the cursor goes there as if the arrows had been pressed."""

import unittest

from tests.receiver.tv import TvTest, host


class PointingTest(TvTest):
    def setUp(self):
        super().setUp()
        self.switch_on()

    def test_to_a_row_and_back(self):
        for index in (5, 21, 0, 0, 7):
            self.receiver.go_to(index)
            self.assertEqual(self.list.selected, index)

    def test_what_is_no_row(self):
        for index in (-1, 22, 10 ** 9):
            self.receiver.go_to(index)
            self.assertEqual(self.list.selected, 0)

    def test_the_screen_hears_of_the_move(self):
        for number in range(3):
            (self.hdd / ("folder%d" % number)).mkdir(parents=True)
        self.go_to("EPG Path")
        self.press("ok")
        self.receiver.go_to(2)
        self.assertTrue(self.text("driverfile").endswith("/%s/" % self.selected.label), self.text("driverfile"))

    def test_headings_are_passed_over(self):
        flag = host("Components.config").ConfigYesNo()
        config = self.receiver._gui.session.current_dialog["config"]
        self.run_in_gui(config.setList, [("--",), ("one", flag), ("--",), ("two", flag), ("--",)])
        for index, row in (0, 1), (2, 1), (3, 3), (4, 3), (2, 3), (0, 1):
            self.receiver.go_to(index)
            self.assertEqual(self.list.selected, row)

    def test_no_list(self):
        self.open(host("Screens.MessageBox").MessageBox, "Seen?", host("Screens.MessageBox").MessageBox.TYPE_INFO)
        self.receiver.go_to(0)
        self.receiver.scroll(3)
        self.receiver.switch_off()
        self.receiver.go_to(0)
        self.receiver.scroll(3)


class ScrollingTest(TvTest):
    def setUp(self):
        super().setUp()
        self.switch_on()
        self.open(host("Screens.ChoiceBox").ChoiceBox, list=[("%d" % number, number) for number in range(100)])

    def state(self):
        return self.list.first, self.list.selected

    def test_the_cursor_comes_along(self):
        self.press("down*3")
        for rows, state in (5, (5, 8)), (-2, (3, 6)), (40, (43, 46)):
            self.receiver.scroll(rows)
            self.assertEqual(self.state(), state)

    def test_the_ends(self):
        self.press("down*3")
        self.receiver.scroll(-1)
        self.assertEqual(self.state(), (0, 2))
        self.receiver.scroll(1000)
        self.assertEqual(self.state(), (90, 99))
        self.receiver.scroll(-10 ** 9)
        self.assertEqual(self.state(), (0, 0))

    def test_the_way_through_a_long_list_is_as_long_as_the_list(self):
        content = self.receiver._gui.session.current_dialog["list"].l
        asked, selectable = [], content.selectable
        content.selectable = lambda index: asked.append(index) or selectable(index)
        self.receiver.go_to(99)
        self.assertEqual(self.list.selected, 99)
        self.assertLess(len(asked), 400)

    def test_where_all_rows_are_seen_the_cursor_moves(self):
        self.press("exit")
        self.receiver.scroll(3)
        self.assertEqual(self.state(), (0, 3))


if __name__ == "__main__":
    unittest.main()
