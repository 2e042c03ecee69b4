"""The host's configuration tree: elements with a value, a default and a stored text, grouped under `config`.

    config.usage.epg = ConfigSubsection()
    config.usage.epg.eit = ConfigYesNo(default=True)     # takes the stored text at once when the file has one
    config.usage.epg.eit.value = False                   # tells the notifiers
    config.usage.epg.eit.save()                          # into the tree; cancel() goes back to what was saved
    configfile.save()                                    # into the settings file
"""
from Components.config_elements import (  # noqa: F401 (offered from here)
    ConfigBoolean, ConfigElement, ConfigNothing, ConfigSelection, ConfigSelectionNumber, ConfigYesNo, KEY_0, KEY_9,
    KEY_ASCII, KEY_BACKSPACE, KEY_DELETE, KEY_END, KEY_HOME, KEY_LEFT, KEY_NUMBERS, KEY_OK, KEY_RIGHT, KEY_TIMEOUT,
    KEY_TOGGLEOW, getKeyNumber)
from Components.config_typed import ConfigInteger, ConfigNumber, ConfigText  # noqa: F401
from receiver.data import env
from receiver.data.settings_file import SettingsFile


def getConfigListEntry(*fields):
    """One row of a settings list: the given fields (label, element, ...) as a tuple; at least one."""
    assert fields, "a row needs at least one field"
    return fields


def NoSave(element):
    """Switch off storing for `element` and return it."""
    element.disableSave()
    return element


class ConfigSubsection:
    """A branch of the tree. Its attributes are elements and further branches."""

    def __init__(self):
        self.__dict__.update(content={}, _root=None, _path="")

    def __setattr__(self, name, value):
        assert isinstance(value, (ConfigElement, ConfigSubsection)), "%s: neither element nor branch" % name
        self.content[name] = value
        if self._root is not None:
            self._root.adopt("%s.%s" % (self._path, name), value)

    def __getattr__(self, name):
        try:
            return self.__dict__["content"][name]
        except KeyError:
            raise AttributeError(name) from None

    def dict(self):
        """Name -> element or branch."""
        return dict(self.content)


class Config(ConfigSubsection):
    """The root: knows the stored texts and hands them out to elements as they are put into the tree."""

    def __init__(self):
        super().__init__()
        self.__dict__.update(_root=self, _path="config", _texts={})
        self.misc = ConfigSubsection()

    def adopt(self, path, node):
        """Tell a node that came into the tree its place, and its stored text when there is one."""
        if isinstance(node, ConfigSubsection):
            node.__dict__.update(_root=self, _path=path)
            for name, child in node.content.items():
                self.adopt("%s.%s" % (path, name), child)
            return
        node.path = path
        if path in self._texts:
            node.saved_value = self._texts[path]
            node.load()

    def elements(self, branch=None):
        """(path, element) of all that is in the tree."""
        branch = self if branch is None else branch
        for name, node in branch.content.items():
            if isinstance(node, ConfigSubsection):
                yield from self.elements(node)
            else:
                yield "%s.%s" % (branch._path, name), node

    def restore(self, texts):
        """Set the whole tree to these stored texts; what has none goes back to its default."""
        self.__dict__["_texts"] = texts
        for path, element in list(self.elements()):
            element.saved_value = texts.get(path)
            element.load()


class ConfigFile:
    """The settings file of the chosen etc folder."""

    def __init__(self, tree):
        self._tree = tree
        self._file = SettingsFile()
        self.on_failure = lambda text: None

    def path(self):
        """Where the settings are."""
        return env.ETC + "/settings"

    def load(self):
        """Read the file into the tree; elements defined later get their texts when they are defined."""
        self._file.load(self.path())
        self._tree.restore(self._file.texts())

    def isChanged(self):
        """Whether `save` would change what the file says about any element."""
        texts = self._file.texts()
        return any(texts.get(path) != element.saved_value for path, element in self._tree.elements())

    def save(self):
        """Write what `save()` of the elements left, and every line that no element claims. True on success."""
        saved = self._file.save(self.path(), {path: element.saved_value for path, element in self._tree.elements()})
        self._tree.__dict__["_texts"] = self._file.texts()
        if not saved:
            self.on_failure("The settings could not be saved: %s" % self._file.problem)
        return saved


config = Config()
configfile = ConfigFile(config)
