"""The session: the stack of open screens, and the way of a result back to the screen's opener."""

from receiver.loop import eTimer


class Session:
    """Opens screens on top of each other. The lowest one stays as long as the GUI runs."""

    def __init__(self):
        self.current_dialog = None
        self.dialog_stack = []  # (screen, whether it was shown) of those below
        self.in_exec = False
        self._closing = eTimer()
        self._closing.callback.append(self._finishClose)

    def screens(self):
        """The open screens, the lowest first."""
        screens = [screen for screen, _ in self.dialog_stack] + [self.current_dialog]
        return [screen for screen in screens if screen is not None]

    def open(self, screen, *arguments, **keywords):
        """Open `screen(session, ...)` on top of the others and return it.

        RuntimeError while the screen on top is not running: during its construction or after its close.
        """
        if self.dialog_stack and not self.in_exec:
            raise RuntimeError("modal open are allowed only from a screen which is modal!")
        if self.current_dialog is not None:
            self.dialog_stack.append((self.current_dialog, self.current_dialog.shown))
            self._execEnd()
        dialog = screen(self, *arguments, **keywords)
        dialog.applySkin()
        self.current_dialog = dialog
        self._execBegin()
        return dialog

    def openWithCallback(self, callback, screen, *arguments, **keywords):
        """As `open`; the values that the screen closes with go to `callback` when the opener runs again."""
        dialog = self.open(screen, *arguments, **keywords)
        dialog.callback = callback
        return dialog

    def recover(self):
        """After an error that has left no screen running: the one below runs again."""
        if not self.in_exec and not self._closing.isActive():
            self.popCurrent()

    def popCurrent(self):
        """Let the screen run again that was put aside last."""
        self.current_dialog, show = self.dialog_stack.pop() if self.dialog_stack else (None, False)
        if self.current_dialog is not None:
            self._execBegin(show)

    def close(self, screen, *result):
        """End the screen on top. The rest happens on the loop's next turn, outside the handler that closes it."""
        assert screen is self.current_dialog, "only the screen on top can be closed"
        self._result = result
        self._execEnd()
        self._closing.start(0, True)

    def _finishClose(self):
        callback, result = self.current_dialog.callback, self._result
        self.current_dialog.doClose()
        self.popCurrent()
        if callback is not None:
            callback(*result)

    def _execBegin(self, show=True):
        self.in_exec = True
        dialog = self.current_dialog
        dialog.execBegin()
        if show and dialog is self.current_dialog:  # unless it has opened another one already
            dialog.show()

    def _execEnd(self):
        assert self.in_exec
        self.in_exec = False
        self.current_dialog.execEnd()
        self.current_dialog.hide()
