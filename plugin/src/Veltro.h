// The module `Veltro`: its start-up and its public names.
#pragma once

#include "host/module.h"

namespace veltro {

/// Resolves every host name that the module needs, in a fixed order, then defines the module's functions, classes and
/// the one timer object. Opens no screen, reads no configuration, touches no file, calls no EPG cache and arms no
/// timer. Throws host::Error at the first failure.
void startUp(const host::Module& module);

} // namespace veltro
