#include "host/text.h"

namespace veltro::host {

namespace {
// Constant-initialised, so that slots of every unit may register in any order.
constinit const TextSlot* lastSlot = nullptr;
} // namespace

TextSlot::TextSlot(const char* literal) noexcept
    : chars(literal), next(lastSlot), index(lastSlot == nullptr ? 0 : lastSlot->index + 1)
{
    lastSlot = this;
}

const TextSlot* TextSlot::last() noexcept
{
    return lastSlot;
}

} // namespace veltro::host
