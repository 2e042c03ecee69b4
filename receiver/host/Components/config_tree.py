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


class ConfigFile:
    """The settings file. on_failure -- is told, as a text for the user, that it was not saved"""

    def __init__(self, tree):
        self._tree = tree
        self._lines = []
        self._unreadable = None  # why the file could not be read: nobody knows what it holds, so it is not overwritten
        self.on_failure = lambda text: None

    def load(self):
        """Read the file, whose texts elements get when they are defined."""
        try:
            self._take([line for line in read_lines(env.ETC + "/settings") if line.strip()])
        except FileNotFoundError:
            pass
        except OSError as error:
            self._unreadable = "the file could not be read at the start: %s" % error.strerror
            env.log("[receiver] reading settings failed, they will not be saved: %s" % error)

    def _take(self, lines):
        """Of a key that is there twice the last counts."""
        self._lines = lines
        pairs = (line.rstrip("\r").partition("=") for line in lines)
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
            write_atomically(env.ETC + "/settings", encode("".join(line + "\n" for line in lines)))
        except (OSError, ValueError) as error:
            env.log("[receiver] settings not saved: %s" % error)
            self.on_failure("The settings could not be saved: %s" % (getattr(error, "strerror", None) or error))
            return False
        self._take(lines)
        return True
