#include "blacklist.h"

#include "host/console.h"
#include "host/files.h"
#include "host/lists.h"
#include "host/screen.h"
#include "host/services.h"
#include "listed_names.h"

namespace veltro {

using namespace host::literals;
using host::Binding;
using host::ConfigList;
using host::each;
using host::NamedService;
using host::Object;

namespace {

constexpr std::array kEditorKeys{
    Binding{"green"_t, "greenPressed"_t}, Binding{"red"_t, "redPressed"_t}, Binding{"yellow"_t, "yellowPressed"_t},
    Binding{"blue"_t, "bluePressed"_t},   Binding{"cancel"_t, "cancel"_t},
};

struct Edit_DVB_EPG_Blacklist : host::Screen {
    using Screen::Screen;

    void init(const Object& session, const Object& plugin_path) const
    {
        initBase("Screen"_t, session);
        setAttr("skin_path"_t, plugin_path);
        setAttr("filename"_t, host()["eEnv"_t].call("resolve"_t, "${sysconfdir}/enigma2/blacklist_dvb_epg"_t));
        setAttr("start_str"_t, "#SERVICE "_t);
        addKeyLabel("key_red"_t, "Cancel"_t);
        addKeyLabel("key_green"_t, "Save"_t);
        addKeyLabel("key_yellow"_t, "Delete"_t);
        addKeyLabel("key_blue"_t, "Add Service"_t);
        setItem("actions"_t, host().call("ActionMap"_t, host().list("ColorActions"_t, "SetupActions"_t),
                                         keyMap(*this, kEditorKeys), host().integer(-1)));
        const Object servicelist = host().list();
        setAttr("servicelist"_t, servicelist);
        const ConfigList widget(host().call("ConfigList"_t, servicelist));
        widget.show(servicelist); // the very list that the screen edits
        setItem("ServiceList"_t, widget);
        attr("onShown"_t).call("append"_t, own("setWindowTitle"_t));
        call("loadFile"_t);
    }

    void setWindowTitle() const { call("setTitle"_t, host().translate("Edit blacklist for DVB EPG"_t)); }

    void redPressed() const { call("cancel"_t); }
    void yellowPressed() const { call("delete"_t); }
    void cancel() const { close(); }

    void greenPressed() const
    {
        call("saveFile"_t);
        close();
    }

    void bluePressed() const
    {
        openWithCallback("finishedChannelSelection"_t, "DVB_EPG_blacklist_ChannelSelection"_t, attr("skin_path"_t));
    }

    void deleteSelected() const
    {
        const Object cur = widget("ServiceList"_t).call("getCurrent"_t);
        if (cur.truth() && cur.size() > 2)
            attr("servicelist"_t).call("remove"_t, cur);
        redraw();
    }

    void finishedChannelSelection(const Object& args) const
    {
        if (args.size() == 0)
            return;
        const Object refs = args.item(0);
        if (!refs.truth())
            return; // closed without a choice, or an empty bouquet
        const Object servicelist = attr("servicelist"_t);
        ListedNames listed(servicelist);
        for (const Object& ref : each(refs)) {
            const NamedService service_ref = NamedService::of(ref);
            const Object known_name = service_ref.name();
            const Object service_name = known_name.equals(""_t) ? host().text("N/A"_t) : known_name;
            // By name, not by reference: a service of a listed name can't be added, nor a second one without a name.
            if (listed.contains(service_name))
                continue;
            const Object reference = service_ref.reference();
            if (!isWanted(reference))
                continue;
            const Object row = host().tuple(service_name, newConfigNothing(host()), host().integer(0), reference);
            servicelist.append(row);
            listed.add(row);
        }
        redraw();
    }

    void saveFile() const
    {
        const Object text = fileText();
        const Object filename = attr("filename"_t);
        try {
            withFile(filename, host::FileMode::write, [&](const Object& file) { file.call("write"_t, text); });
        } catch (const host::Error& error) {
            if (!error.matches(host().ioError()))
                throw;
            discard(filename);
        }
    }

    void loadFile() const
    {
        const Object filename = attr("filename"_t);
        if (!host::fileExists(filename))
            return;
        const Object items = host().list();
        const Object start_str = attr("start_str"_t);
        withFile(filename, host::FileMode::read, [&](const Object& file) {
            for (const Object& line : each(file))
                if (line.call("startswith"_t, start_str).truth())
                    items.append(line.call("replace"_t, start_str, ""_t).call("strip"_t, kWhiteSpace));
        });
        if (items.size() > 0)
            call("finishedChannelSelection"_t, items);
        redraw();
    }

private:
    // Not the interpreter's own idea of white space, which takes bytes of names for blanks.
    static constexpr host::Text kWhiteSpace = " \t\r\n"_t;

    /// One line for each row: the prefix, the reference, a line feed.
    [[nodiscard]] Object fileText() const
    {
        const Object start_str = attr("start_str"_t);
        const Object references = host().list();
        for (const Object& row : each(attr("servicelist"_t)))
            references.append(row.item(3));
        const std::size_t count = references.size();
        if (count == 0)
            return host().text(""_t);
        // What stands around the lines goes into the outer ones, so that the whole text is copied once.
        const Object newline = host().text("\n"_t);
        references.setItem(0, start_str.plus(references.item(0)));
        references.setItem(count - 1, references.item(static_cast<int>(count - 1)).plus(newline));
        return newline.plus(start_str).call("join"_t, references);
    }

    /// Live services (1) and streams (4097); bouquets, recordings and the rest have no EPG of their own.
    [[nodiscard]] static bool isWanted(const Object& reference)
    {
        if (reference.startsWith("1:"_t).value_or(false) || reference.startsWith("4097:"_t).value_or(false))
            return true; // nearly all, without taking the text apart
        const Object type = reference.call("split"_t, ":"_t, reference.host().integer(1)).item(0);
        return type.equals("1"_t) || type.equals("4097"_t);
    }

    /// A failed save leaves no file behind, not even the previous one: half a blacklist would look like a whole one. So
    /// the file goes even if the console fails; the console's error is the one that counts then.
    void discard(const Object& filename) const
    {
        host::inAnyCase([&] { host::printLine(host(), "[Veltro] writing DVB EPG blacklist failed\n"_t); },
                        [&] { host::unlinkFile(filename); });
    }

    void redraw() const { ConfigList(widget("ServiceList"_t)).redraw(attr("servicelist"_t)); }
};

constexpr std::array kEditorOperations{
    host::method<&Edit_DVB_EPG_Blacklist::init>(
        "__init__", "Builds the editor and loads the blacklist file.\n\nplugin_path: passed on to the channel picker.",
        {{"session"}, {"plugin_path"}}),
    host::method<&Edit_DVB_EPG_Blacklist::setWindowTitle>("setWindowTitle",
                                                          "Sets the window title; runs each time the screen is shown."),
    host::method<&Edit_DVB_EPG_Blacklist::redPressed>("redPressed", "RED: cancel."),
    host::method<&Edit_DVB_EPG_Blacklist::greenPressed>("greenPressed", "GREEN: writes the file and closes."),
    host::method<&Edit_DVB_EPG_Blacklist::yellowPressed>("yellowPressed", "YELLOW: delete."),
    host::method<&Edit_DVB_EPG_Blacklist::bluePressed>("bluePressed", "BLUE: opens the channel picker."),
    host::method<&Edit_DVB_EPG_Blacklist::cancel>("cancel", "Closes without saving."),
    host::method<&Edit_DVB_EPG_Blacklist::deleteSelected>("delete", "Removes the selected service from the list."),
    host::method<&Edit_DVB_EPG_Blacklist::finishedChannelSelection>(
        "finishedChannelSelection",
        "Adds services to the end of the list.\n\n"
        "The first argument is a list of service references, or of their texts; None and an empty list add nothing.\n"
        "A service whose name is listed already, or whose type is neither 1 nor 4097, is left out.",
        {{"args"}}, host::Takes::anyPositions),
    host::method<&Edit_DVB_EPG_Blacklist::saveFile>(
        "saveFile", "Writes the list, one \"#SERVICE \" line per service.\n\n"
                    "An input/output error is reported on the console, and the file is then deleted."),
    host::method<&Edit_DVB_EPG_Blacklist::loadFile>(
        "loadFile",
        "Adds the services of the file to the list; a missing file is an empty one. A read error is raised."),
};

constexpr std::array kEditorBases{"Screen"_t};

} // namespace

constinit const host::ClassTable kEditDvbEpgBlacklist{
    .name = "Edit_DVB_EPG_Blacklist",
    .doc = "The editor of the DVB EPG blacklist: the services whose DVB EPG must not be updated.\n\n"
           "The list lives in ${sysconfdir}/enigma2/blacklist_dvb_epg; the editor alone reads and writes it here.",
    .bases = kEditorBases,
    .operations = kEditorOperations,
};

} // namespace veltro
