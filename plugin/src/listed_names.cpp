#include "listed_names.h"

namespace veltro {

using namespace host::literals;
using host::each;
using host::Host;
using host::Object;

namespace {

bool find_in_list(Host, const Object& list, const Object& search, const Object& listpos)
{
    for (const Object& row : each(list))
        if (row.item(listpos).equals(search))
            return true;
    return false;
}

} // namespace

ListedNames::ListedNames(const Object& servicelist) : servicelist_(servicelist), names_(servicelist.host().set()) {}

bool ListedNames::contains(const Object& name)
{
    const Host host = servicelist_.host();
    const Object function = host["find_in_list"_t];
    if (name.isPlainText() && function.isOperation(kFindInList) && isUpToDate())
        return names_.contains(name);
    return function(host::At::here(), servicelist_, name, host.integer(0)).truth();
}

void ListedNames::add(const Object& name)
{
    isPlain_ = isPlain_ && name.isPlainText();
    if (!isPlain_)
        return;
    names_.add(name);
    ++known_;
}

/// A host call in between may have changed the list; its length tells.
bool ListedNames::isUpToDate()
{
    if (!isRead_ || (isPlain_ && servicelist_.size() != known_))
        read();
    return isPlain_;
}

void ListedNames::read()
{
    isRead_ = true;
    isPlain_ = servicelist_.isPlainRow();
    names_ = servicelist_.host().set();
    known_ = 0;
    if (!isPlain_)
        return;
    for (const Object& row : each(servicelist_)) {
        isPlain_ = row.isPlainRow() && row.size() > 0;
        if (!isPlain_)
            return;
        add(row.item(0));
    }
}

constinit const host::OperationTable kFindInList =
    host::function<&find_in_list>("find_in_list",
                                  "True if the element at `listpos` of some row of `list` equals `search`.\n\n"
                                  "A row that can't be indexed at listpos is an error, unless an earlier row matches.",
                                  {{"list"}, {"search"}, {"listpos", host::Default::zero}});

} // namespace veltro
