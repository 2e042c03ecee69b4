"""The module's operations: each class, its operations in the order of definition, their parameters but the instance."""

PICKER = "DVB_EPG_blacklist_ChannelSelection"
PRIVATE = "_DVB_EPG_blacklist_ChannelSelection__onExecCallback"
REQUIRED = object()


def plain(*names):
    return [(name, ()) for name in names]


OPERATIONS = (
    ("Veltro", [("__init__", (("session", REQUIRED), ("plugin_path", REQUIRED), ("args", 0)))]
     + plain("createSetup", "keyOk")
     + [("configSelectionCallBack", (("ret", None),)),
        ("gotEPGpath", (("res", REQUIRED),)),
        ("epgBackupfinished", (("statustext", REQUIRED),))]
     + plain("up", "down", "changedEntry", "keyClose", "keySave")),
    ("Edit_DVB_EPG_Blacklist", [("__init__", (("session", REQUIRED), ("plugin_path", REQUIRED)))]
     + plain("setWindowTitle", "redPressed", "greenPressed", "yellowPressed", "bluePressed", "cancel", "delete")
     + [("finishedChannelSelection", None)]  # any number of positional arguments
     + plain("saveFile", "loadFile")),
    (PICKER, [("__init__", (("session", REQUIRED), ("plugin_path", REQUIRED)))]
     + plain(PRIVATE, "doNothing", "channelSelected", "setModeTv", "setModeRadio", "cancel")),
    ("DirChoose", [("__init__", (("session", REQUIRED), ("initDir", REQUIRED)))]
     + plain("cancel", "green", "up", "down", "left", "right", "ok", "updateFile")),
    ("EPGTimer", [("setSession", (("session", REQUIRED),))] + plain("do_epg_action", "init_timer")),
)
BASES = {
    "Veltro": ("Screen", "ConfigListScreen"),
    "Edit_DVB_EPG_Blacklist": ("Screen",),
    PICKER: ("SimpleChannelSelection",),
    "DirChoose": ("Screen",),
}


def shown_name(operation):
    """How a trace and an argument error spell the operation."""
    return "__onExecCallback" if operation == PRIVATE else operation


def each():
    for class_name, operations in OPERATIONS:
        for operation, parameters in operations:
            yield class_name, operation, parameters


def bare(module, class_name):
    """An instance whose constructor did not run."""
    kind = getattr(module, class_name)
    return kind() if class_name == "EPGTimer" else kind.__new__(kind)
