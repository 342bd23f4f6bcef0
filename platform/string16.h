#pragma once

#ifdef KO_LIBUTILS
// Android's own.
#include <utils/String16.h>
#include <utils/String8.h>
#else

#include <cstddef>
#include <string>

// Android's strings as far as the console needs them, with the same results for every input. For
// text that must be well-formed there is format/utf8.h.
namespace android {

// UTF-16 units, well-formed or not.
class String16 {
public:
    String16() = default;
    // From 8-bit text up to the terminating NUL.
    explicit String16(const char* utf8) : String16(utf8, std::char_traits<char>::length(utf8)) {}
    // From 8-bit text. Empty if the last sequence is incomplete; else nothing is checked: each
    // sequence has the length that its first byte tells, and its number, overlong or a surrogate as
    // it may be, is taken from the bits that the encoding gives to it.
    explicit String16(const char* utf8, std::size_t length);
    explicit String16(const char16_t* units, std::size_t count) : m_units(units, count) {}

    const char16_t* string() const { return m_units.c_str(); }
    std::size_t size() const { return m_units.size(); }

private:
    std::u16string m_units;
};

// 8-bit text.
class String8 {
public:
    // UTF-8 of the units but for lone surrogates, which are left out.
    explicit String8(const String16& utf16);

    const char* string() const { return m_text.c_str(); }
    std::size_t size() const { return m_text.size(); }

private:
    std::string m_text;
};

}  // namespace android

#endif
