"""Errors that leave the module's operations: a trace in the log and a message, and the GUI goes on."""

import types
import weakref

from tests.entry.case import BoxTest, press
from tests.entry.fake_screens import MessageBox, Timer


class GuardTest(BoxTest):
    def setUp(self):
        BoxTest.setUp(self)
        self.load()
        self.guard = self.box.part("bridge.guard")
        self.session = self.box.session
        self.screen = self.session.open(self.module.Veltro, "/plugin")

    def break_action(self, error=ValueError("no such luck")):
        def failing(action):
            raise error
        self.module.doEPGAction = failing
        self.screen["config"].l.cursor = 19

    def press(self, action):
        return press(self.screen, "shortcuts", action)

    def test_a_handler(self):
        self.break_action()
        self.assertEqual(self.press("ok"), 1)
        message = self.session.current_dialog
        self.assertIsInstance(message, MessageBox)
        self.assertEqual((message.type, message.text),
                         (MessageBox.TYPE_ERROR, "That did not work."))
        self.assertIn("Veltro.Veltro.keyOk failed:", self.console)
        self.assertIn("Traceback", self.console)
        self.assertIn("ValueError: no such luck", self.console)

    def test_what_must_end_the_gui_does(self):
        for error in (SystemExit(1), KeyboardInterrupt()):
            self.break_action(error)
            with self.assertRaises(type(error)):
                self.press("ok")
        self.assertIs(self.session.current_dialog, self.screen)

    def test_handlers_work(self):
        self.press("cancel")
        self.assertEqual(self.session.closed, [()])

    def test_a_screen_that_is_just_closing(self):
        self.break_action()
        self.session.in_exec = False
        self.press("ok")
        self.assertEqual(self.box.popups, ["That did not work."])

    def test_a_handler_that_closes_and_then_fails(self):
        def leave(screen):
            screen.__dict__.clear()
            raise ValueError("too late")
        self.guard.guarded(types.MethodType(leave, self.screen))()
        self.assertEqual(self.box.popups, ["That did not work."])
        self.assertIn("leave failed:", self.console)

    def test_methods_stay_methods(self):
        self.assertIs(type(self.screen.up), type(self.screen.close))
        self.assertEqual(self.screen.up, self.screen.up)

    def test_a_report_that_fails(self):
        self.break_action()

        def failing(*arguments):
            raise KeyError("no box either")
        self.session.open = failing
        self.assertEqual(self.press("ok"), 1)

    def test_an_odd_error(self):
        class Odd(Exception):
            def __str__(self):
                raise RuntimeError("not even a text")
        self.break_action(Odd())
        self.press("ok")
        self.assertEqual(self.session.current_dialog.text, "That did not work.")
        self.assertIn("Odd", self.console)

    def test_the_timer(self):
        self.module.config.misc.epg_data_timer.value = "5"
        self.module.epg_timer.setSession(self.session)
        self.module.epg_timer.init_timer()
        timer = Timer.made[-1]
        timer.fire()
        self.assertEqual(timer.started, [(300000, True), (300000, True)])
        self.break_action()
        timer.fire()
        self.assertEqual(timer.started, [(300000, True)] * 2, "the cycle has stopped")
        self.assertEqual(self.box.popups, ["The EPG data could not be saved or loaded in the background."])
        self.assertIs(self.session.current_dialog, self.screen, "nothing is put over what the user sees")

    def test_a_replaced_timer_is_dropped(self):
        self.module.epg_timer.init_timer()
        Timer.made, first = [], weakref.ref(Timer.made[-1])
        self.module.epg_timer.init_timer()
        self.assertIsNone(first())

    def test_a_result(self):
        def failing():
            raise IOError(5, "worn out")
        self.config.misc.epgcache_filename.save = failing
        self.screen["config"].l.cursor = 16
        self.press("ok")
        self.session.popCurrent()
        self.session.callback("/x/epg.dat")
        self.assertEqual(self.session.current_dialog.text, "The directory could not be set.\nworn out")

    def test_a_screen_that_can_not_be_built(self):
        self.module.FileList = None
        self.screen["config"].l.cursor = 16
        self.press("ok")
        self.assertEqual(self.session.current_dialog.text, "The directories can't be shown.")
        self.assertEqual(len(self.session.dialog_stack), 2)
        self.session.popCurrent()
        self.assertIs(self.session.current_dialog, self.screen, "the one below runs again")

    def test_a_changed_value(self):
        def failing(*arguments):
            raise ValueError("no row")
        self.module.getConfigListEntry = failing
        self.screen.on_change()
        self.assertEqual(self.session.current_dialog.text, "The EPG settings can't be shown.")

    def test_a_screen_that_is_shown(self):
        self.screen["config"].l.cursor = 15
        self.press("ok")
        editor = self.session.current_dialog
        self.assertEqual(type(editor).__name__, "Edit_DVB_EPG_Blacklist")

        def failing(title):
            raise ValueError("no title")
        editor.setTitle = failing
        for function in editor.onShown:
            function()
        self.assertIn("setWindowTitle failed", self.console)

    def test_a_session_is_transparent(self):
        session = self.guard.session_of(self.session)
        session.something = 1
        self.assertEqual((self.session.something, session.in_exec), (1, True))
        self.assertIs(self.guard.session_of(session), session)
        self.assertEqual(self.screen.session.dialog_stack, self.session.dialog_stack)


class OpeningTest(BoxTest):
    def test_a_settings_screen_that_can_not_be_built(self):
        self.load()
        del self.config.usage.__dict__["multiepg_ask_bouquet"]
        self.plugin.main(session=self.box.session)
        self.assertEqual(self.box.session.current_dialog.text, "The EPG settings can't be shown.")
        self.box.session.popCurrent()
        self.assertEqual(self.box.session.current_dialog, "main menu")
        self.assertTrue(self.box.session.in_exec)
