"""Messages that wait until a screen can show them."""

notifications = []  # (screen, keywords to open it with)
notificationAdded = []


def AddPopup(text, type, timeout):
    """Show a message box as soon as that is possible."""
    from Screens.MessageBox import MessageBox
    notifications.append((MessageBox, {"text": text, "type": type, "timeout": timeout}))
    for added in notificationAdded:
        added()
