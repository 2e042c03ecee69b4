// The EPG settings screen.
#pragma once

#include "host/module.h"

namespace veltro {

extern const host::ClassTable kVeltro;

} // namespace veltro
