"""The list of services, bouquets and markers in a channel list."""

from Components.ListComponent import ListComponent
from ServiceReference import ServiceReference
from enigma import eServiceCenter, eServiceReference
from receiver.picture import Row


def _name(reference):
    return ServiceReference(reference).getServiceName()


def _isNoMarker(reference):
    return not reference.flags & eServiceReference.isMarker


def _paint(reference):
    kinds = (eServiceReference.isDirectory, "bouquet"), (eServiceReference.isMarker, "marker")
    return Row(_name(reference) or "(...)", kind=next((kind for flag, kind in kinds if reference.flags & flag), "service"))


class ServiceList(ListComponent):
    """Rows are eServiceReferences: what the root holds. The cursor passes over markers."""

    def __init__(self):
        super().__init__(paint=_paint, selectable=_isNoMarker)

    def setRoot(self, root):
        """Show what `root` holds, with the cursor on the first row."""
        services = eServiceCenter.getInstance().list(root)
        self.l.setList([] if services is None else services.getContent("R", False))
        self.l.moveTo(0)

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
        for index in (*range(start, len(self.l.rows)), *range(start)):
            if _name(self.l.rows[index]).strip().casefold().startswith(text):
                self.l.moveTo(index)
                return
