"""Random walks: keys, changed values, odd values and faults of the host over all screens, step by step beside the model.

Each seed is a walk of its own. To see one again, with every action it took:

    VELTRO_WALK=17 python3 -m unittest tests.trust.test_walks

VELTRO_WALKS: how many seeds (200).
"""

import os
import random
import sys

from tests.host_double.files import read_bytes
from tests.host_double.recorder import Fault
from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, cpp_frames, host, press, shape, shown
from tests.trust.model import CACHE_FILE, CLIENT, PERIOD, Box, Course, Screen

WALKS = int(os.environ.get("VELTRO_WALKS", "200"))
ACTIONS = 80

BOUQUET = "1:7:1:G:"
TEXTS = ("1:0:1:A:", "1:0:1:B:", "4097:0:1:C:", "1:0:2:D:", "2:0:1:E:", "1:64:1:F:", BOUQUET, "1:0:1:H:", "1:1:1:I:")
NAMES = ("One", "Two", "", "N/A", "One")
DIRECTORIES = ("/media/", "/media/hdd/", "/media/usb", "/")
FILES = (
    b"",
    b"#SERVICE 1:0:1:A:\n",
    b"#SERVICE 1:0:1:A:\r\n#SERVICE 2:0:\n# no\n#SERVICE 4097:0:1:C: \n",
    b"\xff\n#SERVICE 1:\xff\n",
    b"#SERVICE 1:0:1:A:\n#SERVICE 1:0:1:B:\n#SERVICE 1:0:2:D:\n",
    b"#SERVICE 1:0:#SERVICE A:\x0b\n",
)


class TextOfItsOwn(str):
    """A subclass, as translations and paths may be."""


class NumberOfItsOwn(int):
    pass


ODD_VALUES = {
    CACHE_FILE: ("/media/hdd/epg.dat", "/epg.dat/x/epg.dat", "", None, b"/b/epg.dat", 5, TextOfItsOwn("/t/epg.dat"), ("a",),
                 ("a", "b"), u"/\u00e4/epg.dat"),
    PERIOD: (30, 0, -5, 10 ** 30, "15", " 7 ", "x", None, b"12", 2.7, True, NumberOfItsOwn(3), []),
    CLIENT: (True, False, None, "", "x", 0, 10 ** 30, [], TextOfItsOwn("")),
}


class StepFault(Fault):
    """Makes the nth step fail; a step is a call or the setting of a member."""

    def hits(self, position, name):
        calls = host.recorder.calls
        if name.endswith(" =") or (calls and calls[-1] is host.recorder.events[position]):
            self.left -= 1
            return self.left == 0
        return False


class Walk(object):
    def __init__(self, case, seed):
        self.case, self.seed, self.choose = case, seed, random.Random(seed)
        self.log = []
        self.box = Box()
        self.faults = 0
        self.box.path = case.etc()
        for text in TEXTS:
            self.box.names[text] = self.choose.choice(NAMES)
        self.box.bouquets[BOUQUET] = [self.choose.choice(TEXTS) for _ in range(self.choose.randrange(8))]
        for directory in DIRECTORIES:
            self.box.listings[directory] = [
                (self.choose.choice(DIRECTORIES + ("film.ts",)), self.choose.random() < 0.7)
                for _ in range(self.choose.randrange(4))]
        host.service_names.update(self.box.names)
        host.bouquets.update(self.box.bouquets)
        host.listings.update(self.box.listings)

    # What happens

    def run(self):
        for _ in range(ACTIONS):
            if self.box.stack:
                self.choose.choice(self.moves())()
            else:
                self.fresh()
            self.compare()

    def fresh(self):
        """Nothing is open: the file may be any, and a screen is opened."""
        self.box.file = self.choose.choice(FILES + (None,))
        if self.box.file is not None:
            with open(self.box.path, "wb") as file:
                file.write(self.box.file)
        elif os.path.exists(self.box.path):
            os.remove(self.box.path)
        kind, steps = self.choose.choice((
            ("Veltro", self.box.open_settings), ("Edit_DVB_EPG_Blacklist", self.box.open_editor)))
        self.open(kind, steps(), lambda: getattr(self.case.Veltro, kind)(host.session, PLUGIN_PATH))

    def moves(self):
        box, top = self.box, self.box.top
        key = lambda action, steps: lambda: self.act(action, steps, lambda: press(top.screen, action))
        if top.kind == "Veltro":
            moves = [key("up", lambda: box.move(-1, "moveUp")), key("down", lambda: box.move(1, "moveDown"))] * 2
            moves += [key("ok", box.key_ok)] * 4 + [key("green", box.key_save), key("cancel", box.key_close)]
            moves += [key("red", lambda: [("keyCancel",)]), self.select, self.select, self.change, self.change]
        elif top.kind == "DirChoose":
            moves = [key(name, lambda name=name, call=call, by=by: box.scroll(call, by)) for name, call, by in (
                ("up", "up", -1), ("down", "down", 1), ("left", "pageUp", -10), ("right", "pageDown", 10))]
            moves += [key("ok", box.enter), key("green", box.choose), key("back", lambda: box.close(None))]
        elif top.kind == "Edit_DVB_EPG_Blacklist":
            picker = lambda: [("session.openWithCallback", "finishedChannelSelection", "DVB_EPG_blacklist_ChannelSelection",
                               PLUGIN_PATH)]
            moves = [key("blue", picker)] * 4 + [key("yellow", box.delete)] * 2 + [self.select, self.select]
            moves += [key("green", box.save_file), key("cancel", box.close), key("red", box.close), self.come_back]
        elif top.kind == "ChoiceBox":
            moves = [lambda choice=choice: self.leave_choices(choice) for choice in (None, ("M", "multi"), ("D", "deu"))]
        else:
            moves = [self.select_service] * 3 + [key("ok", box.pick_one), key("showProviders", box.pick_bouquet)] * 2
            moves += [key("cancel", lambda: box.close(None)), key("keyTV", lambda: box.show_favourites("setTvMode")),
                      key("keyRadio", lambda: box.show_favourites("setRadioMode"))]
        moves.append(lambda: self.act("init_timer", box.init_timer, self.case.Veltro.epg_timer.init_timer))
        if box.timer is not None:
            moves.append(lambda: self.act("the timer fires", box.fire, self.case.Veltro.epg_timer.epg_timer._fire))
        return moves

    def select(self):
        """The cursor moves without the module."""
        top = self.box.top
        rows = top.shown if top.kind == "Veltro" else top.rows
        top.selected = self.choose.randrange(len(rows) + 1)
        if top.kind == "Veltro" and self.choose.random() < 0.7:
            top.selected = self.choose.choice((14, 15, 16, 19, 19, 20, 21, len(rows)))  # where OK does more
        name = "config" if top.kind == "Veltro" else "ServiceList"
        dict.__getitem__(top.screen, name)._index = top.selected
        self.log.append("select row %d" % top.selected)

    def select_service(self):
        self.box.top.selection = text = self.choose.choice(TEXTS + (BOUQUET, BOUQUET, None))
        self.box.top.screen._selection = None if text is None else host.reference(text)
        self.log.append("select service %r" % text)

    def change(self):
        """The user changes a value, and the host says so; or something else in the host leaves an odd one."""
        if self.choose.random() < 0.6:
            key = self.choose.choice(sorted(ODD_VALUES))
            value = self.choose.choice(ODD_VALUES[key])
        else:
            key = self.choose.choice(sorted(self.box.current))
            value = self.box.current[key] if key in ODD_VALUES else self.choose.choice((True, False, "multi", "deu", 3))
        host.element(key)._value = self.box.current[key] = value
        if self.choose.random() < 0.5:
            self.log.append("%s becomes %r" % (key, value))
        else:
            self.act("change %s to %r" % (key, value), self.box.changed_entry, self.box.top.screen.changedEntry)

    def come_back(self):
        self.act("shown again", lambda: [("setTitle", "[Edit blacklist for DVB EPG]")], lambda: shown(self.box.top.screen))

    def leave_choices(self, choice):
        self.box.stack.pop()
        callback, self.box.top.callback = self.box.top.callback, None
        if (self.box.row_under_cursor() or [None])[0] is None:
            choice = None  # of a placeholder, which only a fault has offered
        self.act("choose %r" % (choice,), lambda: self.box.chosen(choice), lambda: callback(choice))

    # One action, in the module and in the model

    def open(self, kind, steps, build):
        depth = len(self.box.stack)
        made = []
        if self.act("open " + kind, lambda: steps, lambda: made.append(build())):
            self.box.top.screen = made[0]
        else:
            del self.box.stack[depth:]  # a screen that could not be built is none
            if self.box.stack:
                self.box.top.callback = None

    def act(self, name, steps, operation):
        """Returns whether it came through. What was opened or closed by it happens, too."""
        self.log.append(name)
        host.recorder.reset()
        fault, failing = None, self.choose.choice((0, 0, 1, 1, 2, 4, 7, 9, 12, 16, 17, 20, 33))
        if self.choose.random() < 0.3:
            fault = self.choose.choice((Boom("walk"), IOError("walk"), KeyboardInterrupt("walk")))
            host.recorder.faults.append(StepFault(fault, nth=failing + 1))
        error = None
        try:
            operation()
        except BaseException as caught:
            error = caught
            frames = cpp_frames(sys.exc_info()[2])
            self.check(frames or name == "red", "no frame of the module in the trace of %r" % error)
        hit = fault is not None and not host.recorder.faults
        self.faults += hit
        host.recorder.faults[:] = []
        events = list(host.recorder.events)
        self.follow(Course(generator(steps)), self.steps_of(events), failing if hit else None, fault, error)
        if error is None:
            self.windows(events)
        return error is None

    def steps_of(self, events):
        calls = set(id(call) for call in host.recorder.calls)
        return [event for event in events if id(event) in calls or event[0].endswith(" =")]

    def follow(self, course, steps, failing, fault, error):
        """Takes the model through the steps that were made, with the fault at the one that failed. What it then expects
        is how the action ended."""
        expected = thrown = None
        for position, step in enumerate(steps):
            try:
                wanted = course.go_on(thrown)
            except (Exception, KeyboardInterrupt) as raised:
                self.fail("step %d is %r instead of the end by %r" % (position, shape(step), raised))
            self.check(wanted is not None and alike(shape(step), wanted),
                       "step %d is %r instead of %r" % (position, shape(step), wanted))
            thrown = fault if position == failing else None
        try:
            wanted = course.go_on(thrown)
        except (Exception, KeyboardInterrupt) as raised:
            expected = raised
        else:
            self.check(wanted is None, "no step %r; error %r" % (wanted, error))
        if expected is fault:
            self.check(error is fault, "ended with %r instead of the host's own %r" % (error, fault))
        else:
            self.check(type(error) is type(expected), "ended with %r instead of %r" % (error, expected))

    def windows(self, events):
        """The session and the screens are the host's affair: it does now what was asked of it."""
        for event in events:
            if event[0] == "close":
                self.closed(event[1:])
            elif event[0] == "session.open":
                self.open(event[1].__name__, self.box.open_editor(), lambda: event[1](host.session, *event[2:]))
            elif event[0] == "session.openWithCallback" and event[2].__name__ == "ChoiceBox":
                self.box.top.callback = event[1]
                self.box.stack.append(Screen("ChoiceBox"))
            elif event[0] == "session.openWithCallback":
                self.box.top.callback = event[1]
                steps = self.box.open_chooser(event[3]) if event[2].__name__ == "DirChoose" else self.box.open_picker()
                self.open(event[2].__name__, steps, lambda: event[2](host.session, *event[3:]))

    def closed(self, result):
        """The screen below gets the result, if it waits for one."""
        if not self.box.stack or self.box.top.callback is None:
            return
        callback, self.box.top.callback = self.box.top.callback, None
        result = result[0] if result else None
        if callback.__name__ == "gotEPGpath":
            self.act("got path %r" % (result,), lambda: self.box.got_path(result), lambda: callback(result))
        else:
            texts = result and [reference._text for reference in result]
            self.act("picked %r" % (texts,), lambda: self.box.picked(texts), lambda: callback(result))

    # What must hold after each action

    def compare(self):
        box = self.box
        for key in box.current:
            element = host.element(key)
            self.check(same(element._value, box.current[key]), "%s is %r instead of %r" % (key, element._value, box.current[key]))
            self.check(same(element._saved, box.saved[key]), "%s was saved as %r, not %r" % (key, element._saved, box.saved[key]))
        there = read_bytes(box.path) if os.path.exists(box.path) else None
        self.check(there == box.file, "the file is %r instead of %r" % (there, box.file))
        for place in box.stack:
            if place.kind == "Veltro":
                widgets = dict(place.screen)
                self.check(widgets["status"]._text == place.status, "the status line is %r" % widgets["status"]._text)
                self.check([row[3] for row in place.screen.list] == [tag for _, tag in place.rows], "other rows")
                self.check(widgets["config"]._index == place.selected, "another row is selected")
            elif place.kind == "Edit_DVB_EPG_Blacklist":
                rows = [(row[0], row[3]) for row in place.screen.servicelist]
                self.check(rows == place.rows, "the rows are %r instead of %r" % (rows, place.rows))
            elif place.kind == "DirChoose":
                line = dict(place.screen)["driverfile"]._text
                self.check(line == place.line, "the line is %r instead of %r" % (line, place.line))

    def check(self, condition, text):
        if not condition:
            self.fail(text)

    def fail(self, text):
        raise AssertionError("%s\nafter: %s\nagain: VELTRO_WALK=%d %s -m unittest tests.trust.test_walks" % (
            text, ", ".join(self.log), self.seed, os.path.basename(sys.executable)))


def generator(steps):
    """What the model's operation yields, which begins with the first step."""
    yield steps()


def alike(step, wanted):
    return len(step) == len(wanted) and all(same(one, other) for one, other in zip(step, wanted))


def same(one, other):
    return one is other or (one == other and other == one)


class Walks(HostTestCase):
    def test_walks(self):
        one = os.environ.get("VELTRO_WALK")
        actions = faults = 0
        for seed in [int(one)] if one else range(WALKS):
            host.reset()
            self.Veltro.config = host.config
            vars(self.Veltro.epg_timer).clear()
            walk = Walk(self, seed)
            try:
                walk.run()
            finally:
                if one:
                    sys.__stdout__.write("\n".join(walk.log) + "\n")
            actions, faults = actions + len(walk.log), faults + walk.faults
        sys.__stdout__.write("walks: %d actions, %d faults of the host\n" % (actions, faults))
