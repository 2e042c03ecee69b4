#include "host/console.h"

#include "host/cpython.h"

namespace veltro::host {

void printLine(Host host, Text line) noexcept
{
    PyObject* const console = PySys_GetObject(const_cast<char*>("stdout")); // borrowed
    if (console == nullptr || console == Py_None)
        return;
    try {
        Object::share(host, console).call("write"_t, line);
    } catch (const Error&) {
        return;
    }
}

} // namespace veltro::host
