#include "host/callable.h"

#include "host/generation.h"

namespace veltro::host {

Callable::Callable(const Object& callable) : callable_(callable), function_(callable.get())
{
    if (reinterpret_cast<PyPointer>(Py_TYPE(function_)) == callable.host()[binding::kMethodType])
        generation::takeApart(function_, self_);
    entry_ = generation::entryOf(function_);
}

} // namespace veltro::host
