#include "listed_names.h"

#include <algorithm>

namespace veltro {

using namespace host::literals;
using host::each;
using host::Host;
using host::Object;

namespace {

bool find_in_list(Host, const Object& list, const Object& search, const Object& listpos)
{
    const std::optional<int> position = listpos.asIndex();
    for (const Object& row : each(list))
        if ((position ? row.item(*position) : row.item(listpos)).equals(search))
            return true;
    return false;
}

} // namespace

ListedNames::ListedNames(const Object& servicelist)
    : servicelist_(servicelist), rows_(servicelist.host().list()), names_(servicelist.host().set())
{
}

bool ListedNames::contains(const Object& name)
{
    const Host host = servicelist_.host();
    const Object function = host["find_in_list"_t];
    if (name.isPlainText() && function.isOperation(kFindInList) && isUpToDate())
        return names_.contains(name);
    return function(host::At::here(), servicelist_, name, host.integer(0)).truth();
}

void ListedNames::add(const Object& row)
{
    // A tuple: the name in a row of another kind may change.
    isPlain_ = isPlain_ && row.isPlainTuple() && row.size() > 0;
    if (!isPlain_)
        return;
    const Object name = row.item(0);
    isPlain_ = name.isPlainText();
    if (!isPlain_)
        return;
    names_.add(name);
    rows_.append(row);
}

bool ListedNames::isUpToDate()
{
    if (!isRead_ || (isPlain_ && !isAsRead()))
        read();
    return isPlain_;
}

bool ListedNames::isAsRead()
{
    const std::size_t size = servicelist_.size();
    if (size != rows_.size() || size == 0)
        return size == rows_.size();
    if (looked_ >= size || size <= kLookedAtOnce)
        looked_ = 0;
    const std::size_t end = std::min(looked_ + kLookedAtOnce, size);
    const bool isSame = servicelist_.hasItemsOf(rows_, looked_, end) && servicelist_.hasItemsOf(rows_, size - 1, size);
    looked_ = end;
    return isSame;
}

void ListedNames::read()
{
    const Host host = servicelist_.host();
    isRead_ = true;
    isPlain_ = servicelist_.isPlainList();
    rows_ = host.list();
    names_ = host.set();
    if (!isPlain_)
        return;
    for (const Object& row : each(servicelist_)) {
        add(row);
        if (!isPlain_)
            return;
    }
}

constinit const host::OperationTable kFindInList =
    host::function<&find_in_list>("find_in_list",
                                  "True if the element at `listpos` of some row of `list` equals `search`.\n\n"
                                  "A row that can't be indexed at listpos is an error, unless an earlier row matches.",
                                  {{"list"}, {"search"}, {"listpos", host::Default::zero}});

} // namespace veltro
