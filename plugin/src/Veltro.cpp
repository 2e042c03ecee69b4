#include "Veltro.h"

#include "blacklist.h"
#include "channel_picker.h"
#include "dir_choose.h"
#include "epg_actions.h"
#include "listed_names.h"
#include "settings_screen.h"

namespace veltro {

using namespace host::literals;

namespace {

constexpr const char* kDoc =
    "EPG settings for the enigma2 GUI.\n"
    "\n"
    "Veltro(session, plugin_path)   the settings screen; open it through the session: session.open(Veltro, path)\n"
    "epg_timer                      the background timer: epg_timer.setSession(session), then epg_timer.init_timer()\n"
    "doEPGAction(action)            \"load\", \"save\" or \"cleardb\" on the platform's EPG cache\n"
    "\n"
    "The other names belong to the screens that the settings screen opens. Every setting is the host's own, under\n"
    "config.usage and config.misc.";

enum class Take { names, everything, moduleItself };

/// What start-up takes from one host module, under the same names.
struct Requirement {
    const char* module = nullptr;
    std::array<const char*, 7> names{};
    Take take = Take::names;
};

// In this order: a later row replaces a name that an earlier one brought in. The names marked "load only" are used by
// no operation; a host that lacks one of them still is not the host that this module was written for.
// clang-format off
constexpr std::array kRequirements{
    Requirement{"enigma", {"eEPGCache", "eTimer"}},
    Requirement{"Screens.Screen", {"Screen"}},
    // Brings SimpleChannelSelection, ServiceReference, eServiceReference, eServiceCenter and eEnv.
    Requirement{"Screens.ChannelSelection", {}, Take::everything},
    Requirement{"Components.Label", {"Label"}},
    Requirement{"Components.ActionMap", {"ActionMap"}},
    Requirement{"Components.GUIComponent", {"GUIComponent"}}, // load only
    Requirement{"Components.config", {"config", "getConfigListEntry", "ConfigSubsection", "ConfigText", "ConfigNothing",
                                      "NoSave", "ConfigSelection"}}, // ConfigSubsection, ConfigText: load only
    Requirement{"Components.ConfigList", {"ConfigListScreen", "ConfigList", "getSelectionChoices"}},
    Requirement{"Components.FileList", {"FileList"}},
    Requirement{"Components.Sources.StaticText", {"StaticText"}},
    Requirement{"Components.Pixmap", {"Pixmap"}}, // load only
    Requirement{"Screens.MessageBox", {"MessageBox"}}, // load only
    Requirement{"Screens.ChoiceBox", {"ChoiceBox"}},
    Requirement{"Tools.LoadPixmap", {"LoadPixmap"}}, // load only
    Requirement{"Tools", {"Notifications"}}, // load only
    Requirement{"skin", {"loadSkin"}}, // load only
    Requirement{"os", {"system", "path", "unlink"}}, // system: load only
    Requirement{"_enigma", {}, Take::moduleItself}, // load only
    Requirement{"new", {}, Take::moduleItself}, // load only
};
// clang-format on

void resolve(const host::Module& module, const Requirement& requirement)
{
    switch (requirement.take) {
    case Take::names:
        module.importNames(requirement.module, requirement.names);
        break;
    case Take::everything:
        module.importEverything(requirement.module);
        break;
    case Take::moduleItself:
        module.importModule(requirement.module);
        break;
    }
}

} // namespace

void startUp(const host::Module& module)
{
    module.setDoc(kDoc);
    for (const Requirement& requirement : kRequirements)
        resolve(module, requirement);
    module.define(kDoEPGAction);
    module.define(kVeltro);
    module.define(kEditDvbEpgBlacklist);
    module.define(kDvbEpgBlacklistChannelSelection);
    module.define(kFindInList);
    module.define(kDirChoose);
    module.define(kEPGTimer);
    module.define("epg_timer"_t, module.host().call("EPGTimer"_t));
}

} // namespace veltro
