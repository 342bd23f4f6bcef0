#pragma once

#include <termios.h>

#include <list>
#include <string>
#include <vector>

#include "lineedit/mod_info.h"
#include "platform/ko_types.h"

// The console's line editor on standard input and output. It echoes what it accepts, keeps a
// history, and completes words on TAB; it prints no prompt. Main thread only, one Gets at a time in
// the process.
//
// There is no escape-sequence state: an arrow key sends 27, 91 and a letter from A to D, so the
// editor drops the first two and takes the letter for the key. The price is that a capital A to D
// or a "[" cannot be typed.
//
//   byte      key         what is done            written to the terminal, an append in one write
//   8         Backspace   erase the last byte     8 32 8
//   9         TAB         complete, or list       the rest of the word, or the listing and 10
//   10        Enter       accept the line         10 13
//   27, 91    ESC, "["    nothing
//   65, 66    A, B        older, newer line       8 32 8 a byte shown, then the line
//   67, 68    C, D        nothing
//   others                append                  the byte
//
// When standard input is not a terminal its settings are left alone, and all else is the same.
class KoStream {
public:
    KoStream();
    // Restores the terminal as ResetTermios does.
    ~KoStream();
    KoStream(const KoStream&) = delete;
    KoStream& operator=(const KoStream&) = delete;

    // Saves the terminal's settings and switches canonical mode and echo off. Failures are printed;
    // when the settings could not be read, the terminal is left alone from then on.
    void Init();

    // Puts the saved settings back. 0 when that was done or there is nothing to put back, else the
    // result of tcsetattr, after a message.
    int ResetTermios();

    // Shows the pending line again and reads keys until a line is accepted, without a time limit.
    // Returns the line, valid until the next accepted one; "TAB" when several candidates were
    // listed and the line is still pending; null when input ended, output failed, or the line has
    // 1024 bytes or more.
    char* Gets();

    // Adds a completion group, dropping all earlier ones first when `bClear` is set. The array and
    // its words must stay as they are while Gets runs. Always 0.
    int RegistTab(std::string name, unsigned int count, char** list, KO_BOOL bClear);

private:
    char* OnEnter();
    int OnBackspace();
    int OnUp();
    int OnDown();
    int OnTab();
    void ParseModeInfo(std::list<std::string>& out);
    bool OnText(char byte);
    void ReplaceLine(const std::string& line);

    std::list<std::string> m_lstHistory;  // oldest first
    std::string m_strInbuffer;
    std::list<std::string>::iterator m_itHistory;  // end() while no entry is recalled
    struct termios m_stSavedTermios = {};
    struct termios m_stRawTermios = {};
    std::vector<ModInfo> m_vecModInfo;
    bool m_bSaved = false;  // m_stSavedTermios holds the terminal's settings
};
