#include "format/printable.h"

#include "format/utf8.h"
#include "platform/ko_securec.h"

// Below U+0100 the last byte of a control character is its number.
bool IsControl(std::string_view character) {
    const auto last = static_cast<unsigned char>(character.back());
    if (character.size() == 1) {
        return last < ' ' || last == 0x7F;
    }
    return character.size() == 2 && character.front() == '\xC2' && last < 0xA0;
}

std::string Printable(std::string_view text, const char* escape) {
    std::string shown;
    while (!text.empty()) {
        const std::string_view character = TakeUtf8(text);
        if (IsControl(character)) {
            char digits[8];
            sprintf_s(digits, sizeof(digits), "%02x",
                      static_cast<unsigned int>(static_cast<unsigned char>(character.back())));
            shown += escape;
            shown += digits;
        } else {
            shown += character;
        }
    }
    return shown;
}
