"""Pictures of plug-ins."""


def LoadPixmap(path, desktop=None):
    """None, as for a picture that can't be read: the receiver shows none."""
