"""The configuration tree: elements with a value, a default and a stored text, grouped under `config`; and its file, one
`config.path.name=text` per line, only what differs from the default.

    config.usage.epg = ConfigSubsection()
    config.usage.epg.eit = ConfigYesNo(default=True)     # takes the stored text at once when the file has one
    config.usage.epg.eit.value = False                   # tells the notifiers
    config.usage.epg.eit.save()                          # into the tree; cancel() goes back to what was saved
    configfile.save()                                    # into the settings file

Lines that mean nothing here (other software's keys, plain rubbish) are kept as they stand, trailing carriage return
included.
"""
from Components.config_elements import *  # noqa: F401,F403 (offered from here)
from Components.config_elements import ConfigElement
from receiver.data import env
from receiver.data.files import encode, read_lines, reason, write_atomically

SETTINGS = env.ETC + "/settings"


def getConfigListEntry(*fields):
    """One row of a settings list: the given fields (label, element, ...) as a tuple; at least one."""
    assert fields, "a row needs at least one field"
    return fields


class ConfigSubsection:
    """A branch of the tree. Its attributes are elements and further branches."""

    _texts = None  # of the tree that it is in: path -> stored text
    _path = ""

    def __setattr__(self, name, value):
        assert isinstance(value, (ConfigElement, ConfigSubsection)), "%s: neither element nor branch" % name
        vars(self)[name] = value
        if self._texts is not None:
            value.enter("%s.%s" % (self._path, name), self._texts)

    def _nodes(self):
        """(path, element or branch) of what is in it."""
        return [("%s.%s" % (self._path, name), node) for name, node in vars(self).items() if not name.startswith("_")]

    def enter(self, path, texts):
        """Learn its place in a tree, as all that is below."""
        vars(self).update(_path=path, _texts=texts)
        for path, node in self._nodes():
            node.enter(path, texts)

    def elements(self):
        """(path, element) of all that is below."""
        for path, node in self._nodes():
            yield from node.elements() if isinstance(node, ConfigSubsection) else [(path, node)]


class Config(ConfigSubsection):
    """The root. Elements take their stored texts as they are put into the tree."""

    def __init__(self):
        self.enter("config", {})
        self.misc = ConfigSubsection()


class ConfigFile:
    """The settings file. on_failure -- is told, as a text for the user, that it was not saved"""

    def __init__(self, tree):
        self._tree, self._texts = tree, tree._texts
        self._lines = []
        self._unreadable = None  # why the file could not be read: nobody knows what it holds, so it is not overwritten
        self.on_failure = lambda text: None

    def load(self):
        """Read the file, whose texts elements get when they are defined."""
        try:
            self._take([line for line in read_lines(SETTINGS) if line.strip()])
        except FileNotFoundError:
            pass
        except OSError as error:
            self._unreadable = "the file could not be read at the start: %s" % error.strerror
            env.log("[receiver] reading settings failed, they will not be saved: %s" % error)

    def _take(self, lines):
        """Of a key that is there twice the last counts."""
        self._lines = lines
        pairs = (line.rstrip("\r").partition("=") for line in lines)
        self._texts.clear()
        self._texts.update((key, text) for key, equals, text in pairs if equals)

    def isChanged(self):
        """Whether `save` would change what the file says about any element."""
        return any(self._texts.get(path) != element.saved_value for path, element in self._tree.elements())

    def save(self):
        """Write what `save()` of the elements left, and every line that no element claims. True on success; a failure costs
        a console line and leaves the old file."""
        known = {path: element.saved_value for path, element in self._tree.elements()}
        for key in [key for key, text in known.items() if text and "\n" in text]:
            env.log("[receiver] settings: the value of %s holds a line end and can't be stored" % key)
            known[key] = None
        lines = [line for line in self._lines if line.partition("=")[0] not in known]
        lines += ["%s=%s" % item for item in known.items() if item[1] is not None]
        lines.sort()
        try:
            if self._unreadable:
                raise OSError(self._unreadable)
            write_atomically(SETTINGS, encode("".join(line + "\n" for line in lines)))
        except (OSError, ValueError) as error:
            env.log("[receiver] settings not saved: %s" % error)
            self.on_failure("The settings could not be saved: %s" % reason(error))
            return False
        self._take(lines)
        return True


config = Config()
configfile = ConfigFile(config)
