// Constant texts: attribute names, message ids, tags and file names. Each is a Python string made once per load of the
// module, before the first host call; an operation only picks it up.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace veltro::host {

namespace detail {

// All of them, each with its end, in one piece: an array of pointers would have the loader visit every one. The build
// collects them from the sources.
inline constexpr char kTexts[] =
#include "texts.inc"
    ;

/// The place of a text among all, known to the compiler: neither start-up code nor an address is needed for any of
/// them.
consteval std::uint16_t indexOf(std::string_view text)
{
    // By hand: with the sanitizers' checks in it, the library's search is no constant any more.
    std::uint16_t index = 0;
    for (std::size_t at = 0; at + 1 < sizeof kTexts; ++at, ++index) {
        std::size_t same = 0;
        while (same < text.size() && kTexts[at + same] == text[same])
            ++same;
        if (same == text.size() && kTexts[at + same] == '\0')
            return index;
        while (kTexts[at] != '\0')
            ++at;
    }
    throw "the build has not found this text: it must stand on one line, with its _t";
}

} // namespace detail

/// A constant text, written "name"_t. Two equal literals are the same Text.
class Text {
public:
    constexpr explicit Text(std::uint16_t index) noexcept : index_(index) {}

    [[nodiscard]] constexpr std::size_t index() const noexcept { return index_; }
    [[nodiscard]] const char* chars() const noexcept;
    friend constexpr bool operator==(Text, Text) = default;

    /// The characters of all texts in the order of their indices, a zero after each.
    static std::string_view all() noexcept;

private:
    std::uint16_t index_;
};

inline namespace literals {
[[nodiscard]] consteval Text operator""_t(const char* chars, std::size_t size)
{
    return Text(detail::indexOf({chars, size}));
}
} // namespace literals

} // namespace veltro::host
