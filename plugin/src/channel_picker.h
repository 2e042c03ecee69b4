// The channel picker, from which services are added to the blacklist.
#pragma once

#include "host/module.h"

namespace veltro {

extern const host::ClassTable kDvbEpgBlacklistChannelSelection;

} // namespace veltro
