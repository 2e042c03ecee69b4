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
    for (std::size_t passed = 0; passed < index_; ++passed)
        chars += std::strlen(chars) + 1;
    return chars;
}

} // namespace veltro::host
