"""The GUI process that runs now, a `receiver.gui.Gui`: timers and host modules find it here."""

gui = None
