#pragma once

#include <string>
#include <string_view>

// UTF-8 as the standard has it: surrogates, overlong sequences and numbers over U+10FFFF are
// ill-formed. For what goes to people and files; the platform's own conversions are more lenient.

// Takes the first character off the text, which must not be empty, and returns its bytes, which
// live as long as the text; those of U+FFFD for an ill-formed sequence, which ends before the byte
// that breaks it.
std::string_view TakeUtf8(std::string_view& text);

// The text with U+FFFD for each ill-formed sequence: the same text when it is UTF-8.
std::string ValidUtf8(std::string_view text);
