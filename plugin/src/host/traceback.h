// Every failure has an address.
#pragma once

#include "host/object.h"

namespace veltro::host {

/// Adds a frame named "Veltro.<class>.<operation>" (or "Veltro.<function>", without a class) at a place in the C++
/// sources to the traceback of the pending Python exception. Whatever goes wrong here, that exception stays the pending
/// one.
void addFrame(const char* className, const char* operation, At at) noexcept;

/// The same with the whole name given.
void addFrame(const char* name, At at) noexcept;

} // namespace veltro::host
