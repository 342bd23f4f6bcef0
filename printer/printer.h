#pragma once

#include <string>

#include "common/ko_mw_array.h"
#include "platform/ko_types.h"
#include "platform/parcel.h"

// Prints one reply as labelled values, a line for each record. Lives for one reply: Fmt, then
// Flush. Borrows the parcel, which must outlive it, and moves the parcel's read position. Main
// thread only.
class Printer {
public:
    // The parcel's read position is after the status word.
    explicit Printer(const android::Parcel& reply);

    // Reads the reply by the print format, record by record, and keeps the lines for Flush. A
    // letter without a tag is not looked at; a value missing from the last record is 0 or empty.
    // Messages about the format are printed at once. Returns 0; or -1 without a format or tags, or
    // at an invalid letter, which drops the record that it is in.
    int Fmt(const char* format, const Array<std::string>& tags);

    // Prints and forgets every line. Always 0.
    int Flush();

private:
    // `cut` tells whether the reply ended before a value.
    bool FmtRecord(const std::string& format, const Array<std::string>& tags, std::string& line,
                   bool& cut);
    void ParseIntegerfmt(KO_BOOL wide, const unsigned int& index, const Array<std::string>& tags,
                         std::string& line);
    void ParseDecimalfmt(KO_BOOL wide, const unsigned int& index, const Array<std::string>& tags,
                         std::string& line);
    void ParseStringfmt(KO_BOOL wide, const unsigned int& index, const Array<std::string>& tags,
                        std::string& line);

    const android::Parcel& m_parcel;
    Array<std::string> m_lines;
};
