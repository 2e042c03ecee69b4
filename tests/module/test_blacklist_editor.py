"""plugin/src/blacklist.cpp: the blacklist editor apart from its file."""

from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, PYTHON2, host, press, shape, shown

CONTEXTS = ["ColorActions", "SetupActions"]
ACTIONS = ["blue", "cancel", "green", "red", "yellow"]
ONE, TWO, THREE = "1:0:1:1:0:0:0:0:0:0:", "1:0:1:2:0:0:0:0:0:0:", "4097:0:1:3:0:0:0:0:0:0:http%3a//x"


class EditorTestCase(HostTestCase):
    def rows(self, screen):
        return shape(screen.servicelist)

    def shown_rows(self, screen):
        return shape(dict.__getitem__(screen, "ServiceList")._shown)

    def row(self, name, text):
        return (name, "ConfigNothing", 0, text)

    def references(self, *services):
        """eServiceReferences for (name, text) pairs."""
        return [host.reference(text, name) for name, text in services]


class Construction(EditorTestCase):
    def open(self):
        return self.Veltro.Edit_DVB_EPG_Blacklist(host.session, PLUGIN_PATH)

    def test_every_step_in_order(self):
        path = self.etc()
        self.open()
        self.assertEqual(self.steps, [
            ("Screen.__init__", "Session"),
            ("skin_path =", PLUGIN_PATH),
            ("eEnv.resolve", "${sysconfdir}/enigma2/blacklist_dvb_epg"), ("filename =", path),
            ("start_str =", "#SERVICE "),
            ("StaticText", "[Cancel]"), ('["key_red"] =', "StaticText"),
            ("StaticText", "[Save]"), ('["key_green"] =', "StaticText"),
            ("StaticText", "[Delete]"), ('["key_yellow"] =', "StaticText"),
            ("StaticText", "[Add Service]"), ('["key_blue"] =', "StaticText"),
            ("ActionMap", CONTEXTS, ACTIONS, -1), ('["actions"] =', "ActionMap"),
            ("servicelist =", []),
            ("ConfigList", []), ("ConfigList.list =", []), ("ConfigList.l.setList", []),
            ('["ServiceList"] =', "ConfigList"),
            ("onShown.append", "setWindowTitle"),
            ("path.exists", path),
        ])

    def test_the_file_is_loaded_last(self):
        self.etc(b"#SERVICE " + ONE.encode("ascii") + b"\n")
        screen = self.open()
        names = host.recorder.names()
        self.assertGreater(names.index("path.exists"), names.index("onShown.append"))
        self.assertEqual(names[-1], "ServiceList.l.setList")
        self.assertEqual(self.rows(screen), [self.row("N/A", ONE)])

    def test_the_widget_shares_the_list(self):
        screen = self.open()
        for name in ("ConfigList", "ConfigList.list =", "ConfigList.l.setList"):
            self.assertIs(host.recorder.named(name)[0][0], screen.servicelist)
        self.assertIs(dict.__getitem__(screen, "ServiceList")._rows, screen.servicelist)

    def test_key_map(self):
        screen = self.open()
        keys = dict.__getitem__(screen, "actions")
        self.assertEqual(list(keys._contexts), CONTEXTS)
        self.assertEqual(keys._priority, (-1,))
        self.assertEqual(keys._actions, {
            "green": screen.greenPressed, "red": screen.redPressed, "cancel": screen.cancel,
            "yellow": screen.yellowPressed, "blue": screen.bluePressed})

    def test_nothing_else(self):
        screen = self.open()
        self.assertEqual(sorted(screen), ["ServiceList", "actions", "key_blue", "key_green", "key_red", "key_yellow"])
        self.assertEqual(screen.onShown, [screen.setWindowTitle])
        self.assertEqual(screen.skinName, "Edit_DVB_EPG_Blacklist")
        self.assertNotIn("setTitle", host.recorder.names())

    def test_arguments(self):
        for arguments in ((), (host.session,), (host.session, "", 1)):
            self.error_of(TypeError, self.Veltro.Edit_DVB_EPG_Blacklist, *arguments)

    def test_screens_do_not_share_their_lists(self):
        self.assertIsNot(self.open().servicelist, self.open().servicelist)


class Keys(EditorTestCase):
    def test_the_title_is_set_each_time_the_screen_is_shown(self):
        screen = self.editor()
        for _ in range(2):
            shown(screen)
        self.assertCalls(*[("setTitle", "[Edit blacklist for DVB EPG]")] * 2)
        self.assertIsNone(screen.setWindowTitle())

    def test_red_and_exit_close_without_saving(self):
        for key in ("red", "cancel"):
            path = self.etc(b"before")
            screen = self.editor(("One", ONE))
            self.assertIsNone(press(screen, key))
            self.assertCalls(("close",))
            with open(path, "rb") as file:
                self.assertEqual(file.read(), b"before")

    def test_green_saves_and_closes(self):
        path = self.etc()
        screen = self.editor(("One", ONE))
        self.assertIsNone(press(screen, "green"))
        names = host.recorder.names()
        self.assertEqual((names[0], names[-1], names.count("close")), ("open", "close", 1))
        self.assertEqual(host.recorder.calls[-1], ("close",))
        with open(path, "rb") as file:
            self.assertEqual(file.read(), ("#SERVICE %s\n" % ONE).encode("ascii"))

    def test_green_stays_open_when_saving_fails(self):
        screen = self.editor(("One", ONE))
        error = Boom()
        host.recorder.fail("open", error)
        self.raised_by(error, screen.greenPressed)
        self.assertNotIn("close", host.recorder.names())

    def test_blue_opens_the_picker(self):
        screen = self.editor()
        self.assertIsNone(press(screen, "blue"))
        self.assertCalls(("session.openWithCallback", "finishedChannelSelection", "DVB_EPG_blacklist_ChannelSelection",
                          PLUGIN_PATH))
        callback, opened, _ = host.recorder.named("session.openWithCallback")[0]
        self.assertEqual(callback, screen.finishedChannelSelection)
        self.assertIs(opened, self.Veltro.DVB_EPG_blacklist_ChannelSelection)

    def test_opening_the_next_time_shows_the_files_content(self):
        self.etc(("#SERVICE %s\n" % ONE).encode("ascii"))
        host.service_names[ONE] = "One"
        screen = self.editor()
        press(screen, "yellow")
        press(screen, "red")
        self.assertEqual(self.rows(self.editor()), [self.row("One", ONE)])


class Delete(EditorTestCase):
    def three(self, selected):
        screen = self.editor(("One", ONE), ("Two", TWO), ("Three", THREE))
        dict.__getitem__(screen, "ServiceList")._index = selected
        return screen

    def test_removes_the_selected_row(self):
        for selected, left in ((0, ["Two", "Three"]), (1, ["One", "Three"]), (2, ["One", "Two"])):
            screen = self.three(selected)
            rows = screen.servicelist
            self.assertIsNone(press(screen, "yellow"))
            self.assertIs(screen.servicelist, rows)
            self.assertEqual([row[0] for row in rows], left)
            self.assertEqual([row[0] for row in self.shown_rows(screen)], left)
            self.assertEqual(host.recorder.names(), ["ServiceList.getCurrent", "ServiceList.l.setList"])
            self.assertIs(host.recorder.calls[-1][1], rows)

    def test_an_empty_list_is_only_redrawn(self):
        screen = self.editor()
        self.assertIsNone(screen.delete())
        self.assertCalls(("ServiceList.getCurrent",), ("ServiceList.l.setList", []))

    def test_the_first_equal_row_goes(self):
        screen = self.three(2)
        screen.servicelist[:] = [screen.servicelist[0]] * 3
        screen.servicelist.insert(0, ("other", None, 0, ""))
        dict.__getitem__(screen, "ServiceList")._index = 3
        row = screen.servicelist[3]
        screen.servicelist.append(tuple([row[0], row[1], 0, row[3]]))
        screen.delete()
        self.assertEqual([row[0] for row in screen.servicelist], ["other", "One", "One", "One"])

    def test_rows_are_compared_as_wholes(self):
        screen = self.three(1)
        twin = tuple(list(screen.servicelist[1]))
        screen.servicelist.insert(0, twin[:3] + ("another reference",))
        dict.__getitem__(screen, "ServiceList")._index = 2
        screen.delete()
        self.assertEqual([row[3] for row in screen.servicelist], ["another reference", ONE, THREE])

    def test_a_row_of_two_fields_or_less_stays(self):
        for row in ((), ("a",), ("a", None), []):
            screen = self.three(0)
            self.replace(self.Veltro.ConfigList, "getCurrent", lambda self: row)
            screen.servicelist.insert(0, row)
            screen.delete()
            self.assertEqual(len(screen.servicelist), 4)
            self.assertEqual(host.recorder.names(), ["ServiceList.l.setList"])

    def test_three_fields_suffice(self):
        screen = self.three(0)
        self.replace(self.Veltro.ConfigList, "getCurrent", lambda self: ("a", None, 0))
        screen.servicelist.append(("a", None, 0))
        screen.delete()
        self.assertEqual(len(screen.servicelist), 3)

    def test_a_deleted_name_can_be_added_again(self):
        screen = self.three(0)
        screen.delete()
        screen.finishedChannelSelection(self.references(("One", ONE)))
        self.assertEqual([row[0] for row in screen.servicelist], ["Two", "Three", "One"])


class Adding(EditorTestCase):
    def add(self, *services):
        screen = self.editor()
        screen.finishedChannelSelection(self.references(*services))
        return screen

    def test_a_row(self):
        screen = self.add(("One", ONE))
        self.assertEqual(self.rows(screen), [self.row("One", ONE)])
        row = screen.servicelist[0]
        self.assertIs(type(row), tuple, "hosts draw only rows that are tuples")
        self.assertIsInstance(row[1], self.Veltro.ConfigNothing)
        self.assertIs(type(row[2]), int)

    def test_the_calls_for_one_service(self):
        screen = self.editor()
        self.assertIsNone(screen.finishedChannelSelection(self.references(("One", ONE))))
        self.assertEqual(self.calls, [
            ("ServiceReference", "eServiceReference"), ("getServiceName", ONE), ("toString", ONE), ("ConfigNothing",),
            ("ServiceList.l.setList", [self.row("One", ONE)])])
        self.assertIs(host.recorder.calls[-1][1], screen.servicelist)

    def test_redrawn_once_whatever_was_added(self):
        for services in ([("One", ONE)], [("One", ONE), ("Two", TWO)], [("Radio", "2:0:2:1:")], [("One", ONE)] * 3):
            screen = self.add(*services)
            self.assertEqual(host.recorder.names().count("ServiceList.l.setList"), 1)
            self.assertEqual(host.recorder.names()[-1], "ServiceList.l.setList")
            self.assertEqual(self.shown_rows(screen), self.rows(screen))

    def test_no_argument_no_value_and_an_empty_list_do_nothing(self):
        screen = self.editor()
        for arguments in ((), (None,), ([],), ((),), (0,), (False,), ("",)):
            self.assertIsNone(screen.finishedChannelSelection(*arguments))
        self.assertEqual(host.recorder.events, [])

    def test_further_arguments_are_ignored(self):
        screen = self.editor()
        screen.finishedChannelSelection(self.references(("One", ONE)), self.references(("Two", TWO)), object())
        self.assertEqual(self.rows(screen), [self.row("One", ONE)])

    def test_a_listed_name_is_not_added_again(self):
        screen = self.editor(("One", ONE))
        screen.finishedChannelSelection(self.references(("One", TWO)))
        self.assertEqual(self.rows(screen), [self.row("One", ONE)])
        self.assertNotIn("toString", host.recorder.names())

    def test_of_two_equal_names_in_one_call_the_first_is_added(self):
        self.assertEqual(self.rows(self.add(("One", ONE), ("One", TWO), ("Two", THREE))),
                         [self.row("One", ONE), self.row("Two", THREE)])

    def test_an_unknown_name_is_shown_as_not_available(self):
        self.assertEqual(self.rows(self.add(("", ONE), ("", TWO), ("N/A", THREE))), [self.row("N/A", ONE)])

    def test_a_skipped_type_does_not_block_its_name(self):
        self.assertEqual(self.rows(self.add(("One", "2:0:2:1:"), ("One", ONE))), [self.row("One", ONE)])

    def test_types(self):
        for text in ("1:0:1:", "4097:0:", "1", "4097", "1:", "4097::::"):
            self.assertEqual(len(self.add(("x", text)).servicelist), 1, text)
        for text in ("2:0:1:", "10:0:", "01:0:", "1 :0:", " 1:0:", "-1:0:", "4097 :0", "40970:", "0x1:", "", ":", "a",
                     "1;0", "1\n:0", "+1:", "1.0:"):
            self.assertEqual(self.add(("x", text)).servicelist, [], text)

    def test_new_rows_go_to_the_end_in_order(self):
        screen = self.editor(("Two", TWO))
        screen.finishedChannelSelection(self.references(("Three", THREE), ("One", ONE)))
        self.assertEqual([row[0] for row in screen.servicelist], ["Two", "Three", "One"])

    def test_each_row_has_an_element_of_its_own(self):
        screen = self.add(("One", ONE), ("Two", TWO))
        self.assertIsNot(screen.servicelist[0][1], screen.servicelist[1][1])

    def test_reference_strings_serve_as_well(self):
        host.service_names[ONE] = "One"
        screen = self.editor()
        screen.finishedChannelSelection([ONE])
        self.assertEqual(self.rows(screen), [self.row("One", ONE)])
        self.assertEqual(host.recorder.calls[0], ("ServiceReference", ONE))

    def test_any_iterable_serves(self):
        references = self.references(("One", ONE), ("Two", TWO))
        for refs in (tuple(references), iter(references), dict((reference, 1) for reference in references[:1])):
            screen = self.editor()
            screen.finishedChannelSelection(refs)
            self.assertTrue(screen.servicelist)

    def test_the_stored_text_is_the_hosts_own(self):
        text = ONE + "M\xc3\xbcnchen" if PYTHON2 else ONE + u"M\xfcnchen\udcff"
        screen = self.add(("x", text))
        self.assertIs(screen.servicelist[0][3], text)

    def test_the_name_is_the_hosts_own(self):
        name = "M\xc3\xbcnchen" if PYTHON2 else u"M\xfcnchen"
        self.assertIs(self.add((name, ONE)).servicelist[0][0], name)

    def test_the_text_is_taken_from_the_service_not_from_the_argument(self):
        class Canonical(object):
            def __init__(self, reference):
                self.ref = self

            def getServiceName(self):
                return "name"

            def toString(self):
                return "4097:canonical"
        screen = self.editor()
        self.replace(self.Veltro, "ServiceReference", Canonical)
        screen.finishedChannelSelection(["whatever"])
        self.assertEqual(self.rows(screen), [self.row("name", "4097:canonical")])

    def test_an_error_keeps_what_was_added_and_does_not_redraw(self):
        for event in ("ServiceReference", "getServiceName", "toString", "ConfigNothing"):
            screen = self.editor()
            references = self.references(("One", ONE), ("Two", TWO), ("Three", THREE))
            error = Boom()
            host.recorder.fail(event, error, nth=2)
            self.raised_by(error, screen.finishedChannelSelection, references)
            self.assertEqual(self.rows(screen), [self.row("One", ONE)])
            self.assertNotIn("ServiceList.l.setList", host.recorder.names())

    def test_something_that_can_not_be_iterated_is_an_error(self):
        self.error_of(TypeError, self.editor().finishedChannelSelection, 5)

    def test_keywords_are_refused(self):
        self.error_of(TypeError, self.editor().finishedChannelSelection, refs=[ONE])

    def test_a_list_that_was_replaced_is_used(self):
        screen = self.editor()
        screen.servicelist = [("One", None, 0, "")]
        screen.finishedChannelSelection(self.references(("One", ONE), ("Two", TWO)))
        self.assertEqual([row[0] for row in screen.servicelist], ["One", "Two"])
