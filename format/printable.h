#pragma once

#include <string>
#include <string_view>

// The text as any terminal can show it and none obeys it: valid UTF-8, and the control characters
// U+0000 to U+001F and U+007F to U+009F as escapes like "\x1b".
std::string Printable(std::string_view text);
