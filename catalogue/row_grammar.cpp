#include "catalogue/row_grammar.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <limits>

HexNumber ParseHexNumber(const std::string& text) {
    using Limits = std::numeric_limits<std::int32_t>;
    char* end = nullptr;
    errno = 0;
    // The range is cut twice: by strtol where long has 32 bits, by the clamp where it has 64.
    const long value = std::strtol(text.c_str(), &end, 16);
    const long clampedValue = std::clamp<long>(value, Limits::min(), Limits::max());
    HexNumber number = {};
    number.value = static_cast<std::int32_t>(clampedValue);
    number.usedLength = static_cast<std::size_t>(end - text.c_str());
    number.clamped = errno == ERANGE || clampedValue != value;
    return number;
}
