"""The host's own lists, pop-ups and channel list."""

import os
from unittest import mock

from tests.receiver.tv import TvTest, host


class FileListTest(TvTest):
    def setUp(self):
        super().setUp()
        self.switch_on()
        self.root = self.etc.parent / "disk"
        for folder in ("b", "a", "Z", "a/inner"):
            (self.root / folder).mkdir(parents=True, exist_ok=True)
        for name in ("file.txt", "B.dat"):
            (self.root / name).touch()

    def files(self, directory=None, **kwargs):
        return host("Components.FileList").FileList(str(self.root) + "/" if directory is None else directory, **kwargs)

    def rows(self, widget):
        return [row[0] for row in widget.list]

    def test_parent_then_directories_then_files_by_bytes(self):
        root = str(self.root)
        self.assertEqual(self.rows(self.files()), [
            (str(self.root.parent) + "/", True), (root + "/Z/", True), (root + "/a/", True), (root + "/b/", True),
            ("B.dat", False), ("file.txt", False)])

    def test_no_parent_at_the_top(self):
        self.assertNotIn(("/", True), self.rows(self.files("/")))
        self.assertEqual(self.rows(self.files(str(self.root.parent) + "/"))[0][0], str(self.root.parent.parent) + "/")
        self.assertEqual(self.rows(self.files("/tmp/"))[0], ("/", True))

    def test_missing_or_unreadable_directory_shows_the_parent_alone(self):
        self.assertEqual(self.rows(self.files(str(self.root) + "/none/")), [(str(self.root) + "/", True)])

    def test_no_directory_is_an_empty_list(self):
        widget = self.files("")
        self.assertEqual(self.rows(widget), [])
        self.assertIsNone(widget.getSelection())
        self.assertFalse(widget.canDescent())

    def test_without_the_last_slash_entries_are_misread_as_on_boxes(self):
        self.assertNotIn((str(self.root) + "/a/", True), self.rows(self.files(str(self.root))))
        self.assertIn(("a", False), self.rows(self.files(str(self.root))))

    def test_going_down_and_up_again(self):
        widget = self.files()
        widget.down()
        widget.down()
        self.assertEqual(widget.getSelection(), (str(self.root) + "/a/", True))
        widget.descent()
        self.assertEqual(self.rows(widget), [(str(self.root) + "/", True), (str(self.root) + "/a/inner/", True)])
        self.assertEqual(widget.getSelection(), (str(self.root) + "/", True))
        widget.descent()
        self.assertEqual(widget.getSelection(), (str(self.root) + "/a/", True))

    def test_files_are_not_entered(self):
        widget = self.files()
        for _ in range(9):
            widget.down()
        self.assertEqual(widget.getSelection(), ("file.txt", False))
        self.assertFalse(widget.canDescent())
        widget.descent()
        self.assertEqual(widget.getCurrentDirectory(), str(self.root) + "/")

    def test_no_wrap_around(self):
        widget = self.files()
        widget.up()
        self.assertEqual(widget.getCurrentIndex(), 0)

    def test_filters(self):
        self.assertTrue(all(folder for _, folder in self.rows(self.files(showFiles=False))))

    def test_names_that_are_no_utf8(self):
        name = os.fsdecode(b"caf\xe9")
        (self.root / name).mkdir()
        self.assertIn((str(self.root) + "/" + name + "/", True), self.rows(self.files()))


class ChoiceBoxTest(TvTest):
    CHOICES = [("one", 1), ("two", 2), ("zwei", 2), ("three", 3)]

    def setUp(self):
        super().setUp()
        self.switch_on()

    def choose(self, presses, **kwargs):
        results = self.open(host("Screens.ChoiceBox").ChoiceBox, title="Choose", list=self.CHOICES, **kwargs)
        self.press(presses)
        return results

    def test_picture(self):
        self.choose("", selection=1, keys=["1", "2"])
        self.assertEqual(self.text("text"), "Choose")
        self.assertEqual([(row.label, row.shortcut) for row in self.list.rows],
                         [("one", "1"), ("two", "2"), ("zwei", ""), ("three", "")])
        self.assertEqual(self.selected.label, "two")

    def test_ok_and_exit(self):
        self.assertEqual(self.choose("down ok"), [(("two", 2),)])
        self.assertEqual(self.choose("exit"), [(None,)])
        self.assertEqual(self.choose("menu"), [(None,)])

    def test_keys(self):
        self.assertEqual(self.choose("4"), [(("three", 3),)])
        self.assertEqual(self.choose("blue", keys=["", "", "", "blue"]), [(("three", 3),)])
        self.assertEqual(self.choose("9", keys=list("123456789")), [])

    def test_a_long_list_pages_and_jumps(self):
        self.CHOICES = [("%d" % number, number) for number in range(100)]
        self.choose("")
        for keys, row in ("channeldown", "10"), ("channeldown", "20"), ("channelup", "10"), ("next", "99"), ("previous", "0"):
            self.press(keys)
            self.assertEqual(self.selected.label, row)

    def test_the_list_wraps(self):
        self.choose("up")
        self.assertEqual(self.selected.label, "three")
        self.press("down")
        self.assertEqual(self.selected.label, "one")

    def test_empty_list(self):
        results = self.open(host("Screens.ChoiceBox").ChoiceBox, list=[])
        self.assertIsNone(self.selected)
        self.press("down ok")
        self.assertEqual(results, [(None,)])

    def test_the_box_is_as_high_as_its_list(self):
        self.choose("")
        high = self.top.height
        self.press("exit")
        self.open(host("Screens.ChoiceBox").ChoiceBox, list=[("x", n) for n in range(40)])
        self.assertLess(high, self.top.height)
        self.assertTrue(self.list.scrollbar)
        self.assertLess(len(self.list.rows), 40)


class MessageBoxTest(TvTest):
    def setUp(self):
        super().setUp()
        self.switch_on()
        self.MessageBox = host("Screens.MessageBox").MessageBox

    def ask(self, keys, *arguments, **kwargs):
        results = self.open(self.MessageBox, "Sure?", *arguments, **kwargs)
        self.press(keys)
        return results

    def test_question(self):
        self.assertEqual(self.ask("ok"), [(True,)])
        self.assertEqual(self.ask("down ok"), [(False,)])
        self.assertEqual(self.ask("exit"), [(False,)])
        self.assertEqual(self.ask("ok", default=False), [(False,)])

    def test_message(self):
        self.assertEqual(self.ask("ok", self.MessageBox.TYPE_INFO), [(True,)])
        self.assertEqual(self.ask("exit", self.MessageBox.TYPE_ERROR), [(False,)])

    def test_picture(self):
        self.ask("")
        self.assertShows("Question")
        self.assertEqual(self.text("text"), "Sure?")
        self.assertEqual(self.labels, ["yes", "no"])

    def test_timeout_gives_the_selected_answer(self):
        self.assertEqual(self.ask("wait:4s", timeout=5), [])
        self.press("wait:2s")
        self.assertShows("ORSA Veltro")
        self.assertEqual(self.ask("wait:6s", timeout=5, default=False), [(False,)])


class NotificationTest(TvTest):
    def test_waits_until_the_main_menu_can_show_it(self):
        self.switch_on()
        MessageBox = host("Screens.MessageBox").MessageBox
        self.run_in_gui(lambda: host("Tools.Notifications").AddPopup("News", MessageBox.TYPE_INFO, 5))
        self.assertShows("ORSA Veltro")
        self.press("exit")
        self.assertShows("Information")
        self.press("ok")
        self.assertShows("Main menu")


class ChannelListTest(TvTest):
    def setUp(self):
        super().setUp()
        self.switch_on()
        self.results = self.open(host("Screens.ChannelSelection").SimpleChannelSelection, "Pick")
        self.screen = self.receiver._gui.session.current_dialog
        # No layout of its own; the picker's will do.
        self.names = lambda: [host("ServiceReference").ServiceReference(ref).getServiceName()
                              for ref in self.screen.servicelist.l.rows]

    def test_starts_with_the_tv_bouquets(self):
        self.assertShows("Pick (TV)")
        self.assertEqual(self.names()[0], "Favourites (TV)")

    def test_into_a_bouquet_and_back(self):
        self.press("down ok")
        self.assertShows("Pick (TV) - Sport, films and more")
        self.press("blue")
        self.assertShows("Pick (TV)")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), 1)

    def test_ok_on_a_service_returns_it(self):
        self.press("ok ok")
        self.assertEqual(self.results[0][0].toString(), "1:0:19:101:401:FE:640000:0:0:0:")

    def test_exit_returns_nothing(self):
        self.press("exit")
        self.assertEqual(self.results, [(None,)])

    def test_radio_and_tv(self):
        self.press("radio")
        self.assertShows("Pick (Radio)")
        self.press("tv")
        self.assertShows("Pick (TV)")

    def test_all_services(self):
        self.run_in_gui(self.screen.showAllServices)
        everything = self.names()
        self.assertEqual(everything, sorted(everything, key=lambda name: (not name, name.casefold())))
        self.assertGreater(len(everything), 20)

    def test_next_and_previous_bouquet(self):
        self.press("ok channelup")
        self.assertShows("Pick (TV) - Sport, films and more")
        self.press("channeldown*2")
        self.assertNotIn("Favourites", self.top.title)
        self.press("channelup")
        self.assertShows("Pick (TV) - Favourites (TV)")

    def test_markers(self):
        self.press("down*2 ok")
        below = self.names().index("From the aerial") + 1
        self.press("next")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), below)
        self.press("up down")  # over the marker and back
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), below)
        self.press("next previous")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), below)
        self.press("previous*2")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), 0)
        self.press("next*4")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), len(self.names()) - 1)

    def current(self):
        return self.names()[self.screen.servicelist.getCurrentIndex()]

    def test_a_number_goes_to_that_row_of_a_bouquet(self):
        self.press("3")
        self.assertEqual(self.current(), "Regional")
        self.press("ok 3")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), 2)
        self.press("wait:2s 1 2")  # what follows within a second is the same number; markers have none
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), 12)
        self.press("wait:2s 0 wait:2s 9 9")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), len(self.names()) - 1)

    def test_digits_are_letters_in_the_lists_by_name(self):
        self.run_in_gui(self.screen.showAllServices)
        self.press("7")
        self.assertEqual(self.current()[0], "P")
        self.press("7")
        self.assertEqual(self.current()[0], "Q")
        self.press("wait:2s 7")
        self.assertEqual(self.current()[0], "P")

    def test_typed_letters_search_by_name(self):
        self.run_in_gui(self.screen.showAllServices)
        names = self.names()
        for text in ("pinecone sport 2", "q", "N"):
            for char in text:
                self.receiver.type(char)
            self.assertEqual(self.current(), next(name for name in names if name.casefold().startswith(text.casefold())))
            self.press("wait:2s")
        first = self.current()
        self.receiver.type("n")
        self.assertEqual(self.current(), names[names.index(first) + 1])
        self.receiver.type("z")  # nothing begins with nz: the cursor stays
        self.assertEqual(self.current(), names[names.index(first) + 1])
        with mock.patch.object(self.receiver, "press") as press:
            self.receiver.type("r")
            press.assert_not_called()
        self.press("exit")
        with mock.patch.object(self.receiver, "press") as press:
            self.receiver.type("r")  # no list searches any more: it is the remote's key
            press.assert_called_once_with("radio")

    def test_channel_keys_page_where_there_is_no_next_bouquet(self):
        self.run_in_gui(self.screen.showAllServices)
        page = self.screen.servicelist.instance.page
        self.press("channeldown")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), page)
        self.press("channelup")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), 0)
        self.press("next")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), len(self.names()) - 1)
        self.press("previous")
        self.assertEqual(self.screen.servicelist.getCurrentIndex(), 0)

    def test_nothing_selected_is_none(self):
        self.run_in_gui(lambda: self.screen.servicelist.l.setList([]))
        self.assertIsNone(self.screen.getCurrentSelection())


class ConfigListTest(TvTest):
    """A settings screen of the host's own making."""

    def setUp(self):
        super().setUp()
        self.switch_on()
        config = host("Components.config")
        Screen, ConfigListScreen = host("Screens.Screen").Screen, host("Components.ConfigList").ConfigListScreen
        self.changes = changes = []
        self.flag, self.number = config.ConfigYesNo(), config.ConfigInteger(default=5, limits=(0, 999))
        self.choice = config.ConfigSelection([("a", "Anna"), ("b", "Bert")])
        rows = [config.getConfigListEntry("Heading"), config.getConfigListEntry("Flag", self.flag, "Yes or no."),
                config.getConfigListEntry("Number", self.number), config.getConfigListEntry("Choice", self.choice)]

        class Settings(Screen, ConfigListScreen):
            skin = """<screen position="0,0" size="1280,720"><widget name="config" position="0,0" size="999,300"/>
                <widget source="description" render="Label" position="0,400" size="999,30"/></screen>"""

            def __init__(self, session):
                Screen.__init__(self, session)
                ConfigListScreen.__init__(self, rows, session=session, on_change=lambda: changes.append(1))
                self["keys"] = host("Components.ActionMap").ActionMap(["SetupActions"], {"cancel": self.keyCancel}, -1)
                self.setTitle("Settings")

        self.results = self.open(Settings)

    def test_rows(self):
        self.assertEqual([(row.label, row.value, row.switch, row.kind) for row in self.list.rows],
                         [("Heading", "", None, "heading"), ("Flag", "no", False, "setting"),
                          ("Number", "5", None, "setting"), ("Choice", "Anna", None, "setting")])

    def test_left_and_right_change_and_tell(self):
        self.go_to("Number")
        self.press("right")
        self.assertEqual(self.row("Number").value, "6")
        self.go_to("Choice")
        self.press("right")
        self.assertEqual(self.row("Choice").value, "Bert")
        self.press("left")
        self.assertEqual(self.choice.value, "a")
        self.assertEqual(len(self.changes), 3)

    def test_digits_only_tell_of_a_real_change(self):
        self.go_to("Number")
        self.press("4 2")
        self.assertEqual(self.row("Number").value, "42")
        self.assertEqual(self.row("Number").marked, ())
        self.press("wait:2s")
        self.assertEqual(self.row("Number").marked, (0, 1), "the next digit begins a new number")
        changes = len(self.changes)
        self.go_to("Choice")
        self.press("7")
        self.assertEqual(len(self.changes), changes)

    def test_a_new_number_after_the_row_was_left(self):
        self.go_to("Number")
        self.press("4 down up 2")
        self.assertEqual(self.number.value, 2)

    def test_a_new_number_after_the_pause(self):
        self.go_to("Number")
        self.press("4 wait:2s 2 wait:2s")
        self.assertEqual(self.number.value, 2)

    def test_description_follows_the_cursor(self):
        self.go_to("Flag")
        self.assertEqual(self.text("description"), "Yes or no.")
        self.press("down")
        self.assertEqual(self.text("description"), "")

    def test_headings_are_passed_over(self):
        self.press("down*3")
        self.assertNotEqual(self.selected.label, "Heading")

    def test_a_heading_at_the_top_comes_back_into_sight(self):
        config = self.receiver._gui.session.current_dialog["config"]
        self.run_in_gui(config.setList, [("Heading",)] + [("%d" % number, self.flag) for number in range(100)])
        self.press("previous up")
        self.assertEqual(self.list.selected, 100)
        self.press("down")
        self.assertEqual((self.list.first, self.selected.label), (0, "0"))

    def test_leaving_unchanged(self):
        self.press("exit")
        self.assertEqual(self.results, [()])

    def test_leaving_after_a_change_asks(self):
        self.go_to("Flag")
        self.press("right exit")
        self.assertEqual(self.text("text"), "Really close without saving settings?")
        self.assertEqual(self.selected.label, "no")
        self.press("ok")
        self.assertShows("Settings")
        self.assertTrue(self.flag.value)
        self.press("exit up ok")
        self.assertEqual(self.results, [()])
        self.assertFalse(self.flag.value)

    def test_get_selection_choices(self):
        self.choice.value = "b"
        self.assertEqual(host("Components.ConfigList").getSelectionChoices(self.choice), ([("Anna", "a"), ("Bert", "b")], 1))
