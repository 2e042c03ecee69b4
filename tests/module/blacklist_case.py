"""What the tests of the blacklist file share."""

from tests.host_double import platform_services
from tests.module.case import HostTestCase, host

ONE, TWO = "1:0:1:1:0:0:0:0:0:0:", "1:0:1:2:0:0:0:0:0:0:"


class EveryName(dict):
    """A service database in which each service is named by its own text, so no two names are equal."""

    def get(self, text, default=None):
        return text


class FileTestCase(HostTestCase):
    def named_by_text(self):
        host.service_names = platform_services.ServiceReference.names = EveryName()

    def content(self, path):
        with open(path, "rb") as file:
            return file.read()

    def references(self, data, named=True):
        """The references that an editor loads from this file content."""
        self.path = self.etc(data)
        if named:
            self.named_by_text()
        self.screen = self.editor()
        return [row[3] for row in self.screen.servicelist]

    def line(self, text):
        return ("#SERVICE %s\n" % text).encode("ascii")
