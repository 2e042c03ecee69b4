#include "host/traceback.h"

#include "host/generation.h"

#include <array>
#include <cstdio>

namespace veltro::host {

void addFrame(const char* name, At at) noexcept
{
    PyObject* type = nullptr;
    PyObject* value = nullptr;
    PyObject* traceback = nullptr;
    PyErr_Fetch(&type, &value, &traceback);
    PyObject* const frame = generation::makeFrame(name, at);
    PyErr_Clear(); // of makeFrame, if it failed

    Py_XINCREF(type);
    Py_XINCREF(value);
    Py_XINCREF(traceback);
    PyErr_Restore(type, value, traceback);
    if (frame != nullptr && PyTraceBack_Here(reinterpret_cast<struct _frame*>(frame)) != 0) {
        PyErr_Clear();
        PyErr_Restore(type, value, traceback);
    } else {
        Py_XDECREF(type);
        Py_XDECREF(value);
        Py_XDECREF(traceback);
    }
    Py_XDECREF(frame);
}

void addFrame(const char* className, const char* operation, At at) noexcept
{
    std::array<char, 128> name{};
    std::snprintf(name.data(), name.size(), "Veltro.%s%s%s", className == nullptr ? "" : className,
                  className == nullptr ? "" : ".", operation);
    addFrame(name.data(), at);
}

} // namespace veltro::host
