#include "host/load.h"

#include "Veltro.h"
#include "host/cpython.h"
#include "host/module.h"
#include "host/traceback.h"

#include <new>

namespace veltro::host {

bool load(PyObject* module) noexcept
{
    constexpr const char* kPlace = "init Veltro";
    try {
        startUp(Module(module));
        return true;
    } catch (Error& error) {
        if (error.isSet())
            error.restore();
        else
            PyErr_SetString(PyExc_ImportError, kPlace);
        addFrame(kPlace, error.at());
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory();
    }
    return false;
}

} // namespace veltro::host
