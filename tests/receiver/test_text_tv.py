"""The drawer: a picture as a grid of characters."""

import unittest

from prompt_toolkit.application import DummyApplication
from prompt_toolkit.application.current import set_app
from prompt_toolkit.layout.mouse_handlers import MouseHandlers
from prompt_toolkit.layout.screen import Screen, WritePosition

from receiver.picture import Box, Picture, Row, ScreenView
from receiver.text_tv import BELOW, TextTv, cut, printable, text, wrap
from tests.receiver.tv import TvTest


def picture(*boxes, **size):
    size = {"x": 0, "y": 0, "width": 1280, "height": 720, **size}
    return Picture([ScreenView("Test", "", background="#000020", boxes=list(boxes), **size)], [("info", "text")])


def lines(picture, columns=64, rows=37):
    return text(picture, columns, rows).split("\n")


def a_list(count, selected=0, first=0, **kwargs):
    rows = [Row("row %d" % number, selected=number == selected, **kwargs) for number in range(first, min(count, first + 10))]
    return Box("list", 0, 0, 1280, 200, rows=rows, first=first, total=count, selected=selected, scrollbar=True)


class TextTest(unittest.TestCase):
    def test_cut(self):
        self.assertEqual([cut("abcdef", size) for size in (9, 6, 5, 1, 0)], ["abcdef", "abcdef", "abcd…", "…", ""])
        self.assertEqual(cut("日本語", 5), "日本…")

    def test_wrap(self):
        self.assertEqual(wrap("one two three\n\n  four", 8), ["one two", "three", "", "  four"])
        self.assertEqual(wrap("abcdefgh", 3), ["abc", "def", "gh"])

    def test_nothing_that_commands_a_terminal_gets_through(self):
        nasty = "a\x1b[2Jb\x9bc\x07\td\ud8ff"
        self.assertEqual(printable(nasty), "a\ufffd[2Jb\ufffdc\ufffd d\ufffd")
        row = Row(nasty, nasty, kind="setting", selected=True)
        boxes = [Box("title", 0, 0, 1280, 20, nasty), Box("key_red", 0, 40, 1280, 20, nasty, wrap=False),
                 Box("list", 0, 100, 1280, 200, rows=[row], total=1)]
        drawn = text(Picture(picture(*boxes).screens, [(nasty, nasty)]), 100, 37)
        self.assertEqual(drawn.count("[2Jb"), 6)
        for char in "\x1b\x9b\x07\ud8ff":
            self.assertNotIn(char, drawn)

    def test_wide_and_combining_characters(self):
        self.assertEqual(lines(picture(Box("a", 0, 0, 200, 20, "日e\u0301x", halign="right")))[0], " " * 6 + "日e\u0301x")


class DrawTest(unittest.TestCase):
    def test_every_size_gives_that_many_cells(self):
        for columns, rows in ((20, 6), (80, 24), (133, 51)):
            drawn = lines(picture(a_list(100, 3), Box("title", 0, 600, 1280, 50, "Title")), columns, rows)
            self.assertEqual((len(drawn), max(map(len, drawn))), (rows, columns))

    def test_alignment(self):
        boxes = [Box("a", 0, y, 1280, 20, "text", halign=halign)
                 for y, halign in ((0, "left"), (20, "center"), (40, "right"), (60, "block"))]
        self.assertEqual(lines(picture(*boxes))[:4], ["text", " " * 30 + "text", " " * 60 + "text", "text"])
        boxes = [Box("a", x, 0, 320, 100, "text", valign=valign)
                 for x, valign in ((0, "top"), (320, "center"), (640, "bottom"))]
        self.assertEqual([line.split() for line in lines(picture(*boxes))[:5]], [["text"], [], ["text"], [], ["text"]])

    def test_long_text_wraps_or_is_cut(self):
        self.assertEqual(lines(picture(Box("a", 0, 0, 200, 40, "one two three four")))[:3], ["one two", "three four", ""])
        self.assertEqual(lines(picture(Box("a", 0, 0, 200, 40, "one two three four", wrap=False)))[0], "one two t…")

    def test_bottom_aligned_text_shows_its_end(self):
        text = "\n".join(map(str, range(9)))
        self.assertEqual(lines(picture(Box("a", 0, 0, 200, 40, text, valign="bottom")))[:2], ["7", "8"])

    def test_row(self):
        rows = [Row("Label", "value", selected=True), Row("Yes", "yes", switch=True), Row("No", "no", switch=False)]
        drawn = lines(picture(Box("list", 0, 0, 600, 100, rows=rows, total=3)), columns=64)
        self.assertEqual(drawn[:3], ["▶ Label            ◂ value   ▸", "  Yes                  yes ●", "  No                    no ○"])

    def test_a_long_label_leaves_the_value_alone(self):
        drawn = lines(picture(Box("list", 0, 0, 600, 20, rows=[Row("L" * 99, "value")], total=1)))
        self.assertRegex(drawn[0], "^  L+… +value$")

    def test_kinds_of_rows(self):
        rows = [Row(kind, kind=kind, shortcut="3" if kind == "choice" else "")
                for kind in ("folder", "marker", "choice", "service")]
        drawn = lines(picture(Box("list", 0, 0, 1280, 100, rows=rows, total=4)))
        self.assertEqual(drawn[:4], ["  ▪ folder", "  ── marker ──", "  3  choice", "    service"])

    def test_the_selected_row_is_always_seen(self):
        for selected in range(10):
            drawn = "\n".join(lines(picture(a_list(10, selected)), rows=16))
            self.assertIn("▶ row %d" % selected, drawn)

    def test_scroll_bar(self):
        self.assertNotIn("█", "\n".join(lines(picture(a_list(5)))))
        top = [line[-1:] for line in lines(picture(a_list(100, 0)))[:10]]
        end = [line[-1:] for line in lines(picture(a_list(100, 99, first=90)))[:10]]
        self.assertEqual((top, end), (["█"] + ["│"] * 9, ["│"] * 9 + ["█"]))

    def test_keys_have_their_letters(self):
        self.assertEqual(lines(picture(Box("key_red", 0, 0, 600, 20, "Exit")))[0], "[R] Exit")
        self.assertEqual(lines(picture(Box("key_blue", 0, 0, 600, 20, "")))[0], "")
        self.assertEqual(lines(picture(Box("key_red", 0, 0, 40, 20, "Exit")), columns=20)[0], "[")

    def test_flat_shapes_become_lines_and_touching_boxes_do_not_overlap(self):
        self.assertEqual(lines(picture(Box("panel", 0, 45, 1280, 2, background="#ffffff")))[2], "─" * 64)
        boxes = [Box("a", 0, y, 600, 36, str(y)) for y in range(0, 720, 36)]
        for rows in range(25, 60):
            drawn = "\n".join(lines(picture(*boxes), rows=rows)[:-1]).split()
            self.assertEqual(drawn, [str(y) for y in range(0, 720, 36)], rows)

    def test_pop_ups_have_a_border_and_darken_the_rest(self):
        below = picture(Box("a", 0, 0, 1280, 20, "below", foreground="#ffffff"))
        above = picture(Box("b", 330, 200, 600, 20, "above"), x=320, y=180, width=640, height=360).screens
        screen = Screen()
        shown = Picture(below.screens + above, [])
        self.assertIn("┌" + "─" * 30 + "┐", text(shown, 64, 37))
        with set_app(DummyApplication()):
            TextTv(lambda: shown).write_to_screen(screen, MouseHandlers(), WritePosition(0, 0, 64, 37))
        self.assertTrue(screen.data_buffer[0][0].style.endswith(BELOW))
        self.assertNotIn(BELOW, screen.data_buffer[10][18].style)

    def test_information_is_the_last_line(self):
        self.assertEqual(lines(picture())[-1], " info text")


class RealScreensTest(TvTest):
    def test_every_row_has_a_line_of_its_own_in_the_usual_size(self):
        self.switch_on()
        drawn = text(self.picture, 100, 37)
        for label in self.labels:
            self.assertIn(label, drawn)
        self.assertIn("[R] Exit", drawn)
        self.assertIn("EPG cache", drawn)

    def test_small_terminals_still_show_what_matters(self):
        self.switch_on()
        self.press("up")
        drawn = text(self.picture, 60, 16)
        for shown in ("ORSA Veltro", "▶ Delete broken epg.dat", "[R] Exit", "[G] Save", "EPG cache"):
            self.assertIn(shown, drawn)
