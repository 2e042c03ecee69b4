// What a load of the module binds. It belongs to one tuple, which the collector sees through and of which every
// operation holds a reference. Beside it stands the same as a plain array, since asking a tuple for an item is a call
// each time; the tuple owns that array, too.
#pragma once

#include <cstddef>

namespace veltro::host::binding {

enum Place : std::size_t {
    kTuple,   // in the array the tuple itself, in the tuple the array
    kGlobals, // the module's namespace
    kBuiltins,
    kOpen,
    kIOError,
    kMethodType,
    kOperationType,
    kZero,
    kFirstText, // the constant texts, by their indices
};

} // namespace veltro::host::binding
