#include "settings_screen.h"

#include "guarded_title.h"
#include "host/callable.h"
#include "host/epg_cache.h"
#include "host/lists.h"
#include "settings_rows.h"

namespace veltro {

using namespace host::literals;
using host::config;
using host::ConfigList;
using host::EPGCache;
using host::Object;
using host::Text;

namespace {

constexpr std::array kPlaceholders{"input_epgpath"_t, "input_epgbackup"_t, "input_epgrestore"_t, "input_epgdelete"_t};

// EXIT runs our own keyClose, while red, although labelled "Exit", runs the host's keyCancel with its question.
constexpr std::array kKeys{
    host::Binding{"ok"_t, "keyOk"_t},      host::Binding{"cancel"_t, "keyClose"_t},
    host::Binding{"red"_t, "keyCancel"_t}, host::Binding{"green"_t, "keySave"_t},
    host::Binding{"up"_t, "up"_t},         host::Binding{"down"_t, "down"_t},
};

/// Makes the rows of one rebuild of the list.
class RowMaker {
public:
    RowMaker(const Object& screen, host::ConfigTree& tree, const Object& epgPath)
        : screen_(screen), tree_(tree), epgPath_(epgPath), host_(screen.host()),
          getConfigListEntry_(host_["getConfigListEntry"_t]), translate_(host_["_"_t])
    {
    }

    void append(const Object& list, std::span<const Row> rows)
    {
        for (const Row& row : rows)
            list.append(std::visit([this](const auto& each) { return make(each); }, row));
    }

private:
    [[nodiscard]] Object make(const SettingRow& row)
    {
        const Object label = translate_(host::At::here(), row.label);
        const Object element = tree_.element(row.key);
        // The empty description is not translated: a catalogue answers the empty text with its own header.
        const Object description = row.description ? translate_(host::At::here(), *row.description) : host_.text(""_t);
        return entry(label, element, description, "to_save"_t);
    }

    [[nodiscard]] Object make(const ActionRow& row)
    {
        return entry(translate_(host::At::here(), row.label), screen_.attr(row.placeholder), host_.text(""_t), row.tag);
    }

    [[nodiscard]] Object make(const EpgPathRow&)
    {
        const Object label = translate_(host::At::here(), "EPG Path :"_t).plus(host_.text(" %s"_t).format(epgPath_));
        return entry(label, screen_.attr("input_epgpath"_t), host_.text(""_t), "epgpath"_t);
    }

    [[nodiscard]] Object entry(const Object& label, const Object& element, const Object& description, Text tag)
    {
        return getConfigListEntry_(host::At::here(), label, element, description, tag);
    }

    const Object& screen_;
    host::ConfigTree& tree_;
    const Object& epgPath_;
    host::Host host_;
    host::Callable getConfigListEntry_;
    host::Callable translate_;
};

struct Veltro : host::Screen {
    using Screen::Screen;

    void init(const Object& session, const Object& plugin_path, const Object&) const
    {
        initBase("Screen"_t, session);
        setAttr("skin_path"_t, plugin_path);
        setAttr("session"_t, session);
        for (const Text placeholder : kPlaceholders)
            setAttr(placeholder, host::newPlaceholder(host()));
        setAttr("title"_t, host().translate("ORSA Veltro"_t));
        addGuardedTitle(*this);
        addEmptyLabel("status"_t);
        addKeyLabel("key_red"_t, "Exit"_t);
        addKeyLabel("key_green"_t, "Save"_t);
        setItem("shortcuts"_t,
                host().call("ActionMap"_t, host().list("SetupActions"_t, "ColorActions"_t, "DirectionActions"_t),
                            keyMap(*this, kKeys), host().integer(-2)));
        const Object list = host().list();
        setAttr("list"_t, list);
        host()["ConfigListScreen"_t]
            .attr("__init__"_t)
            .apply(host().tuple(*this, list),
                   host().dict({{"session"_t, session}, {"on_change"_t, own("changedEntry"_t)}}));
        call("createSetup"_t);
    }

    void createSetup() const
    {
        host::ConfigTree tree(host());
        const Object epgPath =
            tree.element(keys::kEpgCacheFilename).value().toText().call("replace"_t, "/epg.dat"_t, ""_t);
        RowMaker maker(*this, tree, epgPath);
        const Object list = host().list();
        maker.append(list, rows::kAlways);
        setAttr("list"_t, list);
        if (tree.element(keys::kEpgIsClient).value().truth())
            maker.append(list, rows::kInClientMode);
        else
            maker.append(list, rows::kOtherwise);
        configList().show(list);
    }

    void keyOk() const
    {
        const Object returnValue = tagOfSelection();
        if (returnValue.equals("epgbackup"_t)) {
            host::ConfigTree tree(host());
            saveCache(tree);
            showResult(resultWithFile("Saving of EPG cache to %s finished"_t, tree));
        } else if (returnValue.equals("epgrestore"_t)) {
            host().call("doEPGAction"_t, "load"_t);
            host::ConfigTree tree(host());
            showResult(resultWithFile("Loading EPG data from %s finished"_t, tree));
        } else if (returnValue.equals("epgdelete"_t)) {
            host().call("doEPGAction"_t, "cleardb"_t);
            showResult(host().translate("Clearing EPG DB finished"_t));
        } else if (returnValue.equals("epgpath"_t)) {
            // The directory keeps its final slash, unlike the one that the row shows.
            const Object startdirectory = cacheFile().toText().call("replace"_t, "epg.dat"_t, ""_t);
            openWithCallback("gotEPGpath"_t, "DirChoose"_t, startdirectory);
        } else if (returnValue.equals("edit_dvb_epg_blacklist"_t)) {
            attr("session"_t).call("open"_t, host()["Edit_DVB_EPG_Blacklist"_t], attr("skin_path"_t));
        } else {
            offerChoices();
        }
    }

    void configSelectionCallBack(const Object& ret) const
    {
        if (ret.truth() && ret.size() > 1)
            elementOf(currentRow()).setValue(ret.item(1));
    }

    void gotEPGpath(const Object& res) const
    {
        if (!res.truth())
            return; // the chooser was cancelled
        config(host(), keys::kEpgCacheFilename).setValue(res);
        config(host(), keys::kEpgCacheFilename).save(); // at once: the exit key does not undo the directory
    }

    void epgBackupfinished(const Object& statustext) const
    {
        setAttr("text"_t, statustext);
        widget("status"_t).call("setText"_t, attr("text"_t));
    }

    void up() const { move("moveUp"_t); }
    void down() const { move("moveDown"_t); }

    void changedEntry() const
    {
        clearStatus();
        call("createSetup"_t);
    }

    void keyClose() const
    {
        for (const Object& row : each(attr("list"_t)))
            if (isToSave(row))
                elementOf(row).cancel();
        close();
    }

    void keySave() const
    {
        EPGCache::getInstance(host()).setCacheFile(cacheFile()); // whether or not the path has changed
        for (const Object& row : each(attr("list"_t)))
            if (isToSave(row))
                elementOf(row).save();
        close();
    }

private:
    [[nodiscard]] ConfigList configList() const { return ConfigList(widget("config"_t)); }
    [[nodiscard]] Object currentRow() const { return configList().current(); }
    [[nodiscard]] Object cacheFile() const { return config(host(), keys::kEpgCacheFilename).value(); }
    [[nodiscard]] static bool isToSave(const Object& row) { return tagOf(row).equals("to_save"_t); }

    /// The tag of the selected row; no value when no row is selected or the row has no tag.
    [[nodiscard]] Object tagOfSelection() const
    {
        try {
            return tagOf(configList().currentOfContent());
        } catch (const host::Error& error) {
            if (!error.isOrdinary())
                throw;
            return host().none();
        }
    }

    /// Saves with client mode off, which would keep the platform from saving. An error leaves it off.
    void saveCache(host::ConfigTree& tree) const
    {
        const bool toggle = tree.element(keys::kEpgIsClient).value().truth();
        if (toggle)
            tree.element(keys::kEpgIsClient).setValue(false);
        host().call("doEPGAction"_t, "save"_t);
        if (toggle)
            tree.element(keys::kEpgIsClient).setValue(true);
    }

    /// The translated text first, the file's path in it afterwards.
    [[nodiscard]] Object resultWithFile(host::Named id, host::ConfigTree& tree) const
    {
        return host().translate(id).format(tree.element(keys::kEpgCacheFilename).value(), id.at);
    }

    /// The pop-up list of a selection's choices. A row of any other kind has none.
    void offerChoices() const
    {
        if (!elementOf(currentRow()).isInstanceOf(host()["ConfigSelection"_t]))
            return;
        const auto [choices, idx] = unpackTwo(host().call("getSelectionChoices"_t, elementOf(currentRow())));
        const Object keys = host().list("1"_t, "2"_t, "3"_t, "4"_t, "5"_t, "6"_t, "7"_t, "8"_t, "9"_t);
        const Object title = labelOf(currentRow()).toText();
        attr("session"_t)
            .attr("openWithCallback"_t)
            .apply(host().tuple(own("configSelectionCallBack"_t), host()["ChoiceBox"_t]),
                   host().dict({{"title"_t, title}, {"list"_t, choices}, {"selection"_t, idx}, {"keys"_t, keys}}));
    }

    void move(host::Named direction) const
    {
        clearStatus();
        const ConfigList list = configList();
        if (list.rows().size() > 0)
            list.moveSelection(direction);
    }

    void clearStatus() const { showResult(host().text(""_t)); }

    void showResult(const Object& statustext) const
    {
        setAttr("statustext"_t, statustext);
        call("epgBackupfinished"_t, attr("statustext"_t));
    }
};

constexpr std::array kOperations{
    host::method<&Veltro::init>(
        "__init__",
        "Builds the screen and its list.\n\n"
        "session: the host session that opens it; plugin_path: the plug-in's directory; args: accepted, not used.",
        {{"session"}, {"plugin_path"}, {"args", host::Default::zero}}),
    host::method<&Veltro::createSetup>("createSetup",
                                       "Builds the list anew: 22 rows, or 20 in EPG client mode, from the host's\n"
                                       "configuration as it is now. A key that the host lacks is an AttributeError."),
    host::method<&Veltro::keyOk>("keyOk",
                                 "OK: runs the action of the selected row, or offers the choices of a selection.\n\n"
                                 "Saving, loading and clearing the EPG cache show their result in the status line."),
    host::method<&Veltro::configSelectionCallBack>("configSelectionCallBack",
                                                   "Sets the selected row's element to the value that was chosen.\n\n"
                                                   "ret: the chosen (text, value) pair, or None.",
                                                   {{"ret", host::Default::noValue}}),
    host::method<&Veltro::gotEPGpath>("gotEPGpath",
                                      "Stores and saves the new path of the EPG cache file at once.\n\n"
                                      "res: the full path from the directory chooser, or None.",
                                      {{"res"}}),
    host::method<&Veltro::epgBackupfinished>("epgBackupfinished", "Shows statustext in the status line.",
                                             {{"statustext"}}),
    host::method<&Veltro::up>("up", "Moves the selection up by one row and clears the status line."),
    host::method<&Veltro::down>("down", "Moves the selection down by one row and clears the status line."),
    host::method<&Veltro::changedEntry>("changedEntry",
                                        "Called by the host after a value has changed: clears the status line and\n"
                                        "builds the list anew."),
    host::method<&Veltro::keyClose>("keyClose", "EXIT: reverts every setting to its last saved value and closes."),
    host::method<&Veltro::keySave>("keySave",
                                   "GREEN: tells the platform the path of the EPG cache file, saves every setting\n"
                                   "and closes. An error leaves the screen open."),
};

constexpr std::array kBases{"Screen"_t, "ConfigListScreen"_t};

} // namespace

constinit const host::ClassTable kVeltro{
    .name = "Veltro",
    .doc =
        "The EPG settings screen: Veltro(session, plugin_path).\n\n"
        "Shows and changes the EPG settings of the host's configuration, saves, loads and clears the EPG cache, and\n"
        "opens the directory chooser and the blacklist editor. The layout is the skin's screen of this name.",
    .bases = kBases,
    .operations = kOperations,
};

} // namespace veltro
