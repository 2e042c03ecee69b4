"""The unit tests of the compiled module, for Python 2.7 and 3.

    VELTRO_BUILD=build/py3 python3 -m unittest discover -s tests/module -t .

Without the compiled module there is nothing to test, so a missing or broken binary fails the run right here.
"""

from tests.host_double import host, loader


def _require_binary():
    host.reset()
    host.start()
    try:
        module = host.load()
    except Exception as error:
        raise RuntimeError("the compiled module does not load from %s: %r" % (loader.build_folder(), error))
    finally:
        host.stop()
    if not module.__file__.endswith(".so"):
        raise RuntimeError("%s is not the compiled module" % module.__file__)


_require_binary()
