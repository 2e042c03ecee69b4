// The console of the host: its `sys.stdout`, not C's.
#pragma once

#include "host/object.h"

namespace veltro::host {

/// Writes a whole line, its "\n" included, at once. Where there is no console, nothing happens; an error of its `write`
/// is thrown.
void printLine(Host host, Text line, At at = At::here());

} // namespace veltro::host
