// The one table of the host's configuration keys that the module reads or writes.
//
// The host defines, defaults and stores them all. The module relies on `value`, `save()` and `cancel()`, and on what
// stands beside a key.
#pragma once

#include "host/config.h"

namespace veltro::keys {

using namespace host::literals;
using host::ConfigKey;

inline constexpr ConfigKey kMultiEpgAskBouquet{"usage"_t, {}, "multiepg_ask_bouquet"_t};
inline constexpr ConfigKey kTimerShowMovieAvailable{"misc"_t, {}, "timer_show_movie_available"_t};
inline constexpr ConfigKey kEpgDefaultView{"usage"_t, {}, "epg_default_view"_t};
inline constexpr ConfigKey kEpgBuffer{"usage"_t, {}, "epg_buffer"_t};
inline constexpr ConfigKey kShowOldEpg{"usage"_t, {}, "show_old_epg"_t};
inline constexpr ConfigKey kShowNowNextEit{"usage"_t, {}, "show_nownext_eit"_t};
inline constexpr ConfigKey kEpgLanguage{"usage"_t, "autolanguage"_t, "epglanguage"_t};
inline constexpr ConfigKey kEpgLanguageAlternative{"usage"_t, "autolanguage"_t, "epglanguage_alternative"_t};
inline constexpr ConfigKey kEit{"usage"_t, "epg"_t, "eit"_t};
inline constexpr ConfigKey kMhw{"usage"_t, "epg"_t, "mhw"_t};
inline constexpr ConfigKey kFreesat{"usage"_t, "epg"_t, "freesat"_t};
inline constexpr ConfigKey kViasat{"usage"_t, "epg"_t, "viasat"_t};
inline constexpr ConfigKey kNetmed{"usage"_t, "epg"_t, "netmed"_t};
inline constexpr ConfigKey kVirgin{"usage"_t, "epg"_t, "virgin"_t};
inline constexpr ConfigKey kEpgDvbBlacklistMode{"misc"_t, {}, "epg_dvb_blacklist_mode"_t};

/// True: the receiver is an EPG client, which loads the EPG file but never saves it.
inline constexpr ConfigKey kEpgIsClient{"misc"_t, {}, "epg_is_client_stb"_t};

/// Minutes between two actions of the background timer; 0 or less: none.
inline constexpr ConfigKey kEpgDataTimer{"misc"_t, {}, "epg_data_timer"_t};

/// The path of the EPG cache file: a directory joined with "epg.dat".
inline constexpr ConfigKey kEpgCacheFilename{"misc"_t, {}, "epgcache_filename"_t};

} // namespace veltro::keys
