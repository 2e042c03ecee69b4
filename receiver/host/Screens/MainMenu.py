"""The receiver's main menu: what the plug-ins offer, and the switch."""

from Components.ActionMap import ActionMap
from Components.MenuList import MenuList
from Components.PluginComponent import plugins
from Components.Sources.StaticText import StaticText
from Plugins.Plugin import PluginDescriptor
from Screens.Screen import Screen
from Tools import Notifications
from enigma import quitMainloop


class MainMenu(Screen):
    """The lowest screen of the session. Waiting notifications are shown from here."""

    def __init__(self, session):
        Screen.__init__(self, session)
        self.setTitle("Main menu")
        switch = PluginDescriptor("Switch the receiver off", fnc=lambda session: quitMainloop(1))
        entries = plugins.getPlugins(PluginDescriptor.WHERE_PLUGINMENU) + [switch]
        self["list"] = MenuList([(entry.name, entry) for entry in entries])
        self["description"] = StaticText()
        self["actions"] = ActionMap(["OkCancelActions"], {"ok": self.ok})
        self["list"].onSelectionChanged.append(self.describe)
        self.onLayoutFinish.append(self.describe)
        self.onShown.append(self.showNotifications)
        Notifications.notificationAdded.append(self.showNotifications)

    def ok(self):
        self["list"].getCurrent()[1].fnc(session=self.session)

    def describe(self):
        self["description"].text = self["list"].getCurrent()[1].description

    def showNotifications(self):
        if self.execing and Notifications.notifications:
            screen, keywords = Notifications.notifications.pop(0)
            self.session.open(screen, **keywords)
