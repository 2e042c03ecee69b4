"""python3 -m receiver: see --help."""

from receiver.cli import main

main()
