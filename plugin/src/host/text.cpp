#include "host/text.h"

#include <cstring>

namespace veltro::host {

std::string_view Text::all() noexcept
{
    return {detail::kTexts, sizeof detail::kTexts - 1};
}

const char* Text::chars() const noexcept
{
    const char* chars = detail::kTexts;
    for (std::size_t index = 0; index < index_; ++index)
        chars += std::strlen(chars) + 1;
    return chars;
}

} // namespace veltro::host
