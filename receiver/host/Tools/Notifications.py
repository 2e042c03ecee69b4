"""Messages that wait until a screen can show them."""

notifications = []
notificationAdded = []


def AddNotificationWithCallback(callback, screen, *args, **kwargs):
    """Open a screen as soon as that is possible; `callback` gets its result."""
    notifications.append((callback, screen, args, kwargs))
    for added in notificationAdded:
        added()


def AddNotification(screen, *args, **kwargs):
    AddNotificationWithCallback(None, screen, *args, **kwargs)


def AddPopup(text, type, timeout, id=None):
    """Show a message box."""
    from Screens.MessageBox import MessageBox
    AddNotification(MessageBox, text=text, type=type, timeout=timeout)
