"""The settings file of a box: one `config.path.name=text` per line, only what differs from the default.

Lines that mean nothing here (other software's keys, plain rubbish) are kept as they stand, trailing carriage return
included.
"""
import re

from . import env
from .files import encode, read_lines, write_atomically


class SettingsFile:
    """The lines of one settings file."""

    def __init__(self):
        self.lines = []
        self._unknown = False          # whether the file holds what could not be read
        self.problem = None            # why the last load or save failed

    def load(self, path):
        """Read the file; a missing one is an empty one. One that can't be read costs a console line, and is then never
        overwritten: nobody knows what it holds."""
        self.lines, self.problem, self._unknown = [], None, False
        try:
            self.lines = [line for line in read_lines(path) if line.strip()]
        except FileNotFoundError:
            pass
        except OSError as error:
            self.problem = "the file could not be read at the start, %s" % error.strerror
            self._unknown = True
            env.log("[receiver] reading settings failed, they will not be saved: %s" % error)

    def texts(self):
        """Key -> stored text; of a key that is there twice the last counts."""
        pairs = (line.rstrip("\r").partition("=") for line in self.lines)
        return {key: text for key, equals, text in pairs if equals}

    def save(self, path, values):
        """Write the file. `values` maps every known key to its text, or to None when it has its default; all other
        lines stay. True on success; a failure costs a console line and leaves the old file."""
        if self._unknown:
            env.log("[receiver] settings not saved: %s" % self.problem)
            return False
        known = dict(values)
        for key in [key for key, text in known.items() if text and "\n" in text]:
            env.log("[receiver] settings: the value of %s holds a line end and can't be stored" % key)
            known[key] = None
        lines = [line for line in self.lines if line.partition("=")[0] not in known]
        lines += ["%s=%s" % item for item in known.items() if item[1] is not None]
        lines.sort(key=_sort_key)
        try:
            write_atomically(path, encode("".join(line + "\n" for line in lines)))
        except (OSError, ValueError) as error:
            self.problem = getattr(error, "strerror", None) or str(error)
            env.log("[receiver] writing settings failed: %s" % error)
            return False
        self.lines = lines
        return True


def _sort_key(line):
    """Case does not count, and runs of digits count as numbers: "a2" stands before "A10"."""
    parts = re.split("([0-9]+)", line.partition("=")[0].lower())
    digits = [part.lstrip("0") for part in parts[1::2]]
    parts[1::2] = [(len(number), number) for number in digits]
    return parts
