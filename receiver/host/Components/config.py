"""The host's configuration tree. (API first; see the classes.)

config, configfile; getConfigListEntry(*fields) -> tuple; NoSave(element) -> element
ConfigElement: value, default, saved_value, enabled; save(), cancel(), load(), isChanged(), addNotifier(f,
    initial_call=True, immediate_feedback=True), removeNotifier(f), disableSave(), handleKey(key, callback=None) (callback()
    only on a real change), getText(), getMulti(selected) -> ("text", text) or ("mtext", text, marked positions),
    onSelect(session), onDeselect(session)
ConfigSelection(choices, default=None): choices (list of values), description (value -> text), getIndex(), setChoices()
ConfigBoolean/ConfigYesNo, ConfigNothing(ConfigSelection), ConfigSelectionNumber(min, max, stepwidth, default=None,
    wraparound=False), ConfigInteger(default, limits=(0, 9999999999), step=1), ConfigNumber, ConfigText
keys: KEY_LEFT KEY_RIGHT KEY_OK KEY_DELETE KEY_BACKSPACE KEY_HOME KEY_END KEY_TOGGLEOW KEY_ASCII KEY_TIMEOUT
    KEY_NUMBERS KEY_0 .. KEY_9, getKeyNumber(key)
configfile.load() (reads ETC/settings; call once at start), configfile.save()
"""
