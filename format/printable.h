#pragma once

#include <string>
#include <string_view>

// Whether the character, given in UTF-8, is one from U+0000 to U+001F or from U+007F to U+009F.
bool IsControl(std::string_view character);

// The text as any terminal can show it and none obeys it: valid UTF-8, and control characters as
// escapes of `escape` and two digits, like "\x1b".
std::string Printable(std::string_view text, const char* escape = "\\x");
