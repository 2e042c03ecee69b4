// The DVB EPG blacklist: its editor and its file.
#pragma once

#include "host/module.h"

namespace veltro {

extern const host::ClassTable kEditDvbEpgBlacklist;

} // namespace veltro
