// Constant texts: attribute names, message ids, tags and file names. Each is a Python string made once per load of the
// module, before the first host call; an operation only picks it up.
#pragma once

#include <algorithm>
#include <cstddef>

namespace veltro::host {

/// A string literal as a template argument.
template <std::size_t N>
struct Literal {
    char chars[N]{};

    consteval Literal(const char (&text)[N]) { std::copy_n(text, N, chars); }
};

/// The place of one literal among the module's texts. Slots enter the chain when the binary is loaded; the Python
/// strings themselves belong to a load (see `makeBindings` in module.cpp), so no Python object ever lives in a static.
struct TextSlot {
    explicit TextSlot(const char* literal) noexcept;

    const char* chars;
    const TextSlot* next;
    std::size_t index;

    static const TextSlot* last() noexcept;
};

template <Literal kLiteral>
inline const TextSlot kTextSlot{kLiteral.chars};

/// A constant text, written "name"_t. Two equal literals are the same Text.
class Text {
public:
    constexpr explicit Text(const TextSlot& slot) noexcept : slot_(&slot) {}

    [[nodiscard]] std::size_t index() const noexcept { return slot_->index; }
    [[nodiscard]] const char* chars() const noexcept { return slot_->chars; }
    friend constexpr bool operator==(Text, Text) = default;

private:
    const TextSlot* slot_;
};

inline namespace literals {
template <Literal kLiteral>
[[nodiscard]] constexpr Text operator""_t() noexcept
{
    return Text(kTextSlot<kLiteral>);
}
} // namespace literals

} // namespace veltro::host
