#pragma once

#include <cstddef>
#include <string>

// Row-oriented reader of a text file. The file is read once, whole, by Init; rows may be of any
// length and hold any bytes. Not shared between threads.
class KoFile {
public:
    // Reads the file. The only mode is "r". A failure shows in GetIOExceptionStatus().
    void Init(const std::string& path, const std::string& mode);

    // 0, or the error number when the file could not be opened or read; a directory or any other
    // thing that is not a regular file counts as unreadable.
    int GetIOExceptionStatus() const { return m_status; }

    // True when the file holds no rows.
    bool IsEmpty() const { return m_text.empty(); }

    // True when no further row can be read.
    bool IsEOF() const { return m_next >= m_text.size(); }

    // The next row without its line end, "\n" or "\r\n"; a last row without a line end is a row.
    // Empty at the end of the file.
    std::string NextRow();

    // Makes the next NextRow return the last row again. Returns 0, or -1 when there is no row to
    // give back: before the first one, and right after another RollBack.
    int RollBack();

    // The number of the row that NextRow returned last, counted from 1; 0 before the first.
    std::size_t RowNumber() const { return m_rowNumber; }

private:
    static constexpr std::size_t kNone = static_cast<std::size_t>(-1);

    std::string m_text;
    std::size_t m_next = 0;
    std::size_t m_lastStart = kNone;
    std::size_t m_rowNumber = 0;
    int m_status = 0;
};
