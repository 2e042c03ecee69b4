// The one table of the host's configuration keys that the module reads or writes.
//
// The host defines, defaults and stores them all. The module relies on `value`, `save()` and `cancel()`, and on what
// stands beside a key.
#pragma once

#include "host/config.h"

namespace veltro::keys {

using namespace host::literals;
using host::ConfigKey;
using host::Section;

inline constexpr ConfigKey kMultiEpgAskBouquet{Section::usage, "multiepg_ask_bouquet"_t};
inline constexpr ConfigKey kTimerShowMovieAvailable{Section::misc, "timer_show_movie_available"_t};
inline constexpr ConfigKey kEpgDefaultView{Section::usage, "epg_default_view"_t};
inline constexpr ConfigKey kEpgBuffer{Section::usage, "epg_buffer"_t};
inline constexpr ConfigKey kShowOldEpg{Section::usage, "show_old_epg"_t};
inline constexpr ConfigKey kShowNowNextEit{Section::usage, "show_nownext_eit"_t};
inline constexpr ConfigKey kEpgLanguage{Section::usageAutolanguage, "epglanguage"_t};
inline constexpr ConfigKey kEpgLanguageAlternative{Section::usageAutolanguage, "epglanguage_alternative"_t};
inline constexpr ConfigKey kEit{Section::usageEpg, "eit"_t};
inline constexpr ConfigKey kMhw{Section::usageEpg, "mhw"_t};
inline constexpr ConfigKey kFreesat{Section::usageEpg, "freesat"_t};
inline constexpr ConfigKey kViasat{Section::usageEpg, "viasat"_t};
inline constexpr ConfigKey kNetmed{Section::usageEpg, "netmed"_t};
inline constexpr ConfigKey kVirgin{Section::usageEpg, "virgin"_t};
inline constexpr ConfigKey kEpgDvbBlacklistMode{Section::misc, "epg_dvb_blacklist_mode"_t};

/// True: the receiver is an EPG client, which loads the EPG file but never saves it.
inline constexpr ConfigKey kEpgIsClient{Section::misc, "epg_is_client_stb"_t};

/// Minutes between two actions of the background timer; 0 or less: none.
inline constexpr ConfigKey kEpgDataTimer{Section::misc, "epg_data_timer"_t};

/// The path of the EPG cache file: a directory joined with "epg.dat".
inline constexpr ConfigKey kEpgCacheFilename{Section::misc, "epgcache_filename"_t};

} // namespace veltro::keys
