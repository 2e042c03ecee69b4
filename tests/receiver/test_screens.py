"""Screens and the session: life cycle, results, layouts."""

from tests.receiver.tv import TvTest, host


class ScreenTest(TvTest):
    def setUp(self):
        super().setUp()
        self.switch_on()
        self.Screen = host("Screens.Screen").Screen
        self.session = self.receiver._gui.session

    def test_result_comes_at_the_next_turn_when_the_opener_runs_again(self):
        opener = self.session.current_dialog
        seen = []
        self.receiver.guard(lambda: self.session.openWithCallback(
            lambda *result: seen.append((result, self.session.current_dialog)), self.Screen))
        self.receiver.guard(self.session.current_dialog.close, 1, "two")
        self.assertEqual(seen, [])
        self.receiver.loop.settle()
        self.assertEqual(seen, [((1, "two"), opener)])

    def test_a_closed_screen_is_empty(self):
        self.open(self.Screen)
        screen = self.session.current_dialog
        self.run_in_gui(screen.close)
        self.assertEqual(vars(screen), {})
        self.assertEqual(len(screen), 0)

    def test_no_screen_opens_while_another_is_being_built(self):
        Screen = self.Screen

        class Eager(Screen):
            def __init__(self, session):
                Screen.__init__(self, session)
                session.open(Screen)

        self.receiver.guard(self.session.open, Eager)
        self.assertIn("RuntimeError", self.receiver.crash)

    def test_order_of_opening(self):
        calls = []
        Screen, ActionMap = self.Screen, host("Components.ActionMap").ActionMap

        class Map(ActionMap):
            def execBegin(self):
                calls.append("component")

        class Ordered(Screen):
            def __init__(self, session):
                Screen.__init__(self, session)
                self["map"] = Map()
                self.onLayoutFinish.append(self.finished)
                for name in ("onFirstExecBegin", "onExecBegin", "onShown", "onShow", "onExecEnd", "onClose"):
                    getattr(self, name).append(lambda name=name: calls.append(name))

            def finished(self):
                calls.append("onLayoutFinish")

        self.open(Ordered)
        self.assertEqual(calls, ["onLayoutFinish", "onExecBegin", "onFirstExecBegin", "component", "onShown", "onShow"])
        calls.clear()
        self.open(Screen)
        self.assertEqual(calls, ["onExecEnd"])
        calls.clear()
        self.run_in_gui(self.session.current_dialog.close)
        self.assertEqual(calls, ["onExecBegin", "component", "onShown", "onShow"])
        calls.clear()
        self.run_in_gui(self.session.current_dialog.close)
        self.assertEqual(calls, ["onExecEnd", "onClose"])

    def test_close_before_it_runs_waits_until_it_does(self):
        Screen = self.Screen

        class Brief(Screen):
            def __init__(self, session):
                Screen.__init__(self, session)
                self.close("at once")

        self.assertEqual(self.open(Brief), [("at once",)])
        self.assertShows("ORSA Veltro")

    def test_on_layout_finish_runs_methods_and_hands_the_rest_to_exec(self):
        Screen = self.Screen

        class Sources(Screen):
            def __init__(self, session, entry):
                Screen.__init__(self, session)
                self.onLayoutFinish.append("self.setTitle('from source')")
                self.onLayoutFinish.append(entry)

        self.receiver.guard(self.session.open, Sources, "pass")
        self.assertShows("from source")
        self.receiver.guard(self.session.open, Sources, len)
        self.assertIn("TypeError: exec()", self.receiver.crash)

    def test_title_is_a_source_too(self):
        self.open(self.Screen)
        screen = self.session.current_dialog
        screen.title = "Hello"
        self.assertEqual((screen.getTitle(), screen["Title"].text), ("Hello", "Hello"))

    def test_translating_nothing_gives_the_catalogues_header(self):
        import builtins
        self.assertEqual(builtins._("Save"), "Save")
        self.assertIn("Content-Type", builtins._(""))


class LayoutTest(TvTest):
    """What a skin says against what a screen has. The console tells about mismatches; the rest is shown."""

    def setUp(self):
        super().setUp()
        self.switch_on()
        Screen, Label = host("Screens.Screen").Screen, host("Components.Label").Label
        StaticText = host("Components.Sources.StaticText").StaticText

        class Sample(Screen):
            def __init__(self, session):
                Screen.__init__(self, session)
                self["label"] = Label("a label")
                self["text"] = StaticText("a text")

        self.Sample = Sample

    def show(self, elements, attributes='position="100,50" size="400,300"'):
        self.Sample.skin = "<screen %s>%s</screen>" % (attributes, elements)
        self.open(self.Sample)
        return self.top

    def console(self):
        return "\n".join(self.receiver.console.lines)

    def test_boxes_lie_where_the_skin_says(self):
        screen = self.show('<widget name="label" position="10,20" size="200,30" font="Regular;26" halign="right" '
                           'foregroundColor="#00ff0000" backgroundColor="#80000000"/>')
        box, = screen.boxes
        self.assertEqual((screen.x, screen.y, screen.width, screen.height), (100, 50, 400, 300))
        self.assertEqual((box.x, box.y, box.width, box.height), (110, 70, 200, 30))
        self.assertEqual((box.text, box.font_size, box.halign), ("a label", 26, "right"))
        self.assertEqual((box.foreground, box.background), ("#ff0000", "#0000007f"))

    def test_center(self):
        screen = self.show('<widget name="label" position="center,center" size="100,100"/>',
                           'position="center,center" size="400,300"')
        self.assertEqual((screen.x, screen.y), (440, 210))
        self.assertEqual((screen.boxes[0].x, screen.boxes[0].y), (590, 310))

    def test_order_is_by_z_position(self):
        screen = self.show('<widget name="label" position="0,0" size="9,9" zPosition="2"/>'
                           '<widget source="text" render="Label" position="0,0" size="9,9"/>')
        self.assertEqual([box.role for box in screen.boxes], ["text", "label"])

    def test_a_widget_that_the_screen_has_not(self):
        screen = self.show('<widget name="nothing" position="0,0" size="9,9"/>'
                           '<widget name="label" position="0,0" size="9,9"/>')
        self.assertEqual([box.role for box in screen.boxes], ["label"])
        self.assertIn("component 'nothing' was not found", self.console())

    def test_a_source_by_name_draws_nothing(self):
        self.assertEqual(self.show('<widget name="text" position="0,0" size="9,9"/>').boxes, [])

    def test_broken_elements_cost_only_themselves(self):
        screen = self.show('<widget source="text" position="0,0" size="9,9"/>'
                           '<widget name="label" position="0,0" size="9,9" foregroundColor="mauve"/>'
                           '<widget position="0,0" size="9,9"/><widget name="label" position="here" size="9,9"/>'
                           '<widget name="label" position="0,0"/>'
                           '<widget source="text" render="Label" position="0,0" size="9,9"/>')
        self.assertEqual([box.role for box in screen.boxes], ["text"])
        for complaint in ("source text has no render", "unknown color mauve", "neither name nor source"):
            self.assertIn(complaint, self.console())

    def test_hidden_widgets_are_not_drawn(self):
        self.show('<widget name="label" position="0,0" size="9,9"/>')
        self.receiver._gui.session.current_dialog["label"].visible = False
        self.assertEqual(self.top.boxes, [])

    def test_no_layout_at_all_is_an_empty_screen(self):
        self.open(self.Sample)
        self.assertEqual(self.top.boxes, [])
        self.assertIn("No skin to read for screen Sample", self.console())

    def test_a_loaded_skin_goes_before_the_screens_own(self):
        skin = self.etc / "skin.xml"
        skin.write_text('<skin><colors><color name="mine" value="#123456"/></colors><screen name="Sample" title="loaded" '
                        'position="0,0" size="9,9" backgroundColor="mine"/></skin>')
        self.assertTrue(host("skin").loadSkin(str(skin)))
        screen = self.show("")
        self.assertEqual((screen.title, screen.background), ("loaded", "#123456"))

    def test_a_skin_file_that_can_not_be_read(self):
        broken = self.etc / "broken.xml"
        broken.write_text("<skin><screen>")
        self.assertFalse(self.run_in_gui(host("skin").loadSkin, str(broken)))
        self.assertFalse(self.run_in_gui(host("skin").loadSkin, str(self.etc / "none.xml")))
        self.assertIn("broken.xml", self.console())

    def test_skin_names_are_tried_in_order(self):
        self.Sample.skin = "<screen/>"
        sample = self.Sample

        class Named(sample):
            def __init__(self, session):
                sample.__init__(self, session)
                self.skinName = ["NotThere", "MessageBox", "ChoiceBox"]

        self.open(Named)
        self.assertEqual(self.top.name, "MessageBox")

    def test_what_a_full_screen_hides_is_not_in_the_picture(self):
        self.assertEqual([screen.name for screen in self.picture.screens], ["Veltro"])
        self.show("")
        self.assertEqual([screen.name for screen in self.picture.screens], ["Veltro", "Sample"])
