#pragma once

#include <cstddef>
#include <string>

#include "platform/unique_fd.h"

// Row-oriented reader of a text file, which it reads once from start to end, a chunk at a time: a
// large file needs no more memory than its longest row. Rows may be of any length and hold any
// bytes. Not shared between threads.
class KoFile {
public:
    // Opens the file and reads its start. The only mode is "r". A failure shows in
    // GetIOExceptionStatus().
    void Init(const std::string& path, const std::string& mode);

    // 0, or the error number when the file could not be opened or, so far, read; the rows end then.
    // A directory or any other thing that is not a regular file counts as unreadable.
    int GetIOExceptionStatus() const { return m_status; }

    // True when the file holds no rows.
    bool IsEmpty() const { return m_empty; }

    // True when no further row can be read.
    bool IsEOF() const { return m_next >= m_text.size(); }

    // The next row without its line end: "\n", or "\r\n" of which a last row may lack the "\n".
    // Empty at the end of the file. The text stays as it is until the next call.
    const std::string& NextRow();

    // Makes the next NextRow return the last row again. Returns 0, or -1 when there is no row to
    // give back: before the first one, and right after another RollBack.
    int RollBack();

    // The number of the row that NextRow returned last, counted from 1; 0 before the first.
    std::size_t RowNumber() const { return m_rowNumber; }

private:
    static constexpr int kLeastChunk = 4 * 1024;     // bytes
    static constexpr int kLargestChunk = 64 * 1024;  // bytes
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    bool Fill();
    std::size_t RowLength();

    UniqueFd m_fd;  // open until the end of the file
    std::string m_text;
    std::string m_row;  // the last row handed out
    std::size_t m_chunkSize = kLeastChunk;
    std::size_t m_next = 0;           // where the next row starts in m_text
    std::size_t m_lastStart = kNone;  // where the last one starts
    std::size_t m_rowNumber = 0;
    int m_status = 0;
    bool m_empty = true;
};
