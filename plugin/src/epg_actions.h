// EPG cache actions, and the timer that repeats the save or the load.
#pragma once

#include "host/module.h"

namespace veltro {

extern const host::OperationTable kDoEPGAction;
extern const host::ClassTable kEPGTimer;

} // namespace veltro
