"""The list of services, bouquets and markers in a channel list."""

from Components.ListComponent import ListComponent
from ServiceReference import ServiceReference
from enigma import eListboxPythonMultiContent, eServiceCenter, eServiceReference
from receiver.picture import Row


class ServiceList(ListComponent):
    """Rows are eServiceReferences: what the root holds."""

    def __init__(self):
        super().__init__(eListboxPythonMultiContent(self._paint))
        self.root = None

    def setRoot(self, root):
        """Show what `root` holds, with the cursor on the first row."""
        self.root = root
        services = eServiceCenter.getInstance().list(root)
        self.l.setList([] if services is None else services.getContent("R", False))
        self.l.moveTo(0)

    def getRoot(self):
        return self.root

    def setCurrent(self, reference):
        """Put the cursor on a row; where it is not in the list, nothing moves."""
        if reference in self.l.rows:
            self.l.moveTo(self.l.rows.index(reference))

    def setPythonConfig(self):
        """Nothing to prepare: this list has one look, which is the one that plug-ins ask for with this."""

    def moveToMarker(self, step):
        """Put the cursor on the next marker (step 1) or on the one before (-1)."""
        rows, index = self.l.rows, self.l.cursor + step
        while 0 <= index < len(rows):
            if rows[index].flags & eServiceReference.isMarker:
                self.l.moveTo(index)
                return
            index += step

    def _paint(self, reference):
        kind = "service"
        if reference.flags & eServiceReference.isDirectory:
            kind = "bouquet"
        elif reference.flags & eServiceReference.isMarker:
            kind = "marker"
        return Row(ServiceReference(reference).getServiceName() or _("N/A"), kind=kind)
