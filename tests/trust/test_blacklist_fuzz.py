"""The blacklist file: any bytes through load and save, against a model of ten lines; and places where no file should be."""

import os
import random
import resource
import shutil
import signal
import subprocess
import sys
import tempfile
import unittest

from tests.host_double.files import read_bytes
from tests.module.case import HostTestCase, PLUGIN_PATH, host

SEEDS = int(os.environ.get("VELTRO_FUZZ_SEEDS", "300"))
SAVE_LINE = ("console", "[Veltro] writing DVB EPG blacklist failed\n")
PIECES = (b"#SERVICE ", b"#SERVICE", b"#service ", b" ", b"\t", b"\r", b"\n", b"\r\n", b"\0", b"\x0b", b"\x0c", b"\x1c",
          b"\x85", b"\xff", b"\xc3\xa4", b"\xe2\x80\xa8", b"\xed\xa0\x80", b"1:", b"4097:", b"1 :", b"2:", b"0:", b"1:0:1:", b":",
          b"1", b"N/A", b"http%3a//host/", b"x" * 300)


def model(data, names):
    """What the editor writes back of a file with this content."""
    kept, known = [], set()
    for line in data.split(b"\n"):
        if line.startswith(b"#SERVICE "):
            text = line.replace(b"#SERVICE ", b"").strip(b" \t\r\n")
            name = names.get(text) or b"N/A"
            if name not in known and text.split(b":")[0] in (b"1", b"4097"):
                known.add(name)
                kept.append(b"#SERVICE " + text + b"\n")
    return b"".join(kept)


def native(data):
    """Bytes as the module's text of them."""
    return data if str is bytes else data.decode("utf-8", "surrogateescape")


class FuzzTestCase(HostTestCase):
    load_in_setup = False

    def setUp(self):
        HostTestCase.setUp(self)
        self.Veltro = host.load(recording_files=False)

    def through(self, path):
        """Load the file and save it."""
        self.Veltro.Edit_DVB_EPG_Blacklist(host.session, PLUGIN_PATH).greenPressed()
        return read_bytes(path)


class Content(FuzzTestCase):
    def content(self, choose):
        def line():
            start = choose.choice((b"#SERVICE ", b"#SERVICE 1:", b"#SERVICE 4097:0:", b"", b" "))
            return start + b"".join(choose.choice(PIECES) for _ in range(choose.randrange(8)))
        if choose.random() < 0.1:
            return bytes(bytearray(choose.randrange(256) for _ in range(choose.randrange(2000))))
        return choose.choice((b"\n", b"\r\n", b"\n\n")).join(line() for _ in range(choose.randrange(40)))

    def named(self, data, choose):
        """A name for most of the references in the file; some of them share one."""
        names = {}
        for line in data.split(b"\n"):
            text = line.replace(b"#SERVICE ", b"").strip(b" \t\r\n")
            names[text] = choose.choice((b"", b"One", b"Two", b"N/A", b"Name of " + text, b"Name of " + text))
        host.service_names.update((native(text), native(name)) for text, name in names.items())
        return names

    def test_any_bytes(self):
        for seed in range(SEEDS):
            choose = random.Random(seed)
            data = self.content(choose)
            names = self.named(data, choose)
            path = self.etc(data)
            written = self.through(path)
            self.assertEqual(written, model(data, names), "seed %d, file %r" % (seed, data))
            self.assertEqual(self.through(path), written, "seed %d, the second time" % seed)
            host.service_names.clear()
            host.recorder.reset()

    def test_a_hundred_thousand_lines(self):
        texts = [("1:0:19:%X:3FB:1:C00000:0:0:0:" % number).encode("ascii") for number in range(100000)]
        names = dict((text, b"Name of " + text) for text in texts)
        host.service_names.update((native(text), native(name)) for text, name in names.items())
        data = b"".join(b"#SERVICE " + text + b"\n" for text in texts)
        host.recorder.recording = False
        self.assertEqual(self.through(self.etc(data)), data)


class Places(FuzzTestCase):
    """What stands at the file's path, and what can be done there."""

    REFERENCE = "1:0:1:"

    def editor_on(self, path, content=()):
        """An editor with one row, opened while nothing was wrong yet."""
        screen = self.editor(("One", self.REFERENCE))
        screen.filename = path
        for number, text in enumerate(content):
            screen.servicelist.append(("Name %d" % number, None, 0, text))
        return screen

    def fails_to_save(self, screen):
        """Saving fails, is reported, and no file is left."""
        screen.saveFile()
        self.assertIn(SAVE_LINE, host.recorder.calls)
        self.assertFalse(os.path.lexists(screen.filename))

    def test_a_directory(self):
        path = self.etc()
        screen = self.editor_on(path)
        os.mkdir(path)
        self.error_of(IOError, self.editor)
        host.recorder.clear()
        self.error_of(OSError, screen.greenPressed)  # what stands there can't be deleted as a file
        self.assertIn(SAVE_LINE, host.recorder.calls)
        self.assertNotIn(("close",), host.recorder.calls)
        self.assertTrue(os.path.isdir(path))

    def test_no_directory(self):
        path = os.path.join(os.path.dirname(self.etc()), "missing", "blacklist_dvb_epg")
        screen = self.editor_on(path)
        self.error_of(OSError, screen.saveFile)
        self.assertIn(SAVE_LINE, host.recorder.calls)

    def test_a_link(self):
        path = self.etc()
        target = path + ".there"
        with open(target, "wb") as file:
            file.write(b"#SERVICE 1:0:2:\nrest\n")
        os.symlink(target, path)
        self.assertEqual(self.through(path), b"#SERVICE 1:0:2:\n")
        self.assertTrue(os.path.islink(path))
        self.assertEqual(read_bytes(target), b"#SERVICE 1:0:2:\n")

    def test_a_link_to_nothing(self):
        path = self.etc()
        os.symlink(path + ".there", path)
        self.assertEqual(self.through(path), b"")
        self.assertTrue(os.path.exists(path + ".there"))

    def test_a_link_in_a_circle(self):
        path = self.etc()
        os.symlink(path, path)
        self.fails_to_save(self.editor_on(path))

    def test_a_full_device(self):
        for content in ((), ["1:0:%d:" % number for number in range(5000)]):  # fails on closing, and on writing
            path = self.etc()
            screen = self.editor_on(path, content)  # before, since that device is read without an end
            os.symlink("/dev/full", path)
            self.fails_to_save(screen)
            host.recorder.clear()
        self.assertTrue(os.path.exists("/dev/full"))

    def test_a_limit_on_the_size_of_files(self):
        """As if the disk were full, while the old file exists: the old file goes, too."""
        path = self.etc(b"#SERVICE 1:0:9:\n")
        screen = self.editor_on(path, ["1:0:%d:" % number for number in range(5000)])
        before = resource.getrlimit(resource.RLIMIT_FSIZE)
        ignored = signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
        resource.setrlimit(resource.RLIMIT_FSIZE, (4096, before[1]))
        try:
            self.fails_to_save(screen)
        finally:
            resource.setrlimit(resource.RLIMIT_FSIZE, before)
            signal.signal(signal.SIGXFSZ, ignored)

    def test_a_full_disk_while_the_old_file_exists(self):
        folder = tempfile.mkdtemp(prefix="veltro-")
        self.addCleanup(shutil.rmtree, folder, ignore_errors=True)
        with open(os.devnull, "w") as nothing:
            mounted = os.geteuid() == 0 and subprocess.call(
                ["mount", "-t", "tmpfs", "-o", "size=64k", "tmpfs", folder], stderr=nothing) == 0
        if not mounted:
            raise unittest.SkipTest("no small disk can be mounted here; /dev/full and the size limit stand in for it")
        self.addCleanup(subprocess.call, ["umount", folder])
        path = os.path.join(folder, "blacklist_dvb_epg")
        for old, content in ((b"", ()), (b"#SERVICE 1:0:9:\n", ["1:0:%d:" % number for number in range(20000)])):
            with open(path, "wb") as file:
                file.write(old)
            screen = self.editor_on(path, content)
            rest = os.open(os.path.join(folder, "rest"), os.O_WRONLY | os.O_CREAT)
            try:
                while True:
                    os.write(rest, b"x" * 4096)
            except OSError:
                os.close(rest)
            self.fails_to_save(screen)
            os.remove(os.path.join(folder, "rest"))
            host.recorder.clear()

    def as_nobody(self, work):
        """Run it in a process of a user who may do nothing; an error there is one here."""
        child = os.fork()
        if child == 0:
            status = 1
            try:
                if os.geteuid() == 0:
                    os.setgroups([])
                    os.setgid(65534)
                    os.setuid(65534)
                work()
                status = 0
            except BaseException:
                sys.__stderr__.write("%r\n" % (sys.exc_info(),))
            finally:
                os._exit(status)
        self.assertEqual(os.waitpid(child, 0)[1], 0)

    def test_no_permission(self):
        path = self.etc(b"#SERVICE 1:0:9:\n")
        folder = os.path.dirname(path)
        screen = self.editor_on(path)
        os.chmod(os.path.dirname(folder), 0o755)
        os.chmod(path, 0)
        os.chmod(folder, 0o555)
        self.addCleanup(os.chmod, folder, 0o755)

        def work():
            host.recorder.clear()
            self.error_of(IOError, self.editor)  # reading
            self.error_of(OSError, screen.saveFile)  # writing, and then deleting
            self.assertIn(SAVE_LINE, host.recorder.calls)
        self.as_nobody(work)
        os.chmod(folder, 0o755)
        self.assertEqual(read_bytes(path) if os.geteuid() == 0 else b"#SERVICE 1:0:9:\n", b"#SERVICE 1:0:9:\n")
