"""The module under `enigma`; boxes build it into their executable. Plug-ins only ask whether it is there."""
