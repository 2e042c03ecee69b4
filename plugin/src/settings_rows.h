// The rows of the settings list, as data: label, element, help text, tag.
#pragma once

#include "config_keys.h"

#include <array>
#include <variant>

namespace veltro {

/// A row that shows a host setting. Its tag is "to_save": the save key saves exactly these rows, the exit key reverts
/// them.
struct SettingRow {
    host::Text label;
    host::ConfigKey key;
    std::optional<host::Text> description = {};
};

/// A row that runs an action on OK. Its element is a placeholder of the screen, which shows no value.
struct ActionRow {
    host::Text label;
    host::Text placeholder;
    host::Text tag;
};

/// The row of the EPG directory: an action row whose label goes on with the directory.
struct EpgPathRow {};

using Row = std::variant<SettingRow, ActionRow, EpgPathRow>;

namespace rows {

using namespace host::literals;

inline constexpr std::array<Row, 18> kAlways{
    SettingRow{"Multi-EPG bouquet selection"_t, keys::kMultiEpgAskBouquet},
    SettingRow{"Show icon when movie is in database"_t, keys::kTimerShowMovieAvailable},
    SettingRow{"Default EPG view (EPG button)"_t, keys::kEpgDefaultView},
    SettingRow{"Save EPG for X days in future"_t, keys::kEpgBuffer},
    SettingRow{"Show EPG data in single EPG list older than"_t, keys::kShowOldEpg},
    SettingRow{"Show Now/Next EIT EPG at InfoBar"_t, keys::kShowNowNextEit},
    SettingRow{"EPG language selection 1"_t, keys::kEpgLanguage, "Configure the primary EPG language."_t},
    SettingRow{"EPG language selection 2"_t, keys::kEpgLanguageAlternative, "Configure the secondary EPG language."_t},
    SettingRow{"Enable EIT EPG"_t, keys::kEit, "Use EIT EPG information when it is available."_t},
    SettingRow{"Enable MHW EPG"_t, keys::kMhw, "Use MHW EPG information when it is available."_t},
    // Lower case in the label, mixed case in the description: translations hang on both as they stand.
    SettingRow{"Enable freesat EPG"_t, keys::kFreesat, "Use FreeSat EPG information when it is available."_t},
    SettingRow{"Enable ViaSat EPG"_t, keys::kViasat, "Use ViaSat EPG information when it is available."_t},
    SettingRow{"Enable Netmed EPG"_t, keys::kNetmed, "Use Netmed EPG information when it is available."_t},
    SettingRow{"Enable Virgin EPG"_t, keys::kVirgin, "Use Virgin EPG information when it is available."_t},
    SettingRow{"Forbid DVB EPG update for black listed services"_t, keys::kEpgDvbBlacklistMode},
    // The placeholder of the next row serves here too; the blacklist has none of its own.
    ActionRow{"Edit blacklist for DVB EPG"_t, "input_epgpath"_t, "edit_dvb_epg_blacklist"_t},
    EpgPathRow{},
    SettingRow{"Enable EPG client mode (don't save EPG file)"_t, keys::kEpgIsClient},
};

// The same key under two labels: in client mode the timer loads the file, otherwise it saves it.
inline constexpr std::array<Row, 2> kInClientMode{
    SettingRow{"Load EPG data from file every X minutes (0 = off)"_t, keys::kEpgDataTimer},
    ActionRow{"Load EPG data from epg.dat"_t, "input_epgrestore"_t, "epgrestore"_t},
};

inline constexpr std::array<Row, 4> kOtherwise{
    SettingRow{"Save EPG data every X minutes to file (0 = off)"_t, keys::kEpgDataTimer},
    ActionRow{"Save EPG cache to epg.dat"_t, "input_epgbackup"_t, "epgbackup"_t},
    ActionRow{"Load EPG data from epg.dat"_t, "input_epgrestore"_t, "epgrestore"_t},
    ActionRow{"Delete broken epg.dat"_t, "input_epgdelete"_t, "epgdelete"_t},
};

} // namespace rows

} // namespace veltro
