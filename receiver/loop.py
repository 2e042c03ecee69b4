"""The main loop's clock and timers: eTimer on asyncio, and a loop whose time a test owns."""

import asyncio
import selectors
import weakref

from receiver import running


class _JumpingSelector(selectors.DefaultSelector):
    """Polls instead of waiting, and moves its loop's clock by the time it was asked to wait."""

    now = 0.0

    def select(self, timeout=None):
        events = super().select(0)
        if not events and timeout:
            self.now += timeout
        return events


class VirtualLoop(asyncio.SelectorEventLoop):
    """An asyncio loop on which waiting takes no time: when nothing is left to do, the clock jumps."""

    def __init__(self):
        self._clock = _JumpingSelector()
        super().__init__(self._clock)

    def time(self):
        return self._clock.now

    def advance(self, seconds):
        """Run everything that is due within the next `seconds` of this loop's time."""
        self.call_at(self.time() + seconds, self.stop)
        self.run_forever()

    def settle(self):
        """Run until nothing is left that is due now: the clock moves on only when all of that is done."""
        self.advance(0.001)


class eTimer:
    """The GUI's timer. What is in `callback` is called on the main loop without arguments.

    A timer that nobody holds any more never fires: the loop knows it by a weak reference only.
    """

    def __init__(self):
        self.callback = []
        self._handle = self._again = None
        running.gui.timers.add(self)

    def start(self, msec, singleShot=False):
        """Fire in `msec` milliseconds, once or again and again; 0 and less mean the loop's next turn."""
        self.stop()
        # At least a millisecond between two, or a loop whose clock only moves when idle would never get on.
        self._again = None if singleShot else max(1, msec)
        self._handle = running.gui.loop.call_later(max(0, msec) / 1000, _fire, weakref.ref(self))

    def stop(self):
        if self.isActive():
            self._handle.cancel()
            self._handle = None

    def isActive(self):
        return self._handle is not None


def _fire(reference):
    """What the loop calls when a timer's time has come."""
    timer = reference()
    if timer is None:
        return
    timer._handle = None
    if timer._again is not None:
        timer.start(timer._again)
    for function in list(timer.callback):
        if not running.gui.guard(function):
            break
