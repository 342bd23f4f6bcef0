#pragma once

// The bytes that the line editor takes for keys; see lineedit/ko_stream.h.
enum Key : int {
    kBackspace = 8,
    kTab = 9,
    kEnter = 10,
    kEscape = 27,
    kBracket = '[',
    kUp = 'A',
    kDown = 'B',
    kRight = 'C',
    kLeft = 'D',
};

// Those of an arrow key that are printable, and so cannot be typed as text.
constexpr bool IsPartOfArrowKey(char byte) {
    return byte == kBracket || (byte >= kUp && byte <= kLeft);
}
