"""The directory chooser on images: its list of files, its layout, what it shows first."""

from tests.entry.case import BoxTest


class HostList(object):
    """A host's list of files: rows of ((path, is a directory), cell, ...), a cell being (type, ..., text)."""

    tree = {"/": ["media"], "/media/": ["hdd", "usb"], "/media/hdd/": [], "/media/usb/": ["epg"]}
    refuses = False

    class Content(object):
        def setList(self, rows):
            self.rows = rows

    def __init__(self, directory, **keywords):
        self.l, self.instance, self.cursor = self.Content(), None, 0
        self.changeDir(directory)
        self.instance = object()

    def changeDir(self, directory, select=None):
        self.directory = directory
        above = directory.rstrip("/").rpartition("/")[0] + "/"
        paths = ([(above, "<above>")] if directory != "/" else []) + [
            (directory + name + "/", name) for name in self.tree.get(directory, ())]
        self.list = [self.row(path, name) for path, name in paths]
        self.l.setList(self.list)
        self.cursor = 0
        for index, (path, name) in enumerate(paths):
            if path == select:
                self.cursor = index

    def row(self, path, name):
        return [(path, True), (0, 35, 1, 600, 22, 0, 1, name), (9, 10, 2, 20, 20, "picture")[:5]]

    def getSelectionIndex(self):
        return self.cursor

    def moveToIndex(self, index):
        self.cursor = index

    def getSelection(self):
        return self.list[self.cursor][0] if self.list else None

    def getCurrentDirectory(self):
        return self.directory

    def canDescent(self):
        return self.getSelection()[1]


class RowTest(BoxTest):
    host_list = HostList

    def setUp(self):
        BoxTest.setUp(self)
        self.box.modules["Components.FileList"].FileList = self.host_list
        self.import_entry()
        self.FileList = self.box.part("bridge.chooser").changes()["Components.FileList"]["FileList"]

    def texts(self, files):
        return [row[1][-1] for row in files.l.rows]

    def test_the_directory_itself_comes_first(self):
        files = self.FileList("/media/usb/")
        self.assertEqual(self.texts(files), ["/media/usb", "<above>", "epg"])
        self.assertEqual(files.getSelection(), ("/media/usb/", True))

    def test_in_an_empty_directory_and_in_the_root(self):
        self.assertEqual(self.texts(self.FileList("/media/hdd/")), ["/media/hdd", "<above>"])
        self.assertEqual(self.texts(self.FileList("/")), ["/", "media"])

    def test_is_nothing_to_enter(self):
        files = self.FileList("/media/usb/")
        self.assertFalse(files.canDescent())
        files.moveToIndex(1)
        self.assertTrue(files.canDescent())

    def test_who_comes_from_below_stays_there(self):
        files = self.FileList("/media/usb/")
        files.changeDir("/media/", "/media/usb/")
        self.assertEqual(files.getSelection(), ("/media/usb/", True))
        files.changeDir("/media/usb/", "/media/")
        self.assertEqual(files.getSelection(), ("/media/usb/", True), "who has entered stands on it")

    def test_rows_of_another_kind_stay_as_they_are(self):
        class Other(HostList):
            def row(self, path, name):
                return path

        self.box.modules["Components.FileList"].FileList = Other
        files = self.box.part("bridge.chooser").changes()["Components.FileList"]["FileList"]
        chooser = self.box.part("bridge.chooser")
        chooser.host.FileList = Other
        self.assertEqual(files("/media/").l.rows, ["/", "/media/hdd/", "/media/usb/"])
        self.assertIn("[Veltro] no row for", self.console)

    def test_a_host_without_such_a_list(self):
        del self.box.modules["Components.FileList"].FileList
        self.assertEqual(self.box.part("bridge.chooser").changes(), {})


class ScreenTest(BoxTest):
    def open(self):
        self.load()
        self.box.modules["Components.FileList"].FileList.getSelection = lambda self: ("/media/", True)
        self.addCleanup(delattr, self.box.modules["Components.FileList"].FileList, "getSelection")
        return self.box.session.open(self.module.DirChoose, "/media/")

    def test_shows_at_once_what_green_would_take(self):
        screen = self.open()
        for function in screen.onLayoutFinish:
            function()
        self.assertEqual(screen["driverfile"].text, "/media/")

    def test_its_title(self):
        self.box.catalogue = {}
        screen = self.open()
        self.assertEqual((screen.title, screen["title"].text), ("EPG Path", "EPG Path"))

    def test_another_screens_layout_is_left_alone(self):
        import xml.etree.ElementTree as ElementTree
        self.box.modules["skin"].domScreens = {
            "FileBrowser": (ElementTree.fromstring('<screen><widget name="filelist"/></screen>'), "/"),
            "EPGPathBrowser": (ElementTree.fromstring(
                '<screen><widget name="filelist"/><widget name="driverfile"/></screen>'), "/")}
        self.assertEqual(self.open().skinName, ["KelmarFile", "EPGPathBrowser"])

    def test_an_empty_list_costs_a_log_line(self):
        screen = self.open()
        self.box.modules["Components.FileList"].FileList.getSelection = lambda self: None
        for function in screen.onLayoutFinish:
            function()
        self.assertIn("[Veltro] nothing is selected", self.console)
