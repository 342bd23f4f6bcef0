#pragma once

#include <cstddef>

// Bounds-checked copies and prints. Capacities and counts are in bytes. The copies return 0, or
// non-zero when a pointer is null or the result does not fit; a destination string is then left
// empty.
int memcpy_s(void* dest, std::size_t capacity, const void* src, std::size_t count);
int strcpy_s(char* dest, std::size_t capacity, const char* src);

// Copies at most `count` characters of `src` and terminates the result.
int strncpy_s(char* dest, std::size_t capacity, const char* src, std::size_t count);

// Both return the number of characters written, or -1 when the text does not fit the capacity
// (for snprintf_s also when it needs more than `count` characters).
int sprintf_s(char* dest, std::size_t capacity, const char* format, ...)
    __attribute__((format(printf, 3, 4)));
int snprintf_s(char* dest, std::size_t capacity, std::size_t count, const char* format, ...)
    __attribute__((format(printf, 4, 5)));
