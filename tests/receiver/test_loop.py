"""Timers on a clock that the test owns."""

import gc
import weakref

from receiver.loop import VirtualLoop
from tests.receiver.tv import TvTest, host


class VirtualLoopTest(TvTest):
    def test_time_passes_only_when_asked(self):
        loop = VirtualLoop()
        self.addCleanup(loop.close)
        calls = []
        loop.call_later(3600, calls.append, "hour")
        loop.call_later(60, calls.append, "minute")
        loop.advance(59.9)
        self.assertEqual(calls, [])
        loop.advance(0.2)
        self.assertEqual(calls, ["minute"])
        loop.advance(3600)
        self.assertEqual(calls, ["minute", "hour"])
        self.assertAlmostEqual(loop.time(), 3660.1)

    def test_settling_runs_a_whole_chain_of_what_is_due(self):
        loop = VirtualLoop()
        self.addCleanup(loop.close)
        calls = []
        loop.call_soon(lambda: loop.call_soon(lambda: loop.call_later(0, calls.append, 1)))
        loop.settle()
        self.assertEqual(calls, [1])


class TimerTest(TvTest):
    def setUp(self):
        super().setUp()
        self.switch_on()
        self.calls = []
        self.timer = host("enigma").eTimer()
        self.timer.callback.append(lambda: self.calls.append(round(self.loop.time() - self.begin, 3)))
        self.loop = self.receiver.loop
        self.begin = self.loop.time()

    def test_single_shot(self):
        self.timer.start(1500, True)
        self.assertTrue(self.timer.isActive())
        self.loop.advance(1.4)
        self.assertEqual(self.calls, [])
        self.loop.advance(10)
        self.assertEqual(self.calls, [1.5])
        self.assertFalse(self.timer.isActive())

    def test_repeating(self):
        self.timer.start(1000)
        self.loop.advance(3.5)
        self.assertEqual(self.calls, [1.0, 2.0, 3.0])
        self.assertTrue(self.timer.isActive())
        self.timer.stop()
        self.loop.advance(5)
        self.assertEqual(len(self.calls), 3)

    def test_zero_and_less_fire_at_the_next_turn(self):
        for delay in (0, -60000):
            self.timer.start(delay, True)
            self.assertEqual(self.calls, [])
            self.loop.settle()
            self.assertEqual(len(self.calls), 1)
            self.calls.clear()

    def test_repeating_without_a_delay_does_not_block_the_loop(self):
        self.timer.start(0)
        self.loop.advance(0.1)
        self.assertGreater(len(self.calls), 10)

    def test_callback_may_arm_its_single_shot_again(self):
        states = []
        self.timer.callback.append(lambda: (states.append(self.timer.isActive()), self.timer.start(1000, True)))
        self.timer.start(1000, True)
        self.loop.advance(2.5)
        self.assertEqual(self.calls, [1.0, 2.0])
        self.assertEqual(states, [False, False])

    def test_start_replaces_an_earlier_start(self):
        self.timer.start(1000, True)
        self.timer.start(5000, True)
        self.loop.advance(10)
        self.assertEqual(self.calls, [5.0])

    def test_a_dropped_timer_never_fires(self):
        self.timer.start(1000, True)
        gone = weakref.ref(self.timer)
        del self.timer
        gc.collect()
        self.assertIsNone(gone())
        self.loop.advance(10)
        self.assertEqual(self.calls, [])

    def test_all_callbacks_are_called_in_order(self):
        order = []
        self.timer.callback.extend([lambda: order.append(1), lambda: order.append(2)])
        self.timer.start(0, True)
        self.loop.settle()
        self.assertEqual(order, [1, 2])

    def test_no_timer_survives_the_gui(self):
        self.timer.start(1000, True)
        self.receiver.switch_off()
        self.loop.advance(10)
        self.assertEqual(self.calls, [])

    def test_an_error_in_a_callback_ends_the_gui_and_its_timers(self):
        other = host("enigma").eTimer()
        other.callback.append(lambda: self.calls.append("other"))
        other.start(2000, True)
        self.timer.callback.insert(0, lambda: 1 / 0)
        self.timer.start(1000, True)
        self.loop.advance(5)
        self.assertIn("ZeroDivisionError", self.receiver.crash)
        self.assertEqual(self.calls, [])
