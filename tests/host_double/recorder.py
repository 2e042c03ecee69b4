"""What the module did to its host, in order, and which of it shall fail.

Everything the double offers reports to the one `recorder` of this file. An entry is a plain tuple: a name that reads
like the code that caused it, then the arguments, then a dict if there were keyword arguments:

    ("_", "Exit")
    ("eEPGCache.save",)
    ("config.l.setList", [...])
    ("ConfigListScreen.__init__", [...], {"session": ..., "on_change": ...})

There are two kinds. A *call* does something or hands something over. A *look* only reads (a widget by its name, a
configuration key, a value), translates a text or sets a plain member of a screen; how often an implementation looks is
mostly its own affair. `calls` holds the first kind, `events` both in their common order.
"""

import contextlib


class Fault(object):
    """Makes one event fail, once."""

    def __init__(self, error, name=None, nth=1, position=None):
        self.error, self.name, self.left, self.position = error, name, nth, position

    def hits(self, position, name):
        if self.position is not None:
            return position == self.position
        if name != self.name:
            return False
        self.left -= 1
        return self.left == 0


class Recorder(object):
    def __init__(self):
        self.reset()

    def reset(self, recording=True):
        """Forget everything. Without `recording` the double is only a fast host, e.g. for measuring."""
        self.recording = recording
        self.faults = []
        self.clear()

    def clear(self):
        """Forget the events so far, for instance those of building a screen. Positions count from here."""
        self.events = []
        self.calls = []

    def fail(self, name, error, nth=1):
        """The nth event of this name from now on raises this very error object."""
        self.faults.append(Fault(error, name=name, nth=nth))

    def fail_at(self, position, error):
        """The event at this position of `events` raises this very error object."""
        self.faults.append(Fault(error, position=position))

    def call(self, name, *arguments, **keywords):
        if self.recording:
            self._note(self.calls, name, arguments, keywords)

    def look(self, name, *arguments):
        if self.recording:
            self._note(None, name, arguments, None)

    def _note(self, also, name, arguments, keywords):
        event = (name,) + arguments + ((keywords,) if keywords else ())
        position = len(self.events)
        self.events.append(event)
        if also is not None:
            also.append(event)
        for fault in self.faults:
            if fault.hits(position, name):
                self.faults.remove(fault)
                raise fault.error

    def named(self, name):
        """The arguments of every event of this name, in order."""
        return [event[1:] for event in self.events if event[0] == name]

    def names(self):
        """The names of the calls, in order."""
        return [call[0] for call in self.calls]

    @contextlib.contextmanager
    def silently(self):
        """What the host does within itself is not the module's doing."""
        recording, self.recording = self.recording, False
        try:
            yield
        finally:
            self.recording = recording


recorder = Recorder()


class Strict(object):
    """An object of the host: it has the names it was given and takes no others.

    Names that begin with an underscore are the double's own; tests may use them, the module has no business there.
    """

    settable = ()

    def __setattr__(self, name, value):
        if name not in self.settable and not name.startswith("_"):
            raise AttributeError("the host's %s takes no attribute %r" % (type(self).__name__, name))
        object.__setattr__(self, name, value)


class CallbackList(list):
    """A list of callbacks as hosts have them: plain, but one sees what is appended."""

    def __init__(self, name):
        list.__init__(self)
        self.name = name

    def append(self, callback):
        recorder.call(self.name + ".append", callback)
        list.append(self, callback)
