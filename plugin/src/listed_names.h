// Which names a list of rows holds already: `find_in_list`, and the same answer for many names.
#pragma once

#include "host/module.h"

namespace veltro {

extern const host::OperationTable kFindInList;

/// Answers whether a name is listed as `find_in_list(servicelist, name, 0)` does, without reading the list again for
/// every name. That holds while the list, its rows and its names are plain ones, whose equality is known, and as long
/// as nobody has replaced `find_in_list`; otherwise `find_in_list` itself is asked.
///
/// The host runs between two questions and may change the list. A change of its length, of its last row or of one of
/// the next rows in turn has it read again: all rows of a short list, so that there every change is noticed at once. In
/// a long one a single row that was replaced is noticed some questions later, for looking at all rows each time would
/// make adding many services take the square of their number.
class ListedNames {
public:
    explicit ListedNames(const host::Object& servicelist);

    [[nodiscard]] bool contains(const host::Object& name);

    /// Notes a row, which has just been appended.
    void add(const host::Object& row);

private:
    static constexpr std::size_t kLookedAtOnce = 32;

    [[nodiscard]] bool isUpToDate();
    [[nodiscard]] bool isAsRead();
    void read();

    host::Object servicelist_;
    host::Object rows_;  // those that were read or added; held, so that no new row can have an old one's address
    host::Object names_; // a set, of plain names alone
    std::size_t looked_ = 0;
    bool isRead_ = false;
    bool isPlain_ = false;
};

} // namespace veltro
