"""What the trace of an error says about the module."""

import os
import sys
import traceback

from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, PYTHON2, cpp_frames, host, shown
from tests.module.operations import PICKER, PRIVATE
from tests.module.scenarios import SCENARIOS, start

# The source file of each function and class.
UNITS = {
    "doEPGAction": "epg_actions.cpp", "EPGTimer": "epg_actions.cpp", "Veltro": "settings_screen.cpp",
    "DirChoose": "dir_choose.cpp", "Edit_DVB_EPG_Blacklist": "blacklist.cpp",
    "DVB_EPG_blacklist_ChannelSelection": "channel_picker.cpp", "find_in_list": "listed_names.cpp",
}
EDITOR = "Edit_DVB_EPG_Blacklist"


class Traces(HostTestCase):
    def trace(self, event, operation, *arguments):
        """The frames' names when the next event of this name fails."""
        error = Boom()
        host.recorder.fail(event, error)
        frames = self.raised_by(error, operation, *arguments)
        for name, file_name, line in frames:
            self.assertEqual(os.path.basename(file_name), UNITS[name.split(".")[1]])
            self.assertGreater(line, 0)
        return [name for name, _, _ in frames]

    def test_each_operation_is_named_with_its_unit(self):
        for operation, situation, prepare in SCENARIOS:
            run = start(self, prepare)
            error = KeyboardInterrupt()
            host.recorder.fail_at(0, error)
            try:
                run()
            except KeyboardInterrupt:
                frames = cpp_frames(sys.exc_info()[2])
                self.assertEqual(frames[0][0], operation)
                self.assertTrue(frames[0][1].endswith("plugin/src/" + UNITS[operation.split(".")[1]]), frames)
                self.assertGreater(frames[0][2], 0)
            else:
                self.assertEqual(host.recorder.events, [], "%s (%s) went on" % (operation, situation))

    def test_the_line_is_that_of_the_failing_call(self):
        lines = []
        for event in ("eEPGCache.getInstance", "eEPGCache.clearDB", "eEPGCache.save"):
            error = Boom()
            host.recorder.fail(event, error)
            lines.append(self.raised_by(error, self.Veltro.doEPGAction, "cleardb")[0][2])
        self.assertEqual(lines, sorted(set(lines)))

    def test_nested_operations_in_call_order(self):
        settings = "Veltro.Veltro."
        save_row = self.settings(selected=20)
        for event, operation, names in (
            ("eEPGCache.save", save_row.keyOk, [settings + "keyOk", "Veltro.doEPGAction"]),
            ("status.setText", save_row.keyOk, [settings + "keyOk", settings + "epgBackupfinished"]),
            ("status.setText", save_row.up, [settings + "up", settings + "epgBackupfinished"]),
            ("status.setText", save_row.down, [settings + "down", settings + "epgBackupfinished"]),
            ("config.l.setList", save_row.changedEntry, [settings + "changedEntry", settings + "createSetup"]),
            ("config.l.setList", lambda: self.Veltro.Veltro(host.session, PLUGIN_PATH),
             [settings + "__init__", settings + "createSetup"]),
        ):
            self.assertEqual(self.trace(event, operation), names)

    def test_nested_operations_of_the_editor(self):
        self.etc(b"#SERVICE 1:0:\n")
        screen, prefix = self.editor(), "Veltro.%s." % EDITOR
        for event, operation, names in (
            ("open", screen.greenPressed, ["greenPressed", "saveFile"]),
            ("close", screen.redPressed, ["redPressed", "cancel"]),
            ("ServiceList.getCurrent", screen.yellowPressed, ["yellowPressed", "delete"]),
            ("getServiceName", screen.loadFile, ["loadFile", "finishedChannelSelection"]),
            ("getServiceName", self.editor, ["__init__", "loadFile", "finishedChannelSelection"]),
            ("path.exists", self.editor, ["__init__", "loadFile"]),
        ):
            self.assertEqual(self.trace(event, operation), [prefix + name for name in names])

    def test_nested_operations_of_the_chooser(self):
        prefix = "Veltro.DirChoose."
        for key in ("up", "down", "left", "right"):
            self.assertEqual(self.trace("filelist.getSelection", getattr(self.chooser(), key)),
                             [prefix + key, prefix + "updateFile"])
        file_entry = self.chooser(entries=[("film.ts", False)])
        self.assertEqual(self.trace("driverfile.setText", file_entry.ok), [prefix + "ok", prefix + "green"])

    def test_nested_operations_of_the_picker(self):
        prefix = "Veltro.%s." % PICKER
        screen = self.picker()
        self.assertEqual(self.trace("setTvMode", lambda: shown(screen)),
                         [prefix + "__onExecCallback", prefix + "setModeTv"])
        self.assertEqual(self.trace("showFavourites", getattr(screen, PRIVATE)),
                         [prefix + "__onExecCallback", prefix + "setModeTv"])

    def test_nested_operations_of_the_timer(self):
        self.Veltro.epg_timer.init_timer()
        self.assertEqual(self.trace("eEPGCache.save", self.Veltro.epg_timer.epg_timer._fire),
                         ["Veltro.EPGTimer.do_epg_action", "Veltro.doEPGAction"])

    def test_an_operation_that_a_subclass_calls(self):
        class Settings(self.Veltro.Veltro):
            def createSetup(self):
                return super(Settings, self).createSetup()
        self.assertEqual(self.trace("config.l.setList", lambda: Settings(host.session, "")),
                         ["Veltro.Veltro.__init__", "Veltro.Veltro.createSetup"])

    def test_find_in_list(self):
        error = Boom()

        def rows():
            raise error
            yield
        frames = self.raised_by(error, self.Veltro.find_in_list, rows(), "x")
        self.assertEqual([name for name, _, _ in frames], ["Veltro.find_in_list"])
        self.assertTrue(frames[0][1].endswith(".cpp"))

    def test_the_error_is_unchanged(self):
        class Odd(Exception):
            def __init__(self, one, two):
                Exception.__init__(self)
                self.one = one

            def __str__(self):
                raise AssertionError("nobody needs the text")
        error = Odd(1, 2)
        host.recorder.fail("eEPGCache.save", error)
        self.raised_by(error, self.Veltro.doEPGAction, "save")
        self.assertEqual((error.args, vars(error)), ((), {"one": 1}) if error.args == () else ((1, 2), {"one": 1}))
        self.assertIsNone(getattr(error, "__cause__", None))
        self.assertIsNone(getattr(error, "__context__", None))

    def test_argument_errors_bear_no_frame_of_the_module(self):
        for operation, arguments in ((self.Veltro.doEPGAction, ()), (self.Veltro.epg_timer.setSession, ()),
                                     (self.Veltro.epg_timer.init_timer, (1,)), (self.Veltro.DirChoose, ())):
            try:
                operation(*arguments)
                self.fail("accepted")
            except TypeError:
                self.assertEqual(cpp_frames(sys.exc_info()[2]), [])

    def test_the_trace_can_be_printed(self):
        host.recorder.fail("eEPGCache.save", Boom("disk on fire"))
        try:
            self.settings(selected=20).keyOk()
            host.recorder.fail("eEPGCache.save", Boom("disk on fire"))
            self.settings(selected=20).keyOk()
        except Boom:
            text = traceback.format_exc()
        for part in ("in Veltro.Veltro.keyOk", "in Veltro.doEPGAction", "settings_screen.cpp", "epg_actions.cpp",
                     "disk on fire"):
            self.assertIn(part, text)

    def test_many_errors_do_not_wear_out(self):
        for _ in range(2000):
            host.recorder.clear()
            self.assertEqual(self.trace("eEPGCache.load", self.Veltro.doEPGAction, "load"), ["Veltro.doEPGAction"])

    def test_an_error_during_the_handling_of_another(self):
        """A trace of an operation that runs while the host handles an error of its own."""
        outer, inner = Boom("outer"), Boom("inner")
        host.recorder.fail("eEPGCache.load", inner)
        try:
            raise outer
        except Boom:
            self.raised_by(inner, self.Veltro.doEPGAction, "load")

    def test_a_debugger_that_watches_does_not_change_the_error(self):
        """Nor does one that fails: what matters is the host's error."""
        def watch(frame, event, argument):
            return watch

        def fail(frame, event, argument):
            if frame.f_code.co_name.startswith("Veltro."):
                raise ValueError("an error of the debugger")
        for install in (sys.settrace, sys.setprofile):
            for tool in (watch, fail):
                error, caught = Boom(), None
                host.recorder.fail("eEPGCache.load", error)
                before = sys.gettrace(), sys.getprofile()
                install(tool)
                try:
                    self.Veltro.doEPGAction("load")
                except BaseException as raised:
                    caught = raised
                finally:
                    sys.settrace(before[0])
                    sys.setprofile(before[1])
                self.assertIs(caught, error)

    ENDLESS = """if True:
        import sys
        from tests.host_double import host
        host.reset()
        host.start()
        screen = host.load().Edit_DVB_EPG_Blacklist(host.session, "")
        host.stop()
        screen.cancel = screen.redPressed
        try:
            screen.redPressed()
        except RuntimeError:
            sys.exit(7)
        """

    def test_operations_that_call_each_other_for_ever_end_with_the_hosts_error(self):
        self.assertEqual(self.run_apart(self.ENDLESS), 7)

    if PYTHON2:
        def test_an_error_of_an_old_style_class(self):
            class Old:
                pass
            error = Old()
            host.recorder.fail("eEPGCache.load", error)
            try:
                self.Veltro.doEPGAction("load")
            except Old as caught:
                self.assertIs(caught, error)
                self.assertEqual([frame[0] for frame in cpp_frames(sys.exc_info()[2])], ["Veltro.doEPGAction"])
