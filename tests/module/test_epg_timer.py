"""plugin/src/epg_actions.cpp: EPGTimer, the chain of single shots that saves or loads the EPG."""

import weakref

from tests.module.case import Boom, HostTestCase, host

MINUTE = 60000


class EPGTimerTestCase(HostTestCase):
    def setUp(self):
        HostTestCase.setUp(self)
        self.timer = self.Veltro.epg_timer

    def mode(self, client, period):
        self.set_value("misc.epg_is_client_stb", client)
        self.set_value("misc.epg_data_timer", period)

    def started(self, client, period):
        """The platform timer of a timer that was started in this mode."""
        self.mode(client, period)
        self.timer.init_timer()
        host.recorder.clear()
        return self.timer.epg_timer

    def action(self, word):
        return ("eEPGCache.getInstance",), ("eEPGCache." + word,)


class SetSession(EPGTimerTestCase):
    def test_only_records_the_session(self):
        self.assertIsNone(self.timer.setSession(host.session))
        self.assertEqual(vars(self.timer), {"session": host.session})
        self.assertEqual(host.recorder.events, [])

    def test_changes_nothing_of_a_running_timer(self):
        platform_timer = self.started(False, 30)
        self.timer.setSession("another")
        self.assertIs(self.timer.epg_timer, platform_timer)
        self.assertEqual((self.timer.session, platform_timer._armed), ("another", 30 * MINUTE))
        self.assertCalls()


class InitTimer(EPGTimerTestCase):
    def arms(self, delay):
        host.recorder.clear()
        self.assertIsNone(self.timer.init_timer())
        self.assertCalls(("eTimer",), ("eTimer.callback.append", "do_epg_action"), ("eTimer.start", delay, True))
        self.assertIs(host.recorder.calls[-1][2], True)

    def test_first_delay(self):
        for client, period, delay in ((False, 30, 30 * MINUTE), (False, 1, MINUTE), (False, 0, 0),
                                      (False, -5, -5 * MINUTE), (True, 30, 15000), (True, 0, 15000), (True, -5, 15000)):
            self.mode(client, period)
            self.arms(delay)

    def test_the_callback_is_this_instances_operation(self):
        self.timer.init_timer()
        self.assertEqual(self.timer.epg_timer._callback, [self.timer.do_epg_action])
        other = self.Veltro.EPGTimer()
        other.init_timer()
        self.assertEqual(other.epg_timer._callback, [other.do_epg_action])

    def test_it_takes_no_action(self):
        self.timer.init_timer()
        self.assertNotIn("eEPGCache.getInstance", host.recorder.names())

    def test_client_mode_does_not_read_the_period(self):
        self.mode(True, "no number")
        self.arms(15000)
        self.assertEqual(host.recorder.named("config.misc.epg_data_timer"), [])

    def test_client_mode_is_tested_for_truth(self):
        for value, delay in (("yes", 15000), ([], 2 * MINUTE), ("", 2 * MINUTE), (None, 2 * MINUTE), (2, 15000)):
            self.mode(value, 2)
            self.arms(delay)

    def test_the_period_is_converted(self):
        class Minutes(object):
            def __int__(self):
                return 7
        for value, minutes in (("30", 30), (" 5 ", 5), (2.9, 2), (True, 1), (Minutes(), 7), ("-1", -1),
                               (10 ** 12, 10 ** 12)):
            self.mode(False, value)
            self.arms(minutes * MINUTE)

    def test_no_period_is_too_long(self):
        """What the platform makes of it is the platform's business."""
        self.mode(False, 10 ** 20)
        self.arms(10 ** 20 * MINUTE)

    def test_a_period_that_is_no_number_comes_before_any_timer(self):
        before = self.started(False, 30)
        for value, kind in (("soon", ValueError), ("", ValueError), (None, TypeError), ([], TypeError)):
            self.mode(False, value)
            self.error_of(kind, self.timer.init_timer)
            self.assertCalls()
            self.assertIs(self.timer.epg_timer, before)
            self.assertEqual(before._armed, 30 * MINUTE)

    def test_the_new_timer_is_stored_before_it_is_connected(self):
        error = Boom()
        host.recorder.fail("eTimer.callback.append", error)
        self.raised_by(error, self.timer.init_timer)
        self.assertIsNone(self.timer.epg_timer._armed)

    def test_the_second_call_drops_the_first_timer(self):
        first = weakref.ref(self.started(False, 30))
        second = self.started(False, 20)
        self.assertIsNone(first())
        self.assertEqual(second._armed, 20 * MINUTE)
        self.assertEqual(second._callback, [self.timer.do_epg_action])


class DoEPGAction(EPGTimerTestCase):
    def fires(self, platform_timer, *calls):
        host.recorder.clear()
        platform_timer._fire()
        self.assertCalls(*calls)

    def test_normal_mode_saves_each_period(self):
        platform_timer = self.started(False, 30)
        for _ in range(2):
            self.fires(platform_timer, *self.action("save") + (("eTimer.start", 30 * MINUTE, True),))
            self.assertIs(host.recorder.calls[-1][2], True)

    def test_client_mode_loads_each_period(self):
        platform_timer = self.started(True, 30)
        self.assertEqual(platform_timer._armed, 15000)
        for _ in range(2):
            self.fires(platform_timer, *self.action("load") + (("eTimer.start", 30 * MINUTE, True),))

    def test_a_period_of_zero_or_less_ends_the_cycle(self):
        for client in (False, True):
            for period in (0, -1, -30, "0", 0.9):
                platform_timer = self.started(client, period)
                self.fires(platform_timer)
                self.assertIsNone(platform_timer._armed)

    def test_an_ended_cycle_stays_ended_until_it_is_started_again(self):
        platform_timer = self.started(False, 0)
        self.fires(platform_timer)
        self.mode(False, 30)
        self.assertIsNone(platform_timer._armed)
        self.assertEqual(self.started(False, 30)._armed, 30 * MINUTE)

    def test_a_period_of_zero_does_not_ask_for_the_mode(self):
        self.mode(False, 0)
        self.timer.do_epg_action()
        self.assertEqual(host.recorder.named("config.misc.epg_is_client_stb"), [])

    def test_mode_and_period_are_read_at_each_firing(self):
        platform_timer = self.started(False, 30)
        self.mode(True, 10)
        self.fires(platform_timer, *self.action("load") + (("eTimer.start", 10 * MINUTE, True),))
        self.mode(False, 5)
        self.fires(platform_timer, *self.action("save") + (("eTimer.start", 5 * MINUTE, True),))

    def test_returns_nothing(self):
        self.started(False, 30)
        self.assertIsNone(self.timer.do_epg_action())
        self.mode(False, 0)
        self.assertIsNone(self.timer.do_epg_action())

    def test_the_timer_is_re_armed_after_the_action_with_the_period_from_before(self):
        self.started(False, 30)
        self.replace(self.Veltro, "doEPGAction", lambda action: self.mode(True, 99))
        self.fires(self.timer.epg_timer, ("eTimer.start", 30 * MINUTE, True))

    def test_a_period_that_is_no_number_stops_the_cycle(self):
        platform_timer = self.started(False, 30)
        self.mode(False, "soon")
        self.error_of(ValueError, platform_timer._fire)
        self.assertCalls()
        self.assertIsNone(platform_timer._armed)

    def test_a_failing_action_stops_the_cycle(self):
        for client, word in ((False, "save"), (True, "load")):
            platform_timer = self.started(client, 30)
            error = Boom()
            host.recorder.fail("eEPGCache." + word, error)
            self.raised_by(error, platform_timer._fire)
            self.assertCalls(*self.action(word))
            self.assertIsNone(platform_timer._armed)

    def test_without_a_timer_the_action_is_done_and_re_arming_fails(self):
        self.mode(False, 30)
        self.error_of(AttributeError, self.timer.do_epg_action)
        self.assertCalls(*self.action("save"))

    def test_without_a_timer_and_a_period_nothing_happens(self):
        self.mode(False, 0)
        self.assertIsNone(self.timer.do_epg_action())
        self.assertCalls()

    def test_never_clears(self):
        for client in (False, True):
            self.started(client, 30)._fire()
            self.assertNotIn("eEPGCache.clearDB", host.recorder.names())
