"""Hosts as nobody builds them. Each thing ends in an ordinary Python error or works; the process never ends by a signal."""

import gc
import pickle
import sys
import textwrap
import threading
import unittest

from tests.module.case import Boom, HostTestCase, PLUGIN_PATH, PYTHON2, builtins, host
from tests.module.operations import OPERATIONS, PICKER

try:
    from importlib import reload
except ImportError:
    reload = builtins.reload

PREPARE = """
import gc, sys
from tests.host_double import host
host.reset(recording=False)
host.start()
Veltro = host.load()
"""
INTERPRETERS = "_interpreters" if sys.version_info >= (3, 13) else "_xxsubinterpreters"


class OwnProcess(HostTestCase):
    """Scripts in an interpreter of their own, since they might take it down."""

    load_in_setup = False

    def ends_well(self, script):
        """It ends without a signal, and as the script says."""
        self.assertEqual(self.run_apart(PREPARE + textwrap.dedent(script)), 0)

    def test_shutdown_with_live_screens_and_an_armed_timer(self):
        self.ends_well("""
            screens = [Veltro.Veltro(host.session, ""), Veltro.DirChoose(host.session, "/"),
                       Veltro.Edit_DVB_EPG_Blacklist(host.session, ""),
                       Veltro.DVB_EPG_blacklist_ChannelSelection(host.session, "")]
            screens[0].myself = screens[0]
            Veltro.epg_timer.setSession(host.session)
            Veltro.epg_timer.init_timer()
            sys.keep = screens, Veltro.epg_timer.epg_timer
            host.stop()
            """)

    def test_operations_that_run_while_the_interpreter_ends(self):
        """Whatever of the host is gone by then: an error is printed, as for every __del__ and every exit function."""
        self.ends_well("""
            import atexit

            class Late(object):
                def __init__(self, operation):
                    self.operation = operation

                def __del__(self):
                    try:
                        self.operation()
                    except Exception:
                        pass

            screen = Veltro.Veltro(host.session, "")
            atexit.register(screen.createSetup)
            atexit.register(Veltro.epg_timer.init_timer)
            sys.late = [Late(screen.createSetup), Late(Veltro.epg_timer.init_timer), Late(screen.keySave)]
            Veltro.late = Late(Veltro.Veltro)
            late = Late(screen.up)
            sys.stdout = sys.__stdout__
            """)

    def test_operations_that_run_while_the_collector_takes_the_module_apart(self):
        """An object that the collector does not know may still call when what is around it has been cleared."""
        self.ends_well("""
            source = '''if True:
                class Unseen(object):
                    __slots__ = ()
                    def __del__(self):
                        for use in (lambda: action("save"), lambda: bound(), lambda: unbound.__get__(5, int)(),
                                    lambda: repr(action)):
                            try:
                                use()
                            except Exception:
                                pass
                '''

            def leave_garbage():
                screen = Veltro.Veltro(host.session, "")
                gc.collect()
                gc.disable()

                class First(object):
                    __slots__ = ()
                garbage = [First(), vars(Veltro)]
                garbage.append(garbage)
                scope = {"__builtins__": __builtins__}
                exec(source, scope)
                scope.update(action=Veltro.doEPGAction, unbound=vars(Veltro.Veltro)["up"], bound=screen.up)
                garbage[0].__class__ = scope["Unseen"]

            leave_garbage()
            host.stop()
            host.reset()
            Veltro = None
            host.start()
            host.load()
            gc.collect()
            host.stop()
            """)

    def test_import_in_another_thread(self):
        self.ends_well("""
            import threading
            from tests.host_double import loader
            loader.forget()
            loaded = []

            def work():
                module = host.load()
                screen = module.Veltro(host.session, "")
                screen.up()
                loaded.append((module, screen))

            thread = threading.Thread(target=work)
            thread.start()
            thread.join()
            (module, screen), = loaded
            screen.down()
            module.doEPGAction("save")
            host.stop()
            """)

    @unittest.skipIf(PYTHON2, "Python 2.7 starts no second interpreter from within")
    def test_import_in_a_second_interpreter(self):
        """Works, or is refused as an import error (from 3.12 on); the first interpreter goes on as before."""
        self.ends_well("""
            import os, %(interpreters)s as interpreters
            second = interpreters.create()
            script = '''if True:
                import os, sys
                sys.path.insert(0, os.getcwd())
                try:
                    from tests.host_double import host
                    host.reset(recording=False)
                    host.start()
                    module = host.load()
                    module.Veltro(host.session, "").up()
                    module.doEPGAction("save")
                    host.stop()
                except ImportError as error:
                    assert "interpreter" in str(error), error
                '''
            try:
                answer = interpreters.run_string(second, script)
                assert answer is None, answer
                Veltro.Veltro(host.session, "").up()
                interpreters.destroy(second)
            finally:
                Veltro.Veltro(host.session, "").up()
                host.stop()
            """ % {"interpreters": INTERPRETERS})

    def test_many_threads(self):
        self.ends_well("""
            import threading
            screens = [Veltro.Veltro(host.session, "") for _ in range(4)]
            def work(screen):
                for _ in range(300):
                    screen.changedEntry()
                    screen.up()
            threads = [threading.Thread(target=work, args=(screen,)) for screen in screens]
            for thread in threads:
                thread.start()
            for thread in threads:
                thread.join()
            host.stop()
            """)

    def test_endless_recursion(self):
        """Operations that are overridden by each other, with and without Python code in between, end in RecursionError."""
        self.ends_well("""
            Recursion = getattr(__builtins__, "RecursionError", RuntimeError)
            class Round(Veltro.Veltro):
                def createSetup(self):
                    if self.round:
                        self.changedEntry()
                    else:
                        Veltro.Veltro.createSetup(self)
                round = False

            def endless(function, *arguments):
                try:
                    function(*arguments)
                except Recursion:
                    return
                raise AssertionError(function)

            screen = Round(host.session, "")
            screen.round = True
            for _ in range(3):
                endless(screen.changedEntry)
            screen = Veltro.Veltro(host.session, "")
            screen.epgBackupfinished = lambda text: screen.up()
            endless(screen.down)
            editor = Veltro.Edit_DVB_EPG_Blacklist(host.session, "")
            editor.cancel = editor.redPressed
            endless(editor.redPressed)
            editor.delete = editor.yellowPressed
            endless(editor.yellowPressed)

            class Knot(object):
                def __getitem__(self, index):
                    return self
                def __eq__(self, other):
                    return Veltro.find_in_list([self], other)
                __hash__ = None
            endless(Veltro.find_in_list, [Knot()], 1)
            del screen.epgBackupfinished
            screen.up()  # all as before
            host.stop()
            """)

    def test_deep_recursion_that_ends(self):
        self.ends_well("""
            screen = Veltro.Veltro(host.session, "")
            left = [60]
            def deeper(text):
                left[0] -= 1
                if left[0]:
                    screen.up()
                else:
                    raise KeyError("bottom")
            screen.epgBackupfinished = deeper
            try:
                screen.up()
            except KeyError:
                pass
            else:
                raise AssertionError
            host.stop()
            """)


class OddHosts(HostTestCase):
    load_in_setup = False

    def load_error(self, kinds):
        return self.error_of(kinds, host.load)

    def test_reload(self):
        self.Veltro = host.load()
        screen = self.settings()
        try:
            again = reload(self.Veltro)
        except ImportError as error:  # the folder of the binary is not on the path any more
            self.assertIn("Veltro", str(error))
            again = self.Veltro
        screen.up()
        again.Veltro(host.session, PLUGIN_PATH).up()

    def test_a_module_that_is_forgotten_while_a_screen_lives(self):
        self.Veltro = host.load()
        screen = self.settings()
        self.Veltro = None
        host.load()
        gc.collect()
        screen.up()
        try:
            screen.changedEntry()
        except AttributeError:
            self.assertTrue(PYTHON2)  # which sets the names of a module that goes to None

    def with_screen(self, Screen):
        host.modules["Screens.Screen"]["Screen"] = Screen
        return host.load()

    def screen_class(self):
        return host.modules["Screens.Screen"]["Screen"]

    def test_a_metaclass(self):
        """It sees a class statement as the language makes one: its own namespace, the names in their order."""
        made = []

        class Meta(type):
            def __new__(mcs, name, bases, namespace):
                made.append((name, type(namespace).__name__, "keyOk" in namespace))
                return type.__new__(mcs, name, bases, dict(namespace))

            @classmethod
            def __prepare__(mcs, name, bases):
                return Namespace()

        class Namespace(dict):
            pass
        Screen = Meta("Screen", (self.screen_class(),), {})
        self.Veltro = self.with_screen(Screen)
        self.assertIsInstance(self.Veltro.Veltro, Meta)
        self.assertIn(("Veltro", "dict" if PYTHON2 else "Namespace", True), made)
        self.settings().up()

    def test_a_metaclass_that_fails_or_makes_something_else(self):
        class Meta(type):
            answer = None

            def __new__(mcs, name, bases, namespace):
                if name == "Veltro":
                    if isinstance(mcs.answer, Exception):
                        raise mcs.answer
                    return mcs.answer
                return type.__new__(mcs, name, bases, namespace)
        Screen = Meta("Screen", (self.screen_class(),), {})
        Meta.answer = Boom()
        self.assertIs(self.error_of(Boom, self.with_screen, Screen), Meta.answer)
        Meta.answer = 5
        self.assertEqual(self.with_screen(Screen).Veltro, 5)

    @unittest.skipIf(PYTHON2, "Python 2.7 has no __prepare__")
    def test_a_metaclass_with_an_odd_namespace(self):
        class Meta(type):
            answer = None

            @classmethod
            def __prepare__(mcs, name, bases):
                return mcs.answer

        class Refusing(dict):
            def __setitem__(self, name, value):
                raise Boom()
        Screen = type.__new__(Meta, "Screen", (self.screen_class(),), {})
        for answer, kind in ((5, TypeError), (None, TypeError), (Refusing(), Boom)):
            Meta.answer = answer
            self.error_of(kind, self.with_screen, Screen)

    def test_metaclasses_that_do_not_go_together(self):
        one, other = (type(name, (type,), {}) for name in ("One", "Other"))
        host.modules["Screens.Screen"]["Screen"] = one("Screen", (self.screen_class(),), {})
        host.modules["Components.ConfigList"]["ConfigListScreen"] = other("ConfigListScreen", (object,), {})
        self.load_error(TypeError)

    def test_slots(self):
        """A screen that has no place for the module's attributes fails when one is set, not before and not harder."""
        class Screen(object):
            __slots__ = ()

            def __init__(self, session):
                pass
        host.modules["Components.ConfigList"]["ConfigListScreen"] = type("ConfigListScreen", (object,), {"__slots__": ()})
        self.Veltro = self.with_screen(Screen)
        # The module's classes have an instance dictionary, since they declare no slots of their own.
        screen = self.Veltro.Veltro.__new__(self.Veltro.Veltro)
        screen.anything = 1
        self.error_of((TypeError, AttributeError), self.Veltro.Veltro, host.session, PLUGIN_PATH)

    @unittest.skipIf(PYTHON2, "Python 2.7 has no __init_subclass__")
    def test_init_subclass(self):
        heard = []

        class Screen(self.screen_class()):
            def __init_subclass__(cls, **keywords):
                heard.append((cls.__name__, keywords))
                if Screen.error is not None:
                    raise Screen.error
            error = None
        self.Veltro = self.with_screen(Screen)
        self.assertEqual([name for name, keywords in heard if not keywords],
                         ["Veltro", "Edit_DVB_EPG_Blacklist", "DirChoose"])
        self.settings().up()
        Screen.error = Boom()
        self.assertIs(self.error_of(Boom, host.load), Screen.error)

    def test_bases_that_are_no_classes(self):
        for base in (None, 5, "Screen", lambda: None, len, object()):
            try:
                self.with_screen(base)
            except Exception as error:
                self.assertIsInstance(error, TypeError, base)
            else:
                self.assertTrue(PYTHON2, base)  # where any callable type of a base will do


class OddValues(HostTestCase):
    def everything(self):
        """Operations of every screen, each prepared to be called once."""
        for name in ("up", "down", "createSetup", "changedEntry", "keyOk", "keySave", "keyClose"):
            for row in (1, 3, 16, 17, 20, 21, 22):
                yield lambda name=name, row=row: getattr(self.settings(selected=row), name)()
        for name in ("cancel", "green", "up", "ok", "updateFile"):
            yield lambda name=name: getattr(self.chooser(), name)()
        for name in ("greenPressed", "bluePressed", "delete", "loadFile", "setWindowTitle"):
            yield lambda name=name: getattr(self.editor(("One", "1:0:")), name)()
        for name in ("doNothing", "channelSelected", "cancel", "setModeTv"):
            yield lambda name=name: getattr(self.picker(host.reference("1:7:", content=["1:0:"])), name)()
        yield self.Veltro.epg_timer.init_timer
        yield self.Veltro.epg_timer.do_epg_action

    def run_all(self, allowed):
        """Each works, or ends in one of the allowed errors."""
        failed = 0
        self.etc(b"#SERVICE 1:0:\n")
        for operation in self.everything():
            try:
                operation()
            except allowed:
                failed += 1
        return failed

    def test_translations_that_are_no_texts(self):
        for answer in (None, 5, b"\xff", u"\u00e4", [], object(), type("Text", (str,), {})("x")):
            self.replace(builtins, "_", lambda text, answer=answer: answer)
            self.run_all((TypeError, UnicodeError))

    def test_an_element_whose_value_raises(self):
        for key in ("misc.epgcache_filename", "misc.epg_is_client_stb", "misc.epg_data_timer"):
            for error in (Boom, KeyboardInterrupt, AttributeError):
                branch, name = self.branch(key)
                there = branch._children[name]

                class Raising(type(there)):
                    @property
                    def value(self):
                        raise error("value")
                branch._children[name] = Raising(there._path)
                try:
                    self.assertTrue(self.run_all(error))
                finally:
                    branch._children[name] = there

    def branch(self, key):
        from tests.host_double.configuration import branch_of
        return branch_of(host.config, key)

    def test_odd_values_of_settings(self):
        odd = (None, b"\xff\x00", u"\u20ac", 10 ** 40, -1, 1.5, "abc", "", [], (), (1, 2), {}, object(), "/epg.dat" * 3)
        for key in ("misc.epgcache_filename", "misc.epg_is_client_stb", "misc.epg_data_timer"):
            there = self.value(key)
            for value in odd:
                self.set_value(key, value)
                self.run_all((TypeError, ValueError, OverflowError))
            self.set_value(key, there)

    def test_built_ins_that_are_replaced(self):
        """What start-up bound stays bound; what is looked up late is only what the language of the host allows."""
        self.Veltro = host.load(recording_files=False)
        screen, editor = self.settings(), self.editor(("One", "1:0:"))
        editor.filename = self.etc()
        references = [host.reference("1:0:1:")]
        host.recorder.recording = False  # the double, too, is written in Python
        for name in ("open", "set", "int", "tuple", "bool", "IOError", "sorted", "hash"):
            there = getattr(builtins, name)
            setattr(builtins, name, None)
            try:
                screen.changedEntry()
                editor.finishedChannelSelection(references)
                editor.saveFile()
                self.Veltro.find_in_list([(1,)], 1)
            finally:
                setattr(builtins, name, there)

    @unittest.skipIf(PYTHON2, "Python 2.7 takes an error of a comparison for a name that is not there")
    def test_a_name_that_can_not_be_compared(self):
        class Refusing(str):
            def __eq__(self, other):
                raise Boom()

            def __hash__(self):
                return hash("_")
        screen = self.editor()
        names = vars(self.Veltro)
        bad = Refusing("bad")
        names[bad] = 1
        try:
            self.error_of(Boom, screen.setWindowTitle)
        finally:
            Refusing.__eq__ = lambda one, other: one is other
            del names[bad]

    def test_instances_of_something_else(self):
        for class_name, operations in OPERATIONS:
            for name, parameters in operations:
                operation = vars(getattr(self.Veltro, class_name))[name]
                arguments = ("",) * len(parameters or ())
                for instance in (None, 5, "text", object(), type, [], {}):
                    try:
                        operation(instance, *arguments)
                    except Exception:
                        pass  # any ordinary error
        self.assertTrue(PICKER)

    def test_operations_are_made_by_the_module_alone(self):
        kind = type(self.Veltro.doEPGAction)
        self.error_of(TypeError, kind)
        self.error_of(TypeError, object.__new__, kind)
        self.error_of((TypeError, pickle.PicklingError, AttributeError), pickle.dumps, vars(self.Veltro.Veltro)["up"], 2)
        with self.assertRaises(TypeError):
            type("Sub", (kind,), {})

    def test_references_that_lie(self):
        """Lists that grow, shrink or fail while they are read."""
        screen = self.editor()

        class Endless(list):
            def __iter__(self):
                yield "1:0:"
                raise Boom()
        self.error_of(Boom, screen.finishedChannelSelection, Endless([1]))
        growing = ["1:%d:" % number for number in range(3)]

        class Meddling(object):
            def __init__(proxy, reference):
                proxy.ref, proxy.text = proxy, reference
                del growing[:]
                del screen.servicelist[:]
                gc.collect()

            def getServiceName(proxy):
                return "name of " + proxy.text

            def toString(proxy):
                return proxy.text
        self.replace(self.Veltro, "ServiceReference", Meddling)
        screen.finishedChannelSelection(growing)
        self.assertEqual(len(screen.servicelist), 1)

    def test_from_another_thread_while_this_one_waits(self):
        screen, errors = self.settings(), []

        def work():
            try:
                screen.up()
                screen.changedEntry()
            except BaseException as error:
                errors.append(error)
        thread = threading.Thread(target=work)
        thread.start()
        thread.join()
        self.assertEqual(errors, [])
