#include "channel_picker.h"

#include "host/callable.h"
#include "host/screen.h"
#include "host/services.h"

namespace veltro {

using namespace host::literals;
using host::Binding;
using host::Object;
using host::ServiceReference;

namespace {

// Crossed on purpose: the host's keymap raises showAllServices on red, showSatellites on green and showProviders on
// yellow, so that each key does what its label says. Blue (showFavourites) is the base class's own.
constexpr std::array kPickerKeys{
    Binding{"showProviders"_t, "doNothing"_t}, Binding{"showSatellites"_t, "showAllServices"_t},
    Binding{"showAllServices"_t, "cancel"_t},  Binding{"cancel"_t, "cancel"_t},
    Binding{"ok"_t, "channelSelected"_t},      Binding{"keyRadio"_t, "setModeRadio"_t},
    Binding{"keyTV"_t, "setModeTv"_t},
};

struct DVB_EPG_blacklist_ChannelSelection : host::Screen {
    using Screen::Screen;

    void init(const Object& session, const Object& plugin_path) const
    {
        const Object title = host().translate("Select service to add..."_t);
        setAttr("skin_path"_t, plugin_path);
        initBase("SimpleChannelSelection"_t, session, title);
        attr("onShown"_t).call("append"_t, own("_DVB_EPG_blacklist_ChannelSelection__onExecCallback"_t));
        attr("servicelist"_t).call("setPythonConfig"_t);
        setItem("actions"_t,
                host().call("ActionMap"_t,
                            host().list("OkCancelActions"_t, "TvRadioActions"_t, "ChannelSelectBaseActions"_t),
                            keyMap(*this, kPickerKeys)));
        addKeyLabel("key_red"_t, "Close"_t);
        addKeyLabel("key_green"_t, "All"_t);
        addKeyLabel("key_yellow"_t, "Add bouquet services"_t);
        addKeyLabel("key_blue"_t, "Favourites"_t);
    }

    void onExecCallback() const { call("setModeTv"_t); }

    /// YELLOW. The name is historic, and a skin or a subclass may hang on it.
    void doNothing() const
    {
        const Object ref = call("getCurrentSelection"_t);
        if (ref.isNone() || !ServiceReference(ref).isDirectory())
            return;
        const Object refs = host().list();
        const Object services = host::contentOf(ServiceReference(ref));
        if (!services.isNone())
            appendPlayable(services, refs);
        close(refs);
    }

    void channelSelected() const
    {
        // No test for a missing selection here, unlike for yellow: OK on nothing is an error that the host reports.
        const ServiceReference ref(call("getCurrentSelection"_t));
        if (ref.isDirectory())
            call("enterPath"_t, ref);
        else if (!ref.hasAnyOf(host::Mask(host::referenceFlag(host(), "isMarker"_t))))
            close(host().list(ref));
    }

    void setModeTv() const
    {
        call("setTvMode"_t);
        call("showFavourites"_t);
    }

    void setModeRadio() const
    {
        call("setRadioMode"_t);
        call("showFavourites"_t);
    }

    void cancel() const { close(host::kNoValue); }

private:
    /// The bouquet's direct content: nested bouquets are not entered.
    void appendPlayable(const Object& services, const Object& refs) const
    {
        const Object isMarker = host::referenceFlag(host(), "isMarker"_t);
        const host::Mask notPlayable(isMarker.bitOr(host::referenceFlag(host(), "isDirectory"_t)));
        const host::Callable getNext(services.attr("getNext"_t));
        for (;;) {
            const ServiceReference service(getNext(host::At::here()));
            if (!service.valid())
                return;
            if (!service.hasAnyOf(notPlayable))
                refs.append(service);
        }
    }
};

constexpr std::array kPickerOperations{
    host::method<&DVB_EPG_blacklist_ChannelSelection::init>(
        "__init__", "Builds the picker.\n\nplugin_path: kept as skin_path.", {{"session"}, {"plugin_path"}}),
    host::method<&DVB_EPG_blacklist_ChannelSelection::onExecCallback>(
        "__onExecCallback", "Goes back to the TV favourites each time the picker is shown."),
    host::method<&DVB_EPG_blacklist_ChannelSelection::doNothing>(
        "doNothing", "YELLOW: closes with every playable service of the selected bouquet, in its order."),
    host::method<&DVB_EPG_blacklist_ChannelSelection::channelSelected>(
        "channelSelected", "OK: enters the selected bouquet, or closes with a list of the one selected service."),
    host::method<&DVB_EPG_blacklist_ChannelSelection::setModeTv>("setModeTv", "TV: shows the TV favourites."),
    host::method<&DVB_EPG_blacklist_ChannelSelection::setModeRadio>("setModeRadio",
                                                                    "RADIO: shows the radio favourites."),
    host::method<&DVB_EPG_blacklist_ChannelSelection::cancel>("cancel", "Closes with None."),
};

constexpr std::array kPickerBases{"SimpleChannelSelection"_t};

} // namespace

constinit const host::ClassTable kDvbEpgBlacklistChannelSelection{
    .name = "DVB_EPG_blacklist_ChannelSelection",
    .doc = "The channel list from which services are added to the blacklist.\n\n"
           "Closes with a list of eServiceReference, or with None.",
    .bases = kPickerBases,
    .operations = kPickerOperations,
};

} // namespace veltro
