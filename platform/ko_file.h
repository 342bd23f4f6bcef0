#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/unique_fd.h"

// Row-oriented reader of a text file, which it reads once from start to end, a chunk at a time.
// Rows may be of any length and hold any bytes; of an endless one only the start is kept. Not
// shared between threads.
class KoFile {
public:
    // The most bytes of a row that NextRow returns.
    static constexpr std::size_t kLongestRow = std::size_t{64} * 1024;

    // What a row has after these.
    struct RowRest {
        std::size_t size = 0;                    // bytes
        std::size_t equals = std::string::npos;  // offset of its first "="
    };

    // Opens the file and reads its start. The only mode is "r". A failure shows in
    // GetIOExceptionStatus().
    void Init(const std::string& path, const std::string& mode);

    // 0, or the error number when the file could not be opened or, so far, read; the rows end then.
    // A directory or any other thing that is not a regular file counts as unreadable.
    int GetIOExceptionStatus() const { return m_status; }

    // True when the file holds no rows.
    bool IsEmpty() const { return m_empty; }

    // True when no further row can be read.
    bool IsEOF() const { return !m_again && m_next >= m_text.size(); }

    // The next row without its line end: "\n", or "\r\n" of which a last row may lack the "\n".
    // Empty at the end of the file, and for a row in which reading fails: a part of one could be
    // taken for another row. The text stays as it is until the next call.
    const std::string& NextRow();

    // Of the row that NextRow returned last.
    const RowRest& Rest() const { return m_rest; }

    // Makes the next NextRow return the last row again. Returns 0, or -1 when there is no row to
    // give back: before the first one, at the end of the file, and right after another RollBack.
    int RollBack();

    // The number of the row that NextRow returned last, counted from 1; 0 before the first.
    std::size_t RowNumber() const { return m_rowNumber; }

private:
    static constexpr int kLeastChunk = 4 * 1024;     // bytes
    static constexpr int kLargestChunk = 64 * 1024;  // bytes

    bool Fill();
    bool ReadRow();
    void Keep(std::string_view piece);

    UniqueFd m_fd;       // open until the end of the file
    std::string m_text;  // the last chunk
    std::string m_row;   // the last row handed out
    RowRest m_rest;
    char m_lastByte = '\0';  // of the row, its rest included
    std::size_t m_chunkSize = kLeastChunk;
    std::size_t m_next = 0;  // where the next row starts in m_text
    std::size_t m_rowNumber = 0;
    int m_status = 0;
    bool m_empty = true;
    bool m_hasRow = false;  // there is one to give back
    bool m_again = false;   // it has been given back
};
