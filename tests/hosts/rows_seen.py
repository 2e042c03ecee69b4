"""The table of rows in docs/hosts.md, which the tests hold to what they see."""

from __future__ import absolute_import

import io
import os
import re

DOCS = os.path.join(os.path.dirname(os.path.abspath(__file__)), os.pardir, os.pardir, "docs", "hosts.md")
UNUSED = "not used"


def documented(kit, labels):
    """{row: whether the image uses it} as the table says of this kit, for the rows whose texts are given."""
    with io.open(DOCS, encoding="utf-8") as file:
        lines = [[cell.strip() for cell in line.strip().strip("|").split("|")] for line in file if line.startswith("|")]
    head = [line for line in lines if line[0] == "Row" and "`%s`" % kit in line][0]
    table = lines[lines.index(head) + 2:]
    column = head.index("`%s`" % kit)
    found = {}
    for label in labels:
        cells = [line for line in table if len(line) == len(head) and _matches(line[0], label)]
        assert len(cells) == 1, "%d lines of the table for %r" % (len(cells), label)
        found[label] = cells[0][column] != UNUSED
    return found


def _matches(text, label):
    """A line of the table may stand for several rows: "EPG language selection 1, 2"."""
    return any(label.startswith(part) for part in re.split(" *; *", text))
