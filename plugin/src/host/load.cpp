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
            PyErr_SetString(PyExc_ImportError, kPlace); // GCOVR_EXCL_LINE: of a host written in C
        addFrame(kPlace, error.at());
    } catch (const std::bad_alloc&) {
        PyErr_NoMemory(); // GCOVR_EXCL_LINE: out of memory
    }
    return false;
}

} // namespace veltro::host
