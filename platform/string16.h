#pragma once

#include <cstddef>
#include <string>
#include <utility>

namespace android {

// UTF-16 text. Never throws on malformed input: what cannot be decoded becomes U+FFFD.
class String16 {
public:
    String16() = default;
    // From UTF-8 up to the terminating NUL.
    explicit String16(const char* utf8) : String16(utf8, std::char_traits<char>::length(utf8)) {}
    String16(const char* utf8, std::size_t length);
    explicit String16(std::u16string units) : m_units(std::move(units)) {}

    const char16_t* string() const { return m_units.c_str(); }
    std::size_t size() const { return m_units.size(); }

private:
    std::u16string m_units;
};

// UTF-8 text. A lone surrogate of the UTF-16 it is made from becomes U+FFFD.
class String8 {
public:
    explicit String8(const String16& utf16);

    const char* string() const { return m_text.c_str(); }
    std::size_t size() const { return m_text.size(); }

private:
    std::string m_text;
};

}  // namespace android
