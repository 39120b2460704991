// Wide text is UTF-16 in char16_t on every system; nothing outside platform/ knows wchar_t.
#pragma once

#include <string>
#include <string_view>

using wide_char = char16_t;
using wide_string = std::u16string;
using wide_view = std::u16string_view;
