#include "platform/ko_securec.h"

#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace {

__attribute__((format(printf, 3, 0))) int PrintBounded(char* dest, std::size_t capacity,
                                                       const char* format, std::va_list values) {
    if (dest == nullptr || format == nullptr || capacity == 0) {
        return -1;
    }
    const int written = std::vsnprintf(dest, capacity, format, values);
    if (written < 0 || static_cast<std::size_t>(written) >= capacity) {
        dest[0] = '\0';
        return -1;
    }
    return written;
}

}  // namespace

int memcpy_s(void* dest, std::size_t capacity, const void* src, std::size_t count) {
    if (dest == nullptr || src == nullptr) {
        return EINVAL;
    }
    if (count > capacity) {
        return ERANGE;
    }
    std::memcpy(dest, src, count);
    return 0;
}

int strcpy_s(char* dest, std::size_t capacity, const char* src) {
    return strncpy_s(dest, capacity, src, capacity);
}

int strncpy_s(char* dest, std::size_t capacity, const char* src, std::size_t count) {
    if (dest == nullptr || capacity == 0) {
        return EINVAL;
    }
    dest[0] = '\0';
    if (src == nullptr) {
        return EINVAL;
    }
    const std::size_t length = strnlen(src, count);
    if (length >= capacity) {
        return ERANGE;
    }
    std::memcpy(dest, src, length);
    dest[length] = '\0';
    return 0;
}

int sprintf_s(char* dest, std::size_t capacity, const char* format, ...) {
    std::va_list values;
    va_start(values, format);
    const int written = PrintBounded(dest, capacity, format, values);
    va_end(values);
    return written;
}

int snprintf_s(char* dest, std::size_t capacity, std::size_t count, const char* format, ...) {
    std::va_list values;
    va_start(values, format);
    const std::size_t room = count < capacity ? count + 1 : capacity;
    const int written = PrintBounded(dest, room, format, values);
    va_end(values);
    return written;
}
