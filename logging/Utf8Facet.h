// The standard library's facet between wide text and UTF-8, for TextConversion and for libraries that take a facet.
#pragma once

#include <codecvt>
#include <type_traits>

namespace sentiq {

// codecvt_utf8 rejects surrogate pairs where wchar_t has 16 bits; the UTF-16 facet converts them.
using Utf8Facet =
    std::conditional_t<sizeof(wchar_t) == 2, std::codecvt_utf8_utf16<wchar_t>, std::codecvt_utf8<wchar_t>>;

}  // namespace sentiq
