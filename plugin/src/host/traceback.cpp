#include "host/traceback.h"

#include "host/generation.h"

#include <array>
#include <cstdio>

namespace veltro::host {

void addFrame(const char* name, At at) noexcept
{
    Error pending(at);
    PyObject* const frame = generation::makeFrame(name, at);
    Error(pending).restore(); // over whatever makeFrame may have left
    if (frame != nullptr && PyTraceBack_Here(reinterpret_cast<struct _frame*>(frame)) != 0)
        pending.restore();
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
