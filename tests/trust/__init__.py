"""Trust: the module can neither take the GUI down nor leak, whatever its host does. For Python 2.7 and 3.

    VELTRO_BUILD=build/py3 python3 -m unittest discover -s tests/trust -t .

Built on the recording host and the scenarios of the unit tests. docs/testing.md says how long each part takes and which
of them run where.
"""
