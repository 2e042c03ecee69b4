"""The main loop's clock and timers: eTimer on asyncio, and a loop whose time a test owns."""

import asyncio
import selectors
import weakref

from receiver import running


class _JumpingSelector(selectors.DefaultSelector):
    """Polls instead of waiting, and moves its loop's clock by the time it was asked to wait."""

    def __init__(self):
        super().__init__()
        self.now = 0.0

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
    """The GUI's timer. Callbacks are called on the main loop without arguments.

    A timer that nobody holds any more never fires: the loop knows it by a weak reference only.
    """

    def __init__(self):
        self._callback = []
        self._handle = None
        self._due = 0.0
        self._interval = None
        running.gui.timers.add(self)

    @property
    def callback(self):
        return self._callback

    def get(self):
        return self._callback

    def start(self, msec, singleShot=False):
        """Fire in `msec` milliseconds, once or again and again; 0 and less mean the loop's next turn."""
        self.stop()
        self._interval = None if singleShot else msec / 1000.0
        self._arm(running.gui.loop.time() + max(0.0, msec / 1000.0))

    def stop(self):
        if self._handle is not None:
            self._handle.cancel()
            self._handle = None

    def isActive(self):
        return self._handle is not None

    def _arm(self, due):
        self._due = due
        self._handle = running.gui.loop.call_at(due, _fire, weakref.ref(self))

    def _timeout(self):
        self._handle = None
        if self._interval is not None:
            # At least a millisecond, or a loop whose clock only moves when idle would never get on.
            self._arm(self._due + max(0.001, self._interval))
        for position in range(len(self._callback)):
            if position < len(self._callback) and not running.gui.guard(self._callback[position]):
                break


def _fire(reference):
    timer = reference()
    if timer is not None:
        timer._timeout()
