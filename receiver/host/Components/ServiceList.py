"""The list of services, bouquets and markers in a channel list."""

from Components.ListComponent import ListComponent
from ServiceReference import ServiceReference
from enigma import eListboxPythonMultiContent, eServiceCenter, eServiceReference
from receiver.picture import Row


def _isNoMarker(reference):
    return not reference.flags & eServiceReference.isMarker


class ServiceList(ListComponent):
    """Rows are eServiceReferences: what the root holds. The cursor passes over markers."""

    def __init__(self):
        super().__init__(eListboxPythonMultiContent(self._paint, _isNoMarker))
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
        """Put the cursor below the next marker (step 1) or the one before (-1); without one on the last or the first row."""
        rows, index = self.l.rows, self.l.cursor + (1 if step > 0 else -2)  # the one right above is where the cursor is
        while 0 < index < len(rows) - 1 and _isNoMarker(rows[index]):
            index += step
        self.l.moveTo(min(max(index, 0), len(rows) - 1))

    def moveToNumber(self, number):
        """Put the cursor on the row with this number, or on the last one. Markers have none."""
        rows = [index for index, row in enumerate(self.l.rows) if _isNoMarker(row)]
        if rows and number:
            self.l.moveTo(rows[min(number, len(rows)) - 1])

    def moveToName(self, text, following):
        """Put the cursor on a row whose name begins so: the next one, which if not `following` may be the present one."""
        start, text = self.l.cursor + following, text.casefold()
        for index in (*range(start, len(self.l)), *range(start)):
            if ServiceReference(self.l.rows[index]).getServiceName().strip().casefold().startswith(text):
                self.l.moveTo(index)
                return

    def _paint(self, reference):
        kind = "service"
        if reference.flags & eServiceReference.isDirectory:
            kind = "bouquet"
        elif reference.flags & eServiceReference.isMarker:
            kind = "marker"
        return Row(ServiceReference(reference).getServiceName() or "(...)", kind=kind)
