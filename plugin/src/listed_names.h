// Which names a list of rows holds already: `find_in_list`, and the same answer for many names.
#pragma once

#include "host/module.h"

namespace veltro {

extern const host::OperationTable kFindInList;

/// Answers whether a name is listed exactly as `find_in_list(servicelist, name, 0)` does, without reading the list
/// again for every name. That holds while the list, its rows and its names are plain ones, whose equality is known, and
/// as long as nobody has replaced `find_in_list`; otherwise `find_in_list` itself is asked.
class ListedNames {
public:
    explicit ListedNames(const host::Object& servicelist);

    [[nodiscard]] bool contains(const host::Object& name);

    /// Notes a row of this name, which has just been appended.
    void add(const host::Object& name);

private:
    [[nodiscard]] bool isUpToDate();
    void read();

    host::Object servicelist_;
    host::Object names_; // a set, of plain names alone
    std::size_t known_ = 0;
    bool isRead_ = false;
    bool isPlain_ = false;
};

} // namespace veltro
