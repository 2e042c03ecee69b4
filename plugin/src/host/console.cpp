#include "host/console.h"

#include "host/cpython.h"

namespace veltro::host {

void printLine(Host host, Text line, At at)
{
    PyObject* const console = PySys_GetObject(const_cast<char*>("stdout")); // borrowed
    if (console != nullptr && console != Py_None)
        Object::share(host, console).call({"write"_t, at}, line);
}

} // namespace veltro::host
