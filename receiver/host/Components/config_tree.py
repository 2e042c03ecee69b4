"""The configuration tree and its file: one `config.path.name=text` per line, only what differs from the default.

Lines that mean nothing here (other software's keys, plain rubbish) are kept as they stand, trailing carriage return
included. Hosts offer all this from `Components.config`.
"""
from Components.config_elements import ConfigElement
from receiver.data import env
from receiver.data.files import encode, read_lines, write_atomically


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
        self.__dict__.update(_root=self, _path="config", texts={})
        self.misc = ConfigSubsection()

    def adopt(self, path, node):
        """Tell a node that came into the tree its place, and its stored text when there is one."""
        if isinstance(node, ConfigSubsection):
            node.__dict__.update(_root=self, _path=path)
            for name, child in node.content.items():
                self.adopt("%s.%s" % (path, name), child)
            return
        node.path = path
        if path in self.texts:
            node.saved_value = self.texts[path]
            node.load()

    def elements(self, branch=None):
        """(path, element) of all that is in the tree."""
        branch = self if branch is None else branch
        for name, node in branch.content.items():
            if isinstance(node, ConfigSubsection):
                yield from self.elements(node)
            else:
                yield "%s.%s" % (branch._path, name), node

    def restore(self):
        """Set the whole tree to the stored texts; what has none goes back to its default."""
        for path, element in list(self.elements()):
            element.saved_value = self.texts.get(path)
            element.load()


class ConfigFile:
    """The settings file. on_failure -- is told, as a text for the user, that it was not saved"""

    def __init__(self, tree):
        self._tree = tree
        self._lines = []
        self._unreadable = None  # why the file could not be read: nobody knows what it holds, so it is not overwritten
        self.on_failure = lambda text: None

    def path(self):
        """Where the settings are."""
        return env.ETC + "/settings"

    def load(self):
        """Read the file into the tree; elements defined later get their texts when they are defined."""
        self._lines, self._unreadable = [], None
        try:
            self._lines = [line for line in read_lines(self.path()) if line.strip()]
        except FileNotFoundError:
            pass
        except OSError as error:
            self._unreadable = "the file could not be read at the start: %s" % error.strerror
            env.log("[receiver] reading settings failed, they will not be saved: %s" % error)
        self._take_texts()
        self._tree.restore()

    def _take_texts(self):
        """Key -> stored text; of a key that is there twice the last counts."""
        pairs = (line.rstrip("\r").partition("=") for line in self._lines)
        self._tree.__dict__["texts"] = {key: text for key, equals, text in pairs if equals}

    def isChanged(self):
        """Whether `save` would change what the file says about any element."""
        return any(self._tree.texts.get(path) != element.saved_value for path, element in self._tree.elements())

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
            write_atomically(self.path(), encode("".join(line + "\n" for line in lines)))
        except (OSError, ValueError) as error:
            env.log("[receiver] settings not saved: %s" % error)
            self.on_failure("The settings could not be saved: %s" % (getattr(error, "strerror", None) or error))
            return False
        self._lines = lines
        self._take_texts()
        return True
