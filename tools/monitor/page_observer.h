#pragma once

#include <vector>

#include "tools/call/exchange.h"

// What stood in the page, from its start on.
struct PageCopy {
    SharePageHeader header;
    std::uint8_t data[kDataCapacity];

    // Bytes with the header and as much data as that says; none when that is beyond the page.
    std::size_t Size() const {
        return kHeaderSize + (header.length <= kDataCapacity ? header.length : 0);
    }
    std::vector<std::uint8_t> Data() const { return {data, data + Size() - kHeaderSize}; }
};

// Looks at the page without any part in what goes on there: mapped to be read only, no lock.
class PageObserver {
public:
    // kExitDone or kExitPage.
    Outcome Open();

    // True when another header stands there than at the last time, or other data below the same
    // header since the last look but one; see Last. A page whose file was cut is all zeros.
    bool Look();

    const PageCopy& Last() const { return m_last; }

private:
    PageMapping m_page;
    PageCopy m_last = {};
    PageCopy m_looked = {};
    PageCopy m_copy = {};  // of the look that goes on
};
