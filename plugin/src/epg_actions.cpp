#include "epg_actions.h"

#include "config_keys.h"
#include "host/epg_cache.h"
#include "host/timer.h"

namespace veltro {

using namespace host::literals;
using host::config;
using host::EPGCache;
using host::Host;
using host::Object;
using host::Timer;

namespace {

constexpr long kMillisecondsPerMinute = 60000;
constexpr long kFirstLoadMilliseconds = 15000;

void doEPGAction(Host host, const Object& action)
{
    const EPGCache epg_cache = EPGCache::getInstance(host); // first and always, even for a word that means nothing
    if (action.equals("load"_t)) {
        epg_cache.load();
    } else if (action.equals("save"_t)) {
        epg_cache.save();
    } else if (action.equals("cleardb"_t)) {
        epg_cache.clearDB();
        epg_cache.save(); // so that the file is overwritten by the now empty cache
    }
}

struct EPGTimer : Object {
    explicit EPGTimer(Object self) : Object(std::move(self)) {}

    void setSession(const Object& session) const { setAttr("session"_t, session); }

    void do_epg_action() const
    {
        const Object milliseconds = period();
        if (!milliseconds.isPositive())
            return; // the cycle ends here, until init_timer is called again
        host().call("doEPGAction"_t, isClient() ? "load"_t : "save"_t);
        Timer(attr("epg_timer"_t)).startSingleShot(milliseconds);
    }

    void init_timer() const
    {
        // A period of 0 is not tested here: the timer fires once, at the next turn of the main loop, and then stays
        // idle.
        const Object firstDelay = isClient() ? host().integer(kFirstLoadMilliseconds) : period();
        const Timer timer = Timer::create(host());
        setAttr("epg_timer"_t, timer); // drops the timer of an earlier call, which then never fires
        timer.onTimeout(attr("do_epg_action"_t));
        timer.startSingleShot(firstDelay);
    }

private:
    [[nodiscard]] bool isClient() const { return config(host(), keys::kEpgIsClient).value().truth(); }

    /// Milliseconds, as the host's own integer: it has no upper limit.
    [[nodiscard]] Object period() const
    {
        return config(host(), keys::kEpgDataTimer).value().toInteger().times(kMillisecondsPerMinute);
    }
};

constexpr std::array kTimerOperations{
    host::method<&EPGTimer::setSession>(
        "setSession", "Records the host's GUI session. Starts nothing.\n\nsession: the session object of the host.",
        {{"session"}}),
    host::method<&EPGTimer::do_epg_action>(
        "do_epg_action",
        "Saves the EPG cache, or loads it in EPG client mode, and arms the timer for the next time.\n\n"
        "The period is config.misc.epg_data_timer, in minutes, read afresh. A period of 0 or less ends the cycle:\n"
        "nothing is done and the timer stays idle until init_timer is called. An error ends the cycle as well."),
    host::method<&EPGTimer::init_timer>(
        "init_timer",
        "Arms a new timer, which replaces the one of an earlier call.\n\n"
        "The first action comes after one period (config.misc.epg_data_timer minutes), or after 15 seconds in EPG\n"
        "client mode. A period that is not a number is an error, and an earlier timer then stays as it was."),
};

} // namespace

constinit const host::OperationTable kDoEPGAction = host::function<&doEPGAction>(
    "doEPGAction",
    "Runs one action on the platform's whole EPG cache; returns when it is done.\n\n"
    "action: \"load\" reads the cache from its file, \"save\" writes it, \"cleardb\" empties the cache and writes the\n"
    "empty cache. Any other word does nothing. The file is the one last given to eEPGCache.setCacheFile().",
    {{"action"}}, host::Takes::positionsAlone);

constinit const host::ClassTable kEPGTimer{
    .name = "EPGTimer",
    .doc = "Saves the EPG cache every config.misc.epg_data_timer minutes, or loads it in EPG client mode.\n\n"
           "The module's one instance is `epg_timer`. The host's plug-in entry calls setSession(session) and\n"
           "init_timer() once the GUI runs, and init_timer() again after the period had been 0.",
    .bases = {},
    .operations = kTimerOperations,
};

} // namespace veltro
