"""Own operations are called through the instance, so a subclass or an instance that replaces one is heard."""

from tests.module.case import HostTestCase, PLUGIN_PATH, host
from tests.module.operations import PICKER, PRIVATE


class Overriding(HostTestCase):
    CALLS = (  # class, operation that runs, own operation that it calls
        ("Veltro", "changedEntry", "createSetup"), ("Veltro", "changedEntry", "epgBackupfinished"),
        ("Veltro", "up", "epgBackupfinished"), ("Veltro", "down", "epgBackupfinished"),
        ("Veltro", "keyOk", "epgBackupfinished"),
        ("Edit_DVB_EPG_Blacklist", "redPressed", "cancel"), ("Edit_DVB_EPG_Blacklist", "greenPressed", "saveFile"),
        ("Edit_DVB_EPG_Blacklist", "yellowPressed", "delete"),
        ("Edit_DVB_EPG_Blacklist", "loadFile", "finishedChannelSelection"),
        ("DirChoose", "up", "updateFile"), ("DirChoose", "down", "updateFile"), ("DirChoose", "left", "updateFile"),
        ("DirChoose", "right", "updateFile"), ("DirChoose", "ok", "green"),
        (PICKER, PRIVATE, "setModeTv"),
    )

    def opened(self, class_name):
        return {"Veltro": lambda: self.settings(selected=20), "Edit_DVB_EPG_Blacklist": self.editor,
                "DirChoose": lambda: self.chooser(entries=[("film.ts", False)]), PICKER: self.picker}[class_name]()

    def test_on_the_instance(self):
        self.etc(b"#SERVICE 1:0:1:\n")
        for class_name, operation, called in self.CALLS:
            screen, heard = self.opened(class_name), []
            setattr(screen, called, lambda *arguments: heard.append(arguments))
            getattr(screen, operation)()
            self.assertEqual(len(heard), 1, (class_name, operation, called))

    def test_in_a_subclass(self):
        self.etc(b"#SERVICE 1:0:1:\n")
        for class_name, operation, called in self.CALLS:
            screen, heard = self.opened(class_name), []
            screen.__class__ = type("Sub", (getattr(self.Veltro, class_name),),
                                    {called: lambda self, *arguments: heard.append(arguments)})
            getattr(screen, operation)()
            self.assertEqual(len(heard), 1, (class_name, operation, called))

    def test_constructors_call_what_a_subclass_puts_there(self):
        heard = []

        class Settings(self.Veltro.Veltro):
            def createSetup(self):
                heard.append("createSetup")

        class Editor(self.Veltro.Edit_DVB_EPG_Blacklist):
            def loadFile(self):
                heard.append("loadFile")
        Settings(host.session, PLUGIN_PATH)
        Editor(host.session, PLUGIN_PATH)
        self.assertEqual(heard, ["createSetup", "loadFile"])

    def test_key_maps_and_callbacks_hold_what_a_subclass_puts_there(self):
        class Settings(self.Veltro.Veltro):
            def keyOk(self):
                pass

            def changedEntry(self):
                pass

            def gotEPGpath(self, res):
                pass
        screen = Settings(host.session, PLUGIN_PATH)
        self.assertEqual(dict.__getitem__(screen, "shortcuts")._actions["ok"].__func__, vars(Settings)["keyOk"])
        keywords = host.recorder.named("ConfigListScreen.__init__")[0][-1]
        self.assertEqual(keywords["on_change"].__func__, vars(Settings)["changedEntry"])
        dict.__getitem__(screen, "config")._index = 16
        self.Veltro.Veltro.keyOk(screen)
        callback = host.recorder.named("session.openWithCallback")[0][0]
        self.assertEqual(callback.__func__, vars(Settings)["gotEPGpath"])

    def test_a_subclass_can_call_the_overridden_operation(self):
        class Timer(self.Veltro.EPGTimer):
            def setSession(self, session):
                return self.__class__.__bases__[0].setSession(self, [session])
        timer = Timer()
        timer.setSession(1)
        self.assertEqual(timer.session, [1])
