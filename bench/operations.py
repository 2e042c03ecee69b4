"""What is measured: each operation on a host of its own, for all kinds in the same way."""

import os
import shutil
import tempfile

from tests.host_double import host as strict_host

from . import kinds
from .quick_host import host as quick_host

PLUGIN_PATH = "/usr/lib/enigma2/python/Plugins/Extensions/Veltro"
EPG_FILE = "/media/hdd/epg.dat"
BOUQUET = "1:7:1:0:"
MEMORY = "/dev/shm"  # files there cost no disk

OPERATIONS = []  # (title, whether it grows with n, prepare)


def operation(title, grows=False):
    def register(prepare):
        OPERATIONS.append((title, grows, prepare))
        return prepare
    return register


class Bench(object):
    """A host, and one of the kinds that run on it. `prepare` functions get one and return what is timed: a list of
    functions, each of which is called once. With `recording` the host is the tests' double."""

    def __init__(self, kind, recording=False):
        self.host = host = strict_host if recording else quick_host
        host.reset(recording)
        host.start()
        self.folder = tempfile.mkdtemp(prefix="veltro-bench-", dir=MEMORY if os.path.isdir(MEMORY) else None)
        os.mkdir(os.path.join(self.folder, "enigma2"))
        self.file = os.path.join(self.folder, "enigma2", "blacklist_dvb_epg")
        host.set_sysconfdir(self.folder)
        self.module = kinds.LOADERS[kind](host)

    def close(self):
        self.host.stop()
        shutil.rmtree(self.folder)

    def services(self, n):
        """n services, each with a name of its own, by their texts."""
        texts = ["1:0:19:%X:3FB:1:C00000:0:0:0:" % number for number in range(n)]
        self.host.service_names.update((text, "Service %d HD" % number) for number, text in enumerate(texts))
        return texts

    def settings(self, selected=1):
        screen = self.module.Veltro(self.host.session, PLUGIN_PATH)
        dict.__getitem__(screen, "config")._index = selected - 1
        return screen

    def editor(self):
        return self.module.Edit_DVB_EPG_Blacklist(self.host.session, PLUGIN_PATH)

    def write_blacklist(self, texts):
        with open(self.file, "w") as file:
            file.writelines("#SERVICE %s\n" % text for text in texts)


@operation("open the settings screen")
def construct(bench, times):
    return [bench.settings] * times


@operation("rebuild the list")
def rebuild(bench, times):
    return [bench.settings().changedEntry] * times


@operation("a key")
def key(bench, times):
    return [bench.settings().up] * times


@operation("the save key")
def save_key(bench, times):
    return [bench.settings().keySave for _ in range(times)]  # each closes its screen


@operation("OK on \"Save EPG cache\"")
def ok_save(bench, times):
    return [bench.settings(selected=20).keyOk] * times


@operation("add n services", grows=True)
def add(bench, n):
    references = [bench.host.reference(text) for text in bench.services(n)]
    screen = bench.editor()
    return [lambda: screen.finishedChannelSelection(references)]


@operation("load a file of n lines", grows=True)
def load(bench, n):
    screen = bench.editor()
    bench.write_blacklist(bench.services(n))
    return [screen.loadFile]


@operation("save a file of n lines", grows=True)
def save(bench, n):
    bench.write_blacklist(bench.services(n))
    return [bench.editor().saveFile]


@operation("pick a bouquet of n services", grows=True)
def pick(bench, n):
    screen = bench.module.DVB_EPG_blacklist_ChannelSelection(bench.host.session, PLUGIN_PATH)
    screen.selection = screen._selection = bench.host.reference(BOUQUET, content=bench.services(n))
    return [screen.doNothing]


@operation("find_in_list on n rows", grows=True)
def find(bench, n):
    rows = [("Service %d HD" % number, None, 0, text) for number, text in enumerate(bench.services(n))]
    return [lambda: bench.module.find_in_list(rows, "not there")]


def verify():
    """Module and floor do the same to their host, event by event of the kind that counts, and leave the same file."""
    for title, grows, prepare in OPERATIONS:
        seen = []
        for kind in ("module", "floor"):
            bench = Bench(kind, recording=True)
            try:
                timed = prepare(bench, 20 if grows else 1)
                strict_host.recorder.clear()
                for function in timed:
                    function()
                seen.append((literal(strict_host.recorder.calls, bench.folder), content(bench.file)))
            finally:
                bench.close()
        if seen[0] != seen[1]:
            raise AssertionError("%s: the module and its floor differ:\n%r\n%r" % ((title,) + tuple(seen)))


def verify_replaced():
    """What a subclass or another module replaces between two keys is taken up by the module and by the floor."""
    for kind in ("module", "floor"):
        bench = Bench(kind, recording=True)
        try:
            screen, seen = bench.settings(selected=20), []
            screen.__class__ = _with_own_texts(bench.module.Veltro)
            bench.module._ = lambda text: "%s"
            bench.module.doEPGAction = seen.append
            screen.keyOk()
            seen.append(dict.__getitem__(screen, "status").text)
            screen.epgBackupfinished = seen.append
            screen.up()
        finally:
            bench.close()
        if seen != ["save", "text of status of %s" % EPG_FILE, "status of "]:
            raise AssertionError("%s: %r" % (kind, seen))


def _with_own_texts(screen_class):
    """A subclass in which each text of the status line is another one when it is read back."""
    def kept(name):
        return property(lambda screen: name % screen.__dict__[name],
                        lambda screen, text: screen.__dict__.__setitem__(name, text))
    return type("Sub", (screen_class,), {"statustext": kept("status of %s"), "text": kept("text of %s")})


def literal(calls, folder):
    """Addresses and folders differ from one run to the next."""
    def part(value):
        if isinstance(value, (list, tuple)):
            return type(value)(part(item) for item in value)
        if isinstance(value, dict) and type(value) is dict:
            return sorted((key, part(item)) for key, item in value.items())
        if isinstance(value, str):
            return value.replace(folder, "")
        return value if isinstance(value, (int, type(None))) else type(value).__name__
    return [part(call) for call in calls]


def content(path):
    if not os.path.exists(path):
        return None
    with open(path) as file:
        return file.read()
