// The console of the host: its `sys.stdout`, not C's.
#pragma once

#include "host/object.h"

namespace veltro::host {

/// Writes a whole line, its "\n" included, at once. A console that can't be written is not worth an error of its own.
void printLine(Host host, Text line) noexcept;

} // namespace veltro::host
