#pragma once

#include <cstdint>

// The platform's 32-bit boolean: 1 is true, 0 false.
using KO_BOOL = std::int32_t;
