"""What must hold of a box with the module on it, as a small model.

Each operation is a generator of its steps with the host; one that runs within another is yielded whole. A step is what the
recorder of the host notes of it, as literals; `ANY` matches whatever stands there. What an operation changes stands behind
the step that brings it about. An error of the host is thrown into the generator at the step that failed: only
where the model catches it may the module go on.
"""

import errno

from tests.host_double.configuration import CHOICES, KEYS
from tests.module.case import PLUGIN_PATH, SETTING_KEYS

CLIENT, PERIOD, CACHE_FILE = "misc.epg_is_client_stb", "misc.epg_data_timer", "misc.epgcache_filename"
SELECTIONS = tuple(key for key, kind, _ in KEYS if kind == "selection")
TITLE_LINE = ("console", 'self["title"] was not found in skin\n')
SAVE_LINE = ("console", "[Veltro] writing DVB EPG blacklist failed\n")
MARKER, DIRECTORY = 64, 7


class Any(object):
    def __eq__(self, other):
        return True

    def __ne__(self, other):
        return False

    def __repr__(self):
        return "ANY"


ANY = Any()


class Course(object):
    """The steps of nested generators, one by one."""

    def __init__(self, steps):
        self.running = [iter(steps)]

    def go_on(self, error=None):
        """The next step, or None after the last. An error is thrown into the innermost generator first."""
        while self.running:
            innermost = self.running[-1]
            try:
                if error is None:
                    step = next(innermost)
                elif hasattr(innermost, "throw"):
                    step, error = innermost.throw(error), None
                else:
                    raise error
            except StopIteration:
                self.running.pop()
                error = None
            except (Exception, KeyboardInterrupt) as raised:
                self.running.pop()
                error = raised
            else:
                if isinstance(step, tuple):
                    return step
                self.running.append(iter(step))
        if error is not None:
            raise error


class Screen(object):
    """A screen on the stack. `screen` is the real one; the rest is what must be true of it."""

    def __init__(self, kind):
        self.kind = kind
        self.screen = None
        self.callback = None  # the model's operation for the result of the screen above


class Box(object):
    def __init__(self):
        self.current = dict((key, value) for key, _, value in KEYS)
        self.saved = dict(self.current)
        self.stack = []
        self.file = None       # the blacklist file's bytes
        self.names = {}        # reference text -> name
        self.bouquets = {}     # reference text -> texts
        self.listings = {}     # directory -> [(path, is a directory)]
        self.path = None       # of the blacklist file
        self.timer = None      # whether the timer that there is calls the module

    @property
    def top(self):
        return self.stack[-1]

    def cache_file(self):
        return self.current[CACHE_FILE]

    # --- Shared

    def widgets(self, *texts):
        for name, text in texts:
            yield ("StaticText", "[%s]" % text)
            yield ('["%s"] =' % name, ANY)

    def guarded_title(self):
        try:
            yield ("StaticText", ANY)
            yield ('["title"] =', ANY)
        except (Exception, KeyboardInterrupt):  # of every kind
            yield TITLE_LINE

    def close(self, *result):
        yield ("close",) + result
        self.stack.pop()

    def action(self, word):
        yield ("eEPGCache.getInstance",)
        for call in {"load": ("load",), "save": ("save",), "cleardb": ("clearDB", "save")}.get(word, ()):
            yield ("eEPGCache." + call,)

    # --- The settings screen

    def open_settings(self):
        self.stack.append(Screen("Veltro"))
        self.top.selected, self.top.status, self.top.rows, self.top.shown = 0, "", [], []
        yield ("Screen.__init__", ANY)
        yield ("skin_path =", ANY)
        yield ("session =", ANY)
        for name in ("input_epgpath", "input_epgbackup", "input_epgrestore", "input_epgdelete"):
            yield ("ConfigNothing",)
            yield ("NoSave", ANY)
            yield (name + " =", ANY)
        yield ("title =", ANY)
        yield self.guarded_title()
        yield ("Label",)
        yield ('["status"] =', ANY)
        yield self.widgets(("key_red", "Exit"), ("key_green", "Save"))
        yield ("ActionMap", ANY, ANY, -2)
        yield ('["shortcuts"] =', ANY)
        yield ("list =", ANY)
        yield ("ConfigListScreen.__init__", ANY, ANY)
        yield self.create_setup()

    def create_setup(self):
        """Rows are (what the row's element is, its tag)."""
        directory = str(self.cache_file()).replace("/epg.dat", "")
        rows = [(key, "to_save") for key in SETTING_KEYS[:15]]
        rows += [(None, "edit_dvb_epg_blacklist"), (None, "epgpath"), (CLIENT, "to_save")]
        for key, tag in rows:
            label = "[EPG Path :] " + directory if tag == "epgpath" else ANY
            yield ("getConfigListEntry", label, "config." + key if key else "ConfigNothing", ANY, tag)
        yield ("list =", ANY)
        self.top.rows = rows
        more = [(PERIOD, "to_save")]
        more += [] if self.current[CLIENT] else [(None, "epgbackup")]
        more += [(None, "epgrestore")]
        more += [] if self.current[CLIENT] else [(None, "epgdelete")]
        for key, tag in more:
            yield ("getConfigListEntry", ANY, "config." + key if key else "ConfigNothing", ANY, tag)
            rows.append((key, tag))
        yield ("config.list =", ANY)
        self.top.shown = rows
        yield ("config.l.setList", ANY)

    def show(self, text):
        yield ("statustext =", text)
        yield ("text =", text)
        yield ("status.setText", text)
        self.top.status = text

    def move(self, step, name):
        yield self.show("")
        yield ("config.instance.moveSelection", name)
        self.top.selected = (self.top.selected + step) % len(self.top.shown)

    def changed_entry(self):
        yield self.show("")
        yield self.create_setup()

    def key_ok(self):
        try:
            yield ("config.l.getCurrentSelection",)
            tag = self.row_under_cursor()[1]
        except Exception:
            tag = None
        if tag == "epgbackup":
            steps = self.save_cache()
        elif tag == "epgrestore":
            steps = self.then_show("load", "[Loading EPG data from %s finished]")
        elif tag == "epgdelete":
            steps = self.then_show("cleardb", "[Clearing EPG DB finished]")
        elif tag == "epgpath":
            start = str(self.cache_file()).replace("epg.dat", "")
            steps = [("session.openWithCallback", "gotEPGpath", "DirChoose", start)]
        elif tag == "edit_dvb_epg_blacklist":
            steps = [("session.open", "Edit_DVB_EPG_Blacklist", PLUGIN_PATH)]
        else:
            steps = self.offer_choices()
        yield steps

    def row_under_cursor(self):
        """No value where there is no row: a list that has grown shorter leaves its cursor behind the end."""
        shown = self.top.shown
        return shown[self.top.selected] if self.top.selected < len(shown) else None

    def save_cache(self):
        client = bool(self.current[CLIENT])
        if client:
            yield ("config.%s.value =" % CLIENT, False)
            self.current[CLIENT] = False
        yield self.action("save")
        if client:
            yield ("config.%s.value =" % CLIENT, True)
            self.current[CLIENT] = True
        yield self.show("[Saving of EPG cache to %s finished]" % self.cache_file())

    def then_show(self, word, text):
        yield self.action(word)
        yield self.show(text % self.cache_file() if "%s" in text else text)

    def offer_choices(self):
        yield ("config.getCurrent",)
        key = self.row_under_cursor()[0]
        if key and key not in SELECTIONS:
            return
        yield ("config.getCurrent",)
        yield ("getSelectionChoices", ANY)
        if key:
            [choice[1] for choice in CHOICES].index(self.current[key])
        yield ("config.getCurrent",)
        yield ("session.openWithCallback", "configSelectionCallBack", "ChoiceBox", ANY)

    def chosen(self, choice):
        if not choice:
            return
        yield ("config.getCurrent",)
        key = self.row_under_cursor()[0]
        yield ("config.%s.value =" % key if key else "ConfigNothing.value =", choice[1])
        if key:
            self.current[key] = choice[1]

    def got_path(self, path):
        if not path:
            return
        yield ("config.%s.value =" % CACHE_FILE, path)
        self.current[CACHE_FILE] = path
        yield ("config.%s.save" % CACHE_FILE,)
        self.saved[CACHE_FILE] = self.current[CACHE_FILE]

    def key_save(self):
        yield ("eEPGCache.getInstance",)
        yield ("eEPGCache.setCacheFile", self.cache_file())
        for key, tag in self.top.rows:
            if tag == "to_save":
                yield ("config.%s.save" % key,)
                self.saved[key] = self.current[key]
        yield self.close()

    def key_close(self):
        for key, tag in self.top.rows:
            if tag == "to_save":
                yield ("config.%s.cancel" % key,)
                self.current[key] = self.saved[key]
        yield self.close()

    # --- The directory chooser

    def open_chooser(self, directory):
        self.stack.append(Screen("DirChoose"))
        self.top.entries, self.top.selected, self.top.line = self.listings.get(directory, []), 0, ""
        yield ("Screen.__init__", ANY)
        yield ("skinName =", ANY)
        yield ("FileList", directory, ANY)
        yield ('["filelist"] =', ANY)
        yield ("Label",)
        yield ('["driverfile"] =', ANY)
        yield ("ActionMap", ANY, ANY, -1)
        yield ('["actions"] =', ANY)
        yield ("title =", ANY)
        yield self.guarded_title()
        yield self.widgets(("key_red", "Cancel"), ("key_green", "OK"))

    def entry(self):
        return self.top.entries[self.top.selected] if self.top.entries else None

    def scroll(self, name, by):
        yield ("filelist." + name,)
        self.top.selected = max(0, min(self.top.selected + by, len(self.top.entries) - 1))
        yield self.update_file()

    def update_file(self):
        yield ("filelist.getSelection",)
        path = self.entry()[0]
        yield ("filelist.getSelection",)
        line = path if self.entry()[1] else "[Invalid Choice]"
        yield ("driverfile.setText", line)
        self.top.line = line

    def choose(self):
        yield ("filelist.getSelection",)
        if not self.entry()[1]:
            yield ("driverfile.setText", "[Invalid Choice]")
            self.top.line = "[Invalid Choice]"
            return
        yield ("filelist.getSelection",)
        path = self.entry()[0]
        path += "epg.dat" if path.endswith("/") else "/epg.dat"
        yield ("fullpath =", path)
        yield self.close(path)

    def enter(self):
        yield ("filelist.canDescent",)
        if self.top.entries and self.entry()[1]:
            yield ("filelist.descent",)
            self.top.entries, self.top.selected = self.listings.get(self.entry()[0], []), 0
            steps = self.update_file()
        else:
            steps = self.choose()
        yield steps

    # --- The blacklist editor

    def open_editor(self):
        self.stack.append(Screen("Edit_DVB_EPG_Blacklist"))
        self.top.rows, self.top.selected = [], 0
        yield ("Screen.__init__", ANY)
        yield ("skin_path =", ANY)
        yield ("eEnv.resolve", ANY)
        yield ("filename =", self.path)
        yield ("start_str =", "#SERVICE ")
        yield self.widgets(("key_red", "Cancel"), ("key_green", "Save"), ("key_yellow", "Delete"),
                                 ("key_blue", "Add Service"))
        yield ("ActionMap", ANY, ANY, -1)
        yield ('["actions"] =', ANY)
        yield ("servicelist =", ANY)
        yield ("ConfigList", ANY)
        yield ("ConfigList.list =", ANY)
        yield ("ConfigList.l.setList", ANY)
        yield ('["ServiceList"] =', ANY)
        yield ("onShown.append", "setWindowTitle")
        yield self.load_file()

    def opened(self, mode):
        return ("open", self.path, mode) if str is bytes else ("open", self.path, mode, ANY)

    def load_file(self):
        yield ("path.exists", self.path)
        if self.file is None:
            return
        yield self.opened("r")
        texts = [line.replace(b"#SERVICE ", b"").strip(b" \t\r\n") for line in self.file.split(b"\n")
                 if line.startswith(b"#SERVICE ")]
        yield ("file.close",)
        if texts:
            yield self.add([native(text) for text in texts])
        yield ("ServiceList.l.setList", ANY)

    def add(self, texts):
        for text in texts:
            yield ("ServiceReference", ANY)
            yield ("getServiceName", text)
            name = self.names.get(text) or "N/A"
            if name in [row[0] for row in self.top.rows]:
                continue
            yield ("toString", text)
            if text.split(":")[0] in ("1", "4097"):
                yield ("ConfigNothing",)
                self.top.rows.append((name, text))
        yield ("ServiceList.l.setList", ANY)

    def picked(self, texts):
        yield self.add(texts) if texts else []

    def delete(self):
        yield ("ServiceList.getCurrent",)
        if self.top.selected < len(self.top.rows):
            del self.top.rows[self.top.selected]
        yield ("ServiceList.l.setList", ANY)

    def save_file(self):
        text = "".join("#SERVICE %s\n" % row[1] for row in self.top.rows)
        try:
            yield self.opened("w")
            self.file = b""
            try:
                yield ("file.write", text)
            except (Exception, KeyboardInterrupt) as error:
                yield ("file.close",)
                raise error
            self.file = text.encode("utf-8", "surrogateescape") if str is not bytes else text
            yield ("file.close",)
        except IOError:
            yield SAVE_LINE
            yield ("unlink", self.path)
            if self.file is None:
                raise OSError(errno.ENOENT, "there never was a file to delete")
            self.file = None
        yield self.close()

    # --- The channel picker

    def open_picker(self):
        self.stack.append(Screen("DVB_EPG_blacklist_ChannelSelection"))
        self.top.selection = None
        yield ("skin_path =", ANY)
        yield ("SimpleChannelSelection.__init__", ANY, ANY)
        yield ("onShown.append", ANY)
        yield ("servicelist.setPythonConfig",)
        yield ("ActionMap", ANY, ANY)
        yield ('["actions"] =', ANY)
        yield self.widgets(("key_red", "Close"), ("key_green", "All"), ("key_yellow", "Add bouquet services"),
                                 ("key_blue", "Favourites"))

    def flags(self, text):
        return int(text.split(":")[1])

    def pick_bouquet(self):
        yield ("getCurrentSelection",)
        bouquet = self.top.selection
        if bouquet is None or self.flags(bouquet) & DIRECTORY != DIRECTORY:
            return
        yield ("eServiceCenter.getInstance",)
        yield ("eServiceCenter.list", ANY)
        found = []
        if bouquet in self.bouquets:
            for text in self.bouquets[bouquet]:
                yield ("getNext",)
                yield ("valid", text)
                if not self.flags(text) & (MARKER | 1):
                    found.append(text)
            yield ("getNext",)
            yield ("valid", "")
        yield self.close(Result(found))

    def pick_one(self):
        yield ("getCurrentSelection",)
        text = self.top.selection
        flags = self.flags(text) if text is not None else text.flags
        if flags & DIRECTORY == DIRECTORY:
            yield ("enterPath", ANY)
        elif not flags & MARKER:
            yield self.close(Result([text]))

    def show_favourites(self, mode):
        yield (mode,)
        yield ("showFavourites",)

    # --- The timer

    def period(self):
        return int(self.current[PERIOD]) * 60000

    def init_timer(self):
        delay = 15000 if self.current[CLIENT] else self.period()
        yield ("eTimer",)
        self.timer = False
        yield ("eTimer.callback.append", "do_epg_action")
        self.timer = True
        yield ("eTimer.start", delay, True)

    def fire(self):
        if not self.timer:
            return
        period = self.period()
        if not period > 0:
            return
        yield self.action("load" if self.current[CLIENT] else "save")
        yield ("eTimer.start", period, True)


class Result(object):
    """A list of references, by their texts."""

    def __init__(self, texts):
        self.texts = texts

    def __eq__(self, other):
        return isinstance(other, list) and len(other) == len(self.texts)

    def __ne__(self, other):
        return not self == other

    def __repr__(self):
        return "references %r" % self.texts


def native(data):
    """Bytes as the module's text of them."""
    return data if str is bytes else data.decode("utf-8", "surrogateescape")
