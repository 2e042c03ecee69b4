"""ServiceReference: a service with its display name."""

from receiver.data.reference import eServiceReference
from receiver.data.service_center import eServiceCenter


class ServiceReference:
    """A wrapper and no reference itself: use `.ref`.

    ref -- an eServiceReference, or its text, or an empty value for an invalid one
    """

    def __init__(self, ref):
        self.ref = ref if isinstance(ref, eServiceReference) else eServiceReference(ref or "")

    def __str__(self):
        return self.ref.toString()

    def getServiceName(self):
        """The display name, "" when nobody knows one."""
        return eServiceCenter.getInstance().getName(self.ref)
