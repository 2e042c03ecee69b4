"""ServiceReference: a service with its display name."""
from receiver.data.reference import eServiceReference
from receiver.data.service_center import eServiceCenter


class ServiceReference:
    """A wrapper and no reference itself: use `.ref`.

    ref -- an eServiceReference, or its text, or an empty value for an invalid one. With `reftype` (not -1) a new
    reference of (reftype, flags, path) is made instead.
    """

    def __init__(self, ref, reftype=eServiceReference.idInvalid, flags=0, path=""):
        if reftype != eServiceReference.idInvalid:
            self.ref = eServiceReference(reftype, flags, path)
        elif isinstance(ref, eServiceReference):
            self.ref = ref
        else:
            self.ref = eServiceReference(ref or "")

    def __str__(self):
        return self.ref.toString()

    def getServiceName(self):
        """The display name, "" when nobody knows one."""
        return eServiceCenter.getInstance().getName(self.ref)
