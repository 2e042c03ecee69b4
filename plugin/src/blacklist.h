// The DVB EPG blacklist: its editor, its file, and the channel picker from which services are added.
#pragma once

#include "host/module.h"

namespace veltro {

extern const host::ClassTable kEditDvbEpgBlacklist;
extern const host::ClassTable kDvbEpgBlacklistChannelSelection;
extern const host::OperationTable kFindInList;

} // namespace veltro
