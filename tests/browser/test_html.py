"""The HTML of pictures, without a browser."""

import html.parser
import unittest

from receiver import picture
from receiver.web import html as tv
from tests.receiver.tv import TvTest, host

NASTY = "<script>\"'&\x00\x1b[31m\ud800</script>"


class Outline(html.parser.HTMLParser):
    """What a fragment is made of: every tag with its attributes; `text` is all that is between them."""

    def __init__(self, fragment):
        super().__init__()
        self.tags, self.text, self.open = [], "", []
        self.feed(fragment)
        self.close()
        assert not self.open, "not closed: %r" % self.open

    def handle_starttag(self, tag, attributes):
        self.tags.append((tag, dict(attributes)))
        self.open.append(tag)

    def handle_endtag(self, tag):
        assert self.open.pop() == tag, "crossed: %s" % tag

    def handle_data(self, data):
        self.text += data


def screen(*boxes, **changes):
    values = dict(name="Test", title="Title", x=0, y=0, width=1280, height=720, background="#000000", boxes=list(boxes))
    return picture.ScreenView(**{**values, **changes})


class EscapeTest(unittest.TestCase):
    def test_every_text_of_a_picture(self):
        row = picture.Row(NASTY, NASTY, kind="setting", marked=(0, 3), selected=True)
        choice = picture.Row(NASTY, kind="choice", shortcut=NASTY)
        listbox = picture.Box(NASTY, 0, 0, 100, 60, rows=[row, choice], total=2)
        label = picture.Box(NASTY, 0, 0, 100, 20, text=NASTY)
        fragment = tv.fragment(picture.Picture([screen(label, listbox, name=NASTY, title=NASTY)], [(NASTY, NASTY)]), [NASTY])
        outline = Outline(fragment)
        self.assertNotIn("script", [tag for tag, _ in outline.tags])
        known = {"class", "style", "id", "role", "href", "tabindex", "data-name", "data-role", "data-key"}
        for tag, attributes in outline.tags:
            self.assertFalse([name for name in attributes if name not in known and not name.startswith("aria-")], (tag, attributes))
        for char in "\x00\x1b\ud800":
            self.assertNotIn(char, fragment)
        self.assertGreaterEqual(outline.text.count("<script>\"'&"), 6)
        fragment.encode("utf-8")

    def test_every_text_of_a_document(self):
        self.assertIn("<h1>", tv.document("<h1>"))
        self.assertIn('<base href="&#34;">', tv.document("", base='"'))
        self.assertNotIn("<script", tv.document("", base="file:///"))


class DrawingTest(unittest.TestCase):
    def list(self, **values):
        box = picture.Box("list", 64, 72, 640, 300, **{"rows": [], **values})
        return Outline(tv.fragment(picture.Picture([screen(box)], [])))

    def test_lengths_are_hundredths_of_the_width(self):
        box = picture.Box("a", 640, 360, 128, 64, text="x", font_size=32)
        fragment = tv.fragment(picture.Picture([screen(box)], []))
        self.assertIn("left:50cqw;top:28.125cqw;width:10cqw;height:5cqw;font-size:2.5cqw", fragment)
        large = tv.fragment(picture.Picture([screen(box)], [], 1920, 1080))
        self.assertIn("left:33.3333cqw;top:18.75cqw", large)

    def test_skins_may_ask_for_anything(self):
        box = picture.Box("a", 0, 0, 128, 64, text="x", halign="block", valign="nowhere")
        self.assertIn("justify-content:flex-start;align-items:flex-start", tv.fragment(picture.Picture([screen(box)], [])))

    def test_a_window_holds_its_boxes(self):
        box = picture.Box("a", 300, 200, 100, 50, text="x")
        fragment = tv.fragment(picture.Picture([screen(box, x=260, y=160, width=760, height=400)], []))
        self.assertIn("left:3.125cqw;top:3.125cqw", fragment)
        self.assertIn('class="screen window"', fragment)

    def test_options(self):
        rows = [picture.Row("a"), picture.Row("b", "yes", "setting", True, selected=True)]
        outline = self.list(rows=rows, first=40, total=100, selected=41)
        options = [attributes for _, attributes in outline.tags if attributes.get("role") == "option"]
        self.assertEqual([option["aria-selected"] for option in options], ["false", "true"])
        self.assertEqual([option["aria-posinset"] for option in options], ["41", "42"])
        box = next(attributes for _, attributes in outline.tags if attributes.get("role") == "listbox")
        self.assertEqual(box["aria-activedescendant"], options[1]["id"])

    def test_an_empty_list(self):
        box = next(attributes for _, attributes in self.list().tags if attributes.get("role") == "listbox")
        self.assertEqual(box["aria-activedescendant"], "")

    def thumb(self, **values):
        rows = [picture.Row(str(number)) for number in range(10)]
        outline = self.list(rows=rows, **values)
        styles = [attributes["style"] for _, attributes in outline.tags if attributes.get("style", "").startswith("top:")]
        return [float(part.split(":")[1].rstrip("%")) for part in styles[0].split(";")] if styles else None

    def test_the_scroll_bar(self):
        self.assertIsNone(self.thumb(total=10, scrollbar=True))
        self.assertIsNone(self.thumb(total=100, scrollbar=False))
        self.assertEqual(self.thumb(total=100, first=0, scrollbar=True), [0, 10])
        self.assertEqual(self.thumb(total=100, first=90, scrollbar=True), [90, 10])
        self.assertEqual(self.thumb(total=5000, first=4990, scrollbar=True), [94, 6])

    def test_switched_off(self):
        self.assertIn("switched off", tv.fragment(picture.Picture([], [])))

    def test_the_console_keeps_its_last_lines(self):
        outline = Outline(tv.fragment(picture.Picture([], []), ["line %d." % number for number in range(1000)]))
        self.assertIn("line 999.", outline.text)
        self.assertIn("line 800.", outline.text)
        self.assertNotIn("line 799.", outline.text)


class ScreensTest(TvTest):
    """Real screens of the receiver."""

    def outline(self):
        return Outline(tv.fragment(self.picture, self.receiver.console.lines))

    def test_the_crash_screen(self):
        self.switch_on()
        self.receiver.guard(lambda: 1 / 0)
        outline = self.outline()
        # On the picture, on the console, and beside the console's name, where its last line is.
        self.assertEqual(outline.text.count("ZeroDivisionError"), 3)
        self.assertIn("mono", next(attributes["class"] for _, attributes in outline.tags if attributes.get("data-role") == "trace"))

    def test_a_question_over_another_screen(self):
        self.switch_on()
        self.open(host("Screens.MessageBox").MessageBox, "Really?")
        screens = [attributes for tag, attributes in self.outline().tags if "screen" in attributes.get("class", "").split()]
        self.assertEqual([attributes.get("aria-hidden") for attributes in screens], ["true", None])
        self.assertEqual(screens[1]["aria-label"], "Question")


if __name__ == "__main__":
    unittest.main()
