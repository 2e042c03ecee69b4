"""What the module looks like from outside: its classes and operations, their methods, their help."""

import pydoc
import types
import unittest
import weakref

from tests.module.case import HostTestCase, PYTHON2, builtins, host
from tests.module.operations import BASES, OPERATIONS, PICKER, PRIVATE, REQUIRED, bare, each, shown_name

PUBLIC = ("doEPGAction", "Veltro", "Edit_DVB_EPG_Blacklist", PICKER, "find_in_list", "DirChoose", "EPGTimer")


class Classes(HostTestCase):
    def test_bases_in_order(self):
        for class_name, bases in BASES.items():
            expected = tuple(getattr(self.Veltro, base) for base in bases)
            self.assertEqual(getattr(self.Veltro, class_name).__bases__, expected)

    def test_classes_are_made_by_the_hosts_own_kind_of_class(self):
        class Kind(type):
            pass
        for module, name in (("Screens.Screen", "Screen"), ("Screens.ChannelSelection", "SimpleChannelSelection")):
            base = host.modules[module][name]
            host.modules[module][name] = Kind(name, (base,), {})
        module = host.load()
        for class_name in BASES:
            self.assertIs(type(getattr(module, class_name)), Kind)
        self.assertIsNot(type(module.EPGTimer), Kind)

    def test_the_timer_class_has_no_base(self):
        self.assertIn(self.Veltro.EPGTimer.__bases__, ((), (object,)))
        self.assertNotIn("__init__", vars(self.Veltro.EPGTimer))

    def test_exactly_the_operations_are_defined(self):
        for class_name, operations in OPERATIONS:
            defined = [name for name, value in vars(getattr(self.Veltro, class_name)).items() if callable(value)]
            self.assertEqual(sorted(defined), sorted(name for name, _ in operations))

    @unittest.skipIf(PYTHON2, "a class of Python 2.7 keeps no order")
    def test_operations_are_defined_in_their_order(self):
        for class_name, operations in OPERATIONS:
            names = [name for name, _ in operations]
            defined = [name for name in vars(getattr(self.Veltro, class_name)) if name in names]
            self.assertEqual(defined, names)

    def test_the_private_operation_bears_its_mangled_name(self):
        self.assertIn(PRIVATE, vars(getattr(self.Veltro, PICKER)))
        self.assertNotIn("__onExecCallback", vars(getattr(self.Veltro, PICKER)))

    def test_names_and_module(self):
        for class_name, _ in OPERATIONS:
            kind = getattr(self.Veltro, class_name)
            self.assertEqual((kind.__name__, kind.__module__), (class_name, "Veltro"))
        self.assertEqual(self.Veltro.doEPGAction.__name__, "doEPGAction")
        self.assertEqual(self.Veltro.find_in_list.__name__, "find_in_list")
        if not PYTHON2:
            self.assertEqual(self.Veltro.DirChoose.__qualname__, "DirChoose")
            self.assertEqual(self.Veltro.DirChoose.green.__qualname__, "DirChoose.green")

    def test_instances_are_ordinary_objects(self):
        for class_name, _ in OPERATIONS:
            instance = bare(self.Veltro, class_name)
            self.assertEqual(vars(instance), {})
            instance.anything = 1
            self.assertEqual(vars(instance), {"anything": 1})
            there = weakref.ref(instance)
            del instance
            self.assertIsNone(there())

    def test_class_attributes_can_be_set(self):
        self.Veltro.DirChoose.skin = "<screen/>"
        self.assertEqual(bare(self.Veltro, "DirChoose").skin, "<screen/>")

    def test_screens_declare_no_layout(self):
        for class_name in BASES:
            self.assertFalse(hasattr(getattr(self.Veltro, class_name), "skin"))
            self.assertNotIn("skinName", vars(getattr(self.Veltro, class_name)))


class Methods(HostTestCase):
    """Hosts look at type(f) of a callback, and pass what is no plain method to exec."""

    def test_bound_operations_are_plain_methods(self):
        for class_name, operation, _ in each():
            bound = getattr(bare(self.Veltro, class_name), operation)
            self.assertIs(type(bound), types.MethodType)

    def test_same_type_as_a_method_of_the_host(self):
        for screen, name in ((self.settings(), "up"), (self.chooser(), "ok"), (self.editor(), "delete"),
                             (self.picker(), "cancel")):
            self.assertIs(type(getattr(screen, name)), type(screen.close))

    def test_equality_and_hash(self):
        for class_name, operations in OPERATIONS:
            one, other = bare(self.Veltro, class_name), bare(self.Veltro, class_name)
            if class_name != "EPGTimer":
                one["which"], other["which"] = 1, 2  # two empty screens are two empty dicts, thus equal
            for operation, _ in operations:
                bound = getattr(one, operation)
                self.assertTrue(bound == getattr(one, operation))
                self.assertFalse(bound != getattr(one, operation))
                self.assertFalse(bound == getattr(other, operation))
                for different, _ in operations:
                    if different != operation:
                        self.assertFalse(bound == getattr(one, different), (operation, different))
                        self.assertTrue(bound != getattr(one, different))
        self.assertEqual(hash(self.Veltro.epg_timer.init_timer), hash(self.Veltro.epg_timer.init_timer))

    def test_a_callback_can_be_taken_out_of_a_list_again(self):
        timer = self.Veltro.epg_timer
        callbacks = [timer.setSession, timer.do_epg_action, timer.init_timer]
        callbacks.remove(timer.do_epg_action)
        self.assertEqual(callbacks, [timer.setSession, timer.init_timer])

    def test_a_bound_operation_knows_its_instance_and_its_name(self):
        for class_name, operation, _ in each():
            instance = bare(self.Veltro, class_name)
            bound = getattr(instance, operation)
            self.assertIs(bound.__self__, instance)
            self.assertIn(bound.__name__, (operation, shown_name(operation)))
            self.assertIs(bound.__func__, getattr(instance, operation).__func__)

    def test_operations_can_be_called_through_their_class(self):
        self.assertIsNone(self.Veltro.EPGTimer.setSession(self.Veltro.epg_timer, "session"))
        self.assertEqual(self.Veltro.epg_timer.session, "session")

    def test_an_operation_without_instance_is_refused(self):
        for class_name, operation, _ in each():
            self.error_of(TypeError, getattr(getattr(self.Veltro, class_name), operation))
        self.assertEqual(host.recorder.events, [])

    def test_an_operation_of_an_odd_instance_fails_like_any_other(self):
        for class_name, operation, parameters in each():
            function = vars(getattr(self.Veltro, class_name))[operation]
            required = [0 for _, default in parameters or () if default is REQUIRED]
            for odd in (None, 5, "text", {}, type):
                try:
                    function(odd, *required)
                except Exception:
                    pass

    def test_an_operation_can_be_borrowed_by_another_class(self):
        function = vars(self.Veltro.EPGTimer)["setSession"]

        class Other(object):
            remember = function
        other = Other()
        self.assertIs(type(other.remember), types.MethodType)
        other.remember("session")
        self.assertEqual(other.session, "session")


class Help(HostTestCase):
    def test_every_public_name_has_a_doc_text(self):
        self.assertTrue(self.Veltro.__doc__)
        for name in PUBLIC:
            self.assertTrue(getattr(self.Veltro, name).__doc__, name)
        for class_name, operation, _ in each():
            text = getattr(getattr(self.Veltro, class_name), operation).__doc__
            self.assertTrue(text and text.strip(), (class_name, operation))
            self.assertEqual(getattr(bare(self.Veltro, class_name), operation).__doc__, text)

    def test_each_operation_has_a_text_of_its_own(self):
        for class_name, operations in OPERATIONS:
            texts = [getattr(getattr(self.Veltro, class_name), name).__doc__ for name, _ in operations]
            self.assertEqual(len(set(texts)), len(texts), class_name)

    def test_pydoc_renders_the_module(self):
        text = pydoc.plain(pydoc.render_doc(self.Veltro))
        for name in PUBLIC:
            self.assertIn(name, text)
        for class_name, operation, _ in each():
            if operation != PRIVATE:
                self.assertIn(operation, text)

    def test_representations_name_what_they_show(self):
        self.assertIn("find_in_list", repr(self.Veltro.find_in_list))
        self.assertIn("init_timer", repr(self.Veltro.epg_timer.init_timer))

    def test_the_file_opener_is_no_public_name(self):
        """Whoever replaces `open` in the namespace is not to be surprised that nothing changes."""
        self.assertFalse(getattr(self.Veltro, "open", None) is builtins.open)
