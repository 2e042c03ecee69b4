#include "dir_choose.h"

#include "guarded_title.h"
#include "host/lists.h"
#include "host/screen.h"

namespace veltro {

using namespace host::literals;
using host::FileList;
using host::Object;

namespace {

constexpr std::array kKeys{
    host::Binding{"back"_t, "cancel"_t}, host::Binding{"left"_t, "left"_t},  host::Binding{"right"_t, "right"_t},
    host::Binding{"up"_t, "up"_t},       host::Binding{"down"_t, "down"_t},  host::Binding{"ok"_t, "ok"_t},
    host::Binding{"green"_t, "green"_t}, host::Binding{"red"_t, "cancel"_t},
};

struct DirChoose : host::Screen {
    using Screen::Screen;

    void init(const Object& session, const Object& initDir) const
    {
        initBase("Screen"_t, session);
        // The host takes the first of these layouts that the active skin brings.
        setAttr("skinName"_t, host().list("KelmarFile"_t, "FileBrowser"_t, "EPGPathBrowser"_t));
        setItem("filelist"_t, newFileList(initDir));
        addEmptyLabel("driverfile"_t); // filled by the first move of the cursor
        setItem("actions"_t, host().call("ActionMap"_t,
                                         host().list("WizardActions"_t, "DirectionActions"_t, "ColorActions"_t,
                                                     "EPGSelectActions"_t),
                                         keyMap(*this, kKeys), host().integer(-1)));
        setAttr("title"_t, host().translate("ORSA Veltro"_t));
        addGuardedTitle(*this);
        addKeyLabel("key_red"_t, "Cancel"_t);
        addKeyLabel("key_green"_t, "OK"_t);
    }

    void cancel() const { close(host::kNoValue); }

    void green() const
    {
        if (!fileList().isDirectorySelected()) {
            showInvalidChoice();
            return;
        }
        const Object directory = fileList().selectedPath();
        const bool hasSlash = directory.call("endswith"_t, "/"_t).truth();
        setAttr("fullpath"_t, directory.plus(host().text(hasSlash ? "epg.dat"_t : "/epg.dat"_t)));
        close(attr("fullpath"_t));
    }

    void ok() const
    {
        if (fileList().canDescent()) {
            fileList().descent();
            call("updateFile"_t);
        } else {
            call("green"_t);
        }
    }

    void up() const { move("up"_t); }
    void down() const { move("down"_t); }
    void left() const { move("pageUp"_t); }
    void right() const { move("pageDown"_t); }

    void updateFile() const
    {
        const Object currFolder = fileList().selectedPath();
        if (fileList().isDirectorySelected())
            showText(currFolder);
        else
            showInvalidChoice();
    }

private:
    [[nodiscard]] FileList fileList() const { return FileList(widget("filelist"_t)); }

    [[nodiscard]] Object newFileList(const Object& initDir) const
    {
        const Object no = host().no();
        return host()["FileList"_t].apply(
            host().tuple(initDir),
            host().dict({{"inhibitMounts"_t, no}, {"inhibitDirs"_t, no}, {"showMountpoints"_t, no}}));
    }

    void move(host::Named movement) const
    {
        fileList().call(movement);
        call("updateFile"_t);
    }

    void showText(const Object& text) const { widget("driverfile"_t).call("setText"_t, text); }
    void showInvalidChoice() const { showText(host().translate("Invalid Choice"_t)); }
};

constexpr std::array kOperations{
    host::method<&DirChoose::init>(
        "__init__",
        "Builds the chooser.\n\n"
        "session: the session that opens it; initDir: the directory to list first, with its\n"
        "final slash.",
        {{"session"}, {"initDir"}}),
    host::method<&DirChoose::cancel>("cancel", "Closes without a choice."),
    host::method<&DirChoose::green>(
        "green", "Closes with the path of epg.dat in the directory under the cursor; on a file shows\n"
                 "\"Invalid Choice\" and stays open."),
    host::method<&DirChoose::up>("up", "Moves the cursor up by one entry."),
    host::method<&DirChoose::down>("down", "Moves the cursor down by one entry."),
    host::method<&DirChoose::left>("left", "Moves the cursor up by a page."),
    host::method<&DirChoose::right>("right", "Moves the cursor down by a page."),
    host::method<&DirChoose::ok>("ok", "Enters the directory under the cursor; on anything else does what green does."),
    host::method<&DirChoose::updateFile>("updateFile",
                                         "Shows the directory under the cursor, or \"Invalid Choice\" for a file."),
};

constexpr std::array kBases{"Screen"_t};

} // namespace

constinit const host::ClassTable kDirChoose{
    .name = "DirChoose",
    .doc = "The screen on which the directory of the EPG cache file is chosen.\n\n"
           "Closes with the full path of the file, the chosen directory joined with epg.dat, or with None.",
    .bases = kBases,
    .operations = kOperations,
};

} // namespace veltro
