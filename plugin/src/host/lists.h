// The host's list widgets: `ConfigList` over rows of entries, and `FileList`.
#pragma once

#include "host/config.h"

namespace veltro::host {

// One row of the settings list: label, element, description, tag.
[[nodiscard]] inline Object labelOf(const Object& row, At at = At::here())
{
    return row.item(0, at);
}
[[nodiscard]] inline ConfigElement elementOf(const Object& row, At at = At::here())
{
    return ConfigElement(row.item(1, at));
}
[[nodiscard]] inline Object tagOf(const Object& row, At at = At::here())
{
    return row.item(3, at);
}

struct ConfigList : Object {
    explicit ConfigList(Object object) : Object(std::move(object)) {}

    [[nodiscard]] Object rows(At at = At::here()) const { return attr({"list"_t, at}); }

    /// The row under the cursor as the widget knows it, and as its list content knows it. None when there is none.
    [[nodiscard]] Object current(At at = At::here()) const { return call({"getCurrent"_t, at}); }
    [[nodiscard]] Object currentOfContent(At at = At::here()) const
    {
        return attr({"l"_t, at}).call({"getCurrentSelection"_t, at});
    }

    /// Hands the rows to the list content, which redraws.
    void redraw(const Object& rows, At at = At::here()) const { attr({"l"_t, at}).call({"setList"_t, at}, rows); }

    void show(const Object& rows, At at = At::here()) const
    {
        setAttr({"list"_t, at}, rows);
        redraw(rows, at);
    }

    /// Moves the cursor by one of the widget instance's own constants, "moveUp" or "moveDown".
    void moveSelection(Named direction) const
    {
        const Object instance = attr({"instance"_t, direction.at});
        instance.call({"moveSelection"_t, direction.at}, instance.attr(direction));
    }
};

struct FileList : Object {
    explicit FileList(Object object) : Object(std::move(object)) {}

    /// What stands under the cursor. An empty list has no selection, and reading one is an error.
    [[nodiscard]] Object selectedPath(At at = At::here()) const { return call({"getSelection"_t, at}).item(0, at); }
    [[nodiscard]] bool isDirectorySelected(At at = At::here()) const
    {
        return call({"getSelection"_t, at}).item(1, at).truth(at);
    }

    [[nodiscard]] bool canDescent(At at = At::here()) const { return call({"canDescent"_t, at}).truth(at); }
    void descent(At at = At::here()) const { call({"descent"_t, at}); }
};

} // namespace veltro::host
