// The directory chooser for the EPG cache file.
#pragma once

#include "host/module.h"

namespace veltro {

extern const host::ClassTable kDirChoose;

} // namespace veltro
